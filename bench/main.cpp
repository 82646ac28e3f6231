// Runs the benchmarks of one family, with heap allocations a symbol as a counter.
//   BENCH                   the table of Google Benchmark, whose options it takes
//   BENCH --count=NAME N    runs NAME just N times, for counting instructions
#include <benchmark/benchmark.h>

#include <atomic>
#include <cstdlib>
#include <iostream>
#include <map>
#include <new>
#include <string_view>

#include "bench.hpp"

namespace {

std::atomic<long> allocations = 0;

std::map<std::string, std::function<void()>>& calls() {
  static std::map<std::string, std::function<void()>> all;
  return all;
}

void add_one(const std::string& name, const std::function<void()>& call) {
  calls()[name] = call;
  benchmark::RegisterBenchmark(name.c_str(), [call](benchmark::State& state) {
    const long before = allocations;
    for (auto _ : state) call();
    state.counters["allocs"] =
        benchmark::Counter(static_cast<double>(allocations - before), benchmark::Counter::kAvgIterations);
  });
}

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

void korvex::bench::add(const std::string& name, std::function<void()> encode, std::function<void()> paint) {
  add_one(name, encode);
  if (paint) add_one(name + "/painted", paint);
}

int main(int argc, char** argv) {
  constexpr std::string_view kCount = "--count=";
  if (argc == 3 && std::string_view(argv[1]).starts_with(kCount)) {
    const auto found = calls().find(std::string(std::string_view(argv[1]).substr(kCount.size())));
    if (found == calls().end()) {
      std::cerr << argv[0] << ": no benchmark " << argv[1] + kCount.size() << '\n';
      return 2;
    }
    for (long i = std::atol(argv[2]); i > 0; --i) found->second();
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  benchmark::RunSpecifiedBenchmarks();
}
