// What the compaction modes know of each byte.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korvex::pdf417 {

using namespace std::string_view_literals;

/// The sub-modes of text compaction.
enum class SubMode : std::uint8_t { alpha, lower, mixed, punctuation };
inline constexpr std::size_t kSubModes = 4;

/// Stands in a set's row where the value is no character but a latch.
inline constexpr char kNoCharacter = '\0';

// The characters of the sub-modes in the order of their values. ISO/IEC 15438, text compaction.
inline constexpr std::array<std::string_view, kSubModes> kCharacterSets = {
    "ABCDEFGHIJKLMNOPQRSTUVWXYZ "sv,
    "abcdefghijklmnopqrstuvwxyz "sv,
    "0123456789&\r\t,:#-.$/+%*=^\0 "sv,
    ";<>@[\\]_`~!\r\t,:\n-.$/\"|*()?{}'"sv,
};
static_assert(kCharacterSets[0].size() == 27 && kCharacterSets[1].size() == 27);
static_assert(kCharacterSets[2].size() == 27 && kCharacterSets[3].size() == 29);

/// A byte's classes: bit n for the characters of sub-mode n, and one for digits.
inline constexpr unsigned kDigit = 1U << kSubModes;
inline constexpr unsigned kText = kDigit - 1;
constexpr unsigned class_of(SubMode sub_mode) {
  return 1U << static_cast<unsigned>(sub_mode);
}

inline constexpr std::array<std::uint8_t, 256> kClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  for (std::size_t set = 0; set < kSubModes; ++set) {
    for (const char character : kCharacterSets[set]) {
      if (character == kNoCharacter) continue;
      auto& known = classes[static_cast<std::uint8_t>(character)];
      known = static_cast<std::uint8_t>(known | 1U << set);
    }
  }
  for (std::size_t digit = '0'; digit <= '9'; ++digit) {
    classes[digit] = static_cast<std::uint8_t>(classes[digit] | kDigit);
  }
  return classes;
}();

constexpr bool is(std::uint8_t byte, unsigned classes) {
  return (kClasses[byte] & classes) != 0;
}

}  // namespace korvex::pdf417
