// Texts of digits.
#pragma once

#include <cstdint>

#include "composite/request.hpp"
#include "core/check_digit.hpp"

namespace korvex::composite {

inline constexpr bool is_digit(int byte) {
  return byte >= '0' && byte <= '9';
}

/// The number of `count` digits that begin at `first`. Requires digits, at most 18.
inline std::uint64_t number_of(Bytes text, std::size_t first, std::size_t count) {
  std::uint64_t number = 0;
  for (const std::uint8_t digit : text.subspan(first, count)) number = number * 10 + (digit - '0');
  return number;
}

/// The first byte that is no digit, or a text longer than `most` characters.
inline Fault check_digits(Bytes text, int most) {
  if (text.size() > static_cast<std::size_t>(most)) {
    return {Reason::linear_too_long, 0, static_cast<int>(text.size()), most};
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!is_digit(text[i])) return {Reason::not_a_digit, static_cast<int>(i) + 1, text[i]};
  }
  return {};
}

}  // namespace korvex::composite
