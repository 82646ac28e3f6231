#include <benchmark/benchmark.h>

#include <string>

#include "bench.hpp"
#include "korvex/korvex32.h"
#include "korvex/veri.hpp"

namespace {

using korvex::veri::Correction;

void add(const std::string& name, int size, Correction correction, int bytes) {
  const std::string data(static_cast<std::size_t>(bytes), 'V');
  const auto encode = [=] {
    benchmark::DoNotOptimize(korvex::veri::encode({.size = size, .correction = correction}, data));
  };
  const auto paint = [=] {
    const VERI_Params params{.symbol_size = static_cast<std::int16_t>(size),
                             .ecc_mode = static_cast<std::int16_t>(correction),
                             .module_width = 4,
                             .module_height = 4,
                             .data = reinterpret_cast<const std::uint8_t*>(data.data()),
                             .data_length = static_cast<std::int16_t>(bytes)};
    Korvex_Device* const device = korvex_device_create(4 * size, 4 * size);
    Symbol_Size painted{};
    benchmark::DoNotOptimize(VERI_Encode(device, &params, &painted));
    korvex_device_destroy(device);
  };
  korvex::bench::add(name, encode, paint);
}

const korvex::bench::Family kVeri([] {
  add("size 18, mode 4, 14 bytes", 18, Correction::four, 14);
  add("size 25, mode 2, 46 bytes", 25, Correction::two, 46);
  add("size 92, mode 0, 1010 bytes", 92, Correction::none, 1010);
  add("size 92, mode 2, 756 bytes", 92, Correction::two, 756);
  add("size 92, mode 4, 502 bytes", 92, Correction::four, 502);
});

}  // namespace
