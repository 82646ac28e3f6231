// Every export may be called from any number of threads at once: eight threads make the same calls in
// different orders, and every answer is the one that a single thread got.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

#include "korvex/korvex32.h"

namespace {

struct Call {
  std::uint16_t type;
  std::string data;
  std::int16_t selector;
};

// One call or more of every encoder, with guards and text.
const std::vector<Call> kCalls = {
    {0, "A1234B", 0},  {1, "*KORVEX*", 1}, {2, "12345", 2},      {3, "400638133393", 0},
    {4, "9638507", 0}, {5, "1234", 1},     {6, "1234", 2},       {8, "12345678901234567", 0},
    {9, "Korvex", 0},  {10, "98765", 0},   {11, "12-34", 0},     {12, "Code 93", 0},
    {14, "123455", 0}, {15, "12345", 0},   {13, "B06Korvex", 0}, {1, "*WIDE*", 5},
    {7, "123", 0},     {3, "12", 0},
};

std::string answer(const Call& call) {
  std::array<std::uint32_t, 188> bars{};
  std::array<std::uint32_t, 188> guards{};
  std::array<char, 23> text{};
  const Bar_Ratio ratio{call.selector, 1, 1, 3, 3};
  const Bit_Data data{static_cast<std::int16_t>(call.data.size()),
                      reinterpret_cast<const std::uint8_t*>(call.data.data())};
  Bit_Result result{};
  result.bars = bars.data();
  result.guards = guards.data();
  result.text = text.data();
  const auto code = Korvex_Bit(call.type, 1, 1, &ratio, &data, &result);
  std::string all = std::to_string(code) + ' ' + std::to_string(result.bit_count) + ' ' + text.data() + ' ';
  for (const auto* words : {&bars, &guards}) {
    for (const auto word : *words) all += std::to_string(word) + ',';
  }
  return all;
}

TEST(Threads, EveryAnswerIsTheOneOfASingleThread) {
  std::vector<std::string> expected;
  for (const auto& call : kCalls) expected.push_back(answer(call));

  constexpr int kThreads = 8;
  constexpr int kRounds = 200;
  std::array<int, kThreads> wrong{};
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < kRounds; ++round) {
        const auto i = static_cast<std::size_t>(round * (2 * number + 1) + number) % kCalls.size();
        if (answer(kCalls[i]) != expected[i]) ++wrong[static_cast<std::size_t>(number)];
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, (std::array<int, kThreads>{}));
}

}  // namespace
