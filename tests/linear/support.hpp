// Calls of Korvex_Bit with buffers that show every byte written too much, and bars as text.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/korvex32.h"
#include "korvex/linear.hpp"

namespace korvex::linear::test {

struct Call {
  int type = 0;
  std::string_view data;
  Bar_Ratio ratio{0, 0, 0, 0, 0};
  int guard_option = 0;
  int text_option = 0;
};

struct Answer {
  int result = 0;
  std::string bars;  ///< '1' a bar; empty after a failure, as all that follows
  std::string guards;
  std::string text;
  std::vector<int> groups;  ///< the words of text_groups that were written
};

inline std::string as_text(const std::uint32_t* words, int modules) {
  std::string text;
  for (int k = 0; k < modules; ++k) text += (words[k / 32] >> (31 - k % 32) & 1U) != 0 ? '1' : '0';
  return text;
}

inline std::string as_text(const ModuleRow& row) {
  std::string text;
  for (int k = 0; k < row.size(); ++k) text += row.bar(k) ? '1' : '0';
  return text;
}

/// Makes the call and checks what every call promises: on success floor(bit_count / 32) + 1 words of both
/// arrays are written and the bits past bit_count are 0; nothing else is touched, on failure nothing at all
/// but text_length.
inline Answer call(const Call& given) {
  constexpr std::uint32_t kWord = 0xA5C3F00D;
  constexpr char kCharacter = 0x7E;
  constexpr std::uint16_t kGroup = 0xBEEF;
  constexpr int kWords = 188;
  // One word more than any symbol needs. The data has a block of its own size: a sanitizer sees its end.
  std::vector<std::uint32_t> bars(kWords + 1, kWord);
  std::vector<std::uint32_t> guards(kWords + 1, kWord);
  std::array<char, 24> text{};
  text.fill(kCharacter);
  const std::unique_ptr<std::uint8_t[]> bytes(new std::uint8_t[given.data.size()]);
  std::copy(given.data.begin(), given.data.end(), bytes.get());
  const Bit_Data data{static_cast<std::int16_t>(given.data.size()), bytes.get()};
  Bit_Result result{-77, bars.data(), guards.data(), -77, text.data(), {}};
  std::fill_n(result.text_groups, 5, kGroup);

  Answer answer;
  answer.result =
      Korvex_Bit(static_cast<std::uint16_t>(given.type), static_cast<std::uint16_t>(given.guard_option),
                 static_cast<std::uint16_t>(given.text_option), &given.ratio, &data, &result);
  const bool drawn = answer.result == KORVEX_OK;
  const int words = drawn ? result.bit_count / 32 + 1 : 0;
  if (drawn) {
    answer.bars = as_text(bars.data(), result.bit_count);
    answer.guards = as_text(guards.data(), result.bit_count);
    EXPECT_EQ(bars[words - 1] << result.bit_count % 32, 0U) << "bits past the last module";
  } else {
    EXPECT_EQ(result.bit_count, -77);
    EXPECT_EQ(result.text_length, 0);
  }
  const auto untouched = [](auto first, auto last, auto value) {
    return std::all_of(first, last, [&](auto found) { return found == value; });
  };
  EXPECT_TRUE(untouched(bars.begin() + words, bars.end(), kWord)) << "bars past word " << words;
  EXPECT_TRUE(untouched(guards.begin() + words, guards.end(), kWord)) << "guards past word " << words;

  answer.text.assign(text.data(), static_cast<std::size_t>(result.text_length));
  const int text_end = answer.text.empty() ? 0 : result.text_length + 1;
  if (!answer.text.empty()) {
    EXPECT_EQ(text[static_cast<std::size_t>(text_end - 1)], '\0');
  }
  EXPECT_TRUE(untouched(text.begin() + text_end, text.end(), kCharacter)) << "text past " << text_end;
  for (const std::uint16_t group : result.text_groups) {
    if (group != kGroup) answer.groups.push_back(group);
  }
  return answer;
}

}  // namespace korvex::linear::test
