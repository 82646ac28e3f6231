// What the encodation schemes make of a character. ISO/IEC 16022:2006, 5.2.4 to 5.2.9 and Tables C.1 to C.3.
#pragma once

#include <array>
#include <cstdint>

#include "datamatrix/request.hpp"

namespace korvex::datamatrix {

constexpr bool is_digit(Character c) {
  return c >= '0' && c <= '9';
}
constexpr bool is_upper(Character c) {
  return c >= 'A' && c <= 'Z';
}
constexpr bool is_lower(Character c) {
  return c >= 'a' && c <= 'z';
}
/// Bytes that ASCII encodation shifts.
constexpr bool is_extended(Character c) {
  return c >= 128 && c != kFnc1;
}

/// The values of one character in C40 or Text encodation: shifts first, the character's own last.
struct Values {
  std::uint8_t count = 0;
  std::array<std::uint8_t, 4> value{};

  constexpr void append(int next) { value[count++] = static_cast<std::uint8_t>(next); }
};

inline constexpr int kShift1 = 0;
inline constexpr int kShift2 = 1;
inline constexpr int kShift3 = 2;

/// Text encodation is C40 with the two cases exchanged.
constexpr Values c40_or_text_values(Character c, bool text) {
  constexpr int kFnc1Value = 27;
  constexpr int kUpperShift = 30;
  const auto is_basic_letter = text ? is_lower : is_upper;
  Values values;
  if (is_extended(c)) {
    values.append(kShift2);
    values.append(kUpperShift);
    c -= 128;
  }
  if (c == ' ') {
    values.append(3);
  } else if (is_digit(c)) {
    values.append(c - '0' + 4);
  } else if (is_basic_letter(c)) {
    values.append((c & 31) - 1 + 14);
  } else {
    const int shift = c == kFnc1 ? kShift2 : c < ' ' ? kShift1 : c < '`' && !is_upper(c) ? kShift2 : kShift3;
    values.append(shift);
    if (c == kFnc1) {
      values.append(kFnc1Value);
    } else if (shift == kShift1) {
      values.append(c);
    } else if (shift == kShift3) {
      values.append(c & 31);
    } else if (c < '0') {
      values.append(c - '!');
    } else {
      values.append(c < 'A' ? c - ':' + 15 : c - '[' + 22);
    }
  }
  return values;
}

constexpr auto c40_or_text_table(bool text) {
  std::array<Values, kCharacterCount> table{};
  for (Character c = 0; c < kCharacterCount; ++c) table[c] = c40_or_text_values(c, text);
  return table;
}
inline constexpr auto kC40Values = c40_or_text_table(false);
inline constexpr auto kTextValues = c40_or_text_table(true);

/// CR, * and >, which X12 has a value for and C40 must shift.
constexpr bool is_x12_separator(Character c) {
  return c == '\r' || c == '*' || c == '>';
}
constexpr bool is_x12(Character c) {
  return is_x12_separator(c) || c == ' ' || is_digit(c) || is_upper(c);
}
/// Requires is_x12(c).
constexpr int x12_value(Character c) {
  if (is_x12_separator(c)) return c == '\r' ? 0 : c == '*' ? 1 : 2;
  return kC40Values[c].value[0];
}

constexpr bool is_edifact(Character c) {
  return c >= ' ' && c <= '^';
}
/// Requires is_edifact(c). Six bits.
constexpr int edifact_value(Character c) {
  return c & 63;
}

}  // namespace korvex::datamatrix
