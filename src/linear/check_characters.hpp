// Check characters of linear symbols: a rule names a method and its numbers.
#pragma once

#include <cstdint>
#include <span>

namespace korvex::linear {

/// The value of a symbol character.
using Value = std::uint8_t;

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

/// One check character: the weighted sum modulo `modulus`, or (without `no_complement`) what it lacks.
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
int check_character(const CheckRule& rule, std::span<const Value> values);

/// The check digit of GS1 numbers: weights 3 and 1 from the right.
inline constexpr CheckRule kGs1CheckDigit{1, CheckMethod::alternating, 10, 3};
/// ISO/IEC 15417, Annex A.
inline constexpr CheckRule kCode128CheckCharacter{1, CheckMethod::positional, 103, 103, 1};

}  // namespace korvex::linear
