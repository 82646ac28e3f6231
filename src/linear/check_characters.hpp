// Check characters of linear symbols: a rule names a method and its numbers.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace korvex::linear {

/// How the symbol character values are weighted. "From the right" starts at the last value.
enum class CheckMethod : std::int16_t {
  none = 0,
  alternating = 1,   ///< weight, 1, weight, 1 ... from the right
  rising = 2,        ///< weight, weight + 1 ... from the right
  cyclic_right = 3,  ///< 1, 2 ... weight, 1, 2 ... from the right
  constant = 4,      ///< weight for every value
  cyclic_left = 5,   ///< 1, 2 ... weight, 1, 2 ... from the left
  positional = 6,    ///< 1, 1, 2, 3 ... from the left
};

/// One check character: the weighted sum modulo `modulus`, or (without `no_complement`) what is missing to
/// it.
struct CheckRule {
  std::int16_t enabled = 0;
  CheckMethod method = CheckMethod::none;
  std::int16_t modulus = 0;
  std::int16_t weight = 0;
  std::int16_t no_complement = 0;
  std::int16_t ten_substitute = 0;     ///< alternating, rising: a result of 10 becomes 1, else 0
  std::int16_t eleven_substitute = 0;  ///< rising: a result of 11 becomes 1, else 0
  std::int16_t spare = 0;

  [[nodiscard]] constexpr bool on() const { return enabled > 0 && method != CheckMethod::none; }
};

/// The second rule counts the first one's check character too. It has no effect while the first rule is off.
struct CheckRules {
  CheckRule first;
  CheckRule second;
};

/// The check character of `rule` for `values`. Requires a method and a modulus above 0.
int check_character(const CheckRule& rule, std::span<const std::uint8_t> values);

/// The GS1 check digit (GS1 General Specifications 7.9): weights 3 and 1 from the right.
inline constexpr CheckRule kGs1CheckDigit{1, CheckMethod::alternating, 10, 3};
/// ISO/IEC 15417, Annex A.
inline constexpr CheckRule kCode128CheckCharacter{1, CheckMethod::positional, 103, 103, 1};

/// The rules of each type code of Korvex_Bit, those that are off included.
inline constexpr auto kTypeRules = [] {
  using enum CheckMethod;
  constexpr CheckRule kNone{};
  constexpr CheckRule kOffMod10{0, alternating, 10, 3};
  return std::array<CheckRules, 19>{{
      /*  0 Codabar        */ {kOffMod10, kOffMod10},
      /*  1 Code 39        */ {{0, constant, 43, 1, 1}, kNone},
      /*  2 ITF            */ {kOffMod10, kNone},
      /*  3 EAN-13         */ {kGs1CheckDigit, kNone},
      /*  4 EAN-8          */ {kGs1CheckDigit, kNone},
      /*  5 Industrial 2/5 */ {kOffMod10, kNone},
      /*  6 three-bar 2/5  */ {kOffMod10, kNone},
      /*  7                */ {kOffMod10, kOffMod10},
      /*  8 SSCC-18        */ {kGs1CheckDigit, kCode128CheckCharacter},
      /*  9 Code 128       */ {kCode128CheckCharacter, kNone},
      /* 10 MSI            */ {{0, rising, 11, 2, 0, 0, 1}, kOffMod10},
      /* 11 Code 11        */ {{0, cyclic_right, 11, 10, 1, 0, 1}, {0, cyclic_right, 11, 9, 1}},
      /* 12 Code 93        */ {{1, cyclic_right, 47, 20, 1, 0, 1}, {1, cyclic_right, 47, 15, 1}},
      /* 13 Code 128       */ {kCode128CheckCharacter, kNone},
      /* 14 UPC-E          */ {kGs1CheckDigit, kNone},
      /* 15 add-on         */ {kNone, kNone},
      /* 16                */ {{1, alternating, 10, 1}, kNone},
      /* 17                */ {kNone, kNone},
      /* 18                */ {kNone, kNone},
  }};
}();

}  // namespace korvex::linear
