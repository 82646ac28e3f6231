// What the DataBar symbologies share: item numbers, and characters in their places.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "composite/request.hpp"

namespace korvex::composite {

/// Digits of an item number without its check digit.
inline constexpr int kItemDigits = 13;

/// The item number of a text of at most 13 digits as an element string, check digit included.
std::string item_element_string(std::uint64_t number);

/// Widths of a character's elements in the order in which they are weighted, from its outer end.
using CharacterWidths = std::array<std::uint8_t, 8>;

/// Puts them left to right from place `first` on, or right to left from place `last` down.
inline void put_forward(const CharacterWidths& widths, std::span<std::uint8_t> elements, std::size_t first) {
  for (std::size_t i = 0; i < widths.size(); ++i) elements[first + i] = widths[i];
}
inline void put_backward(const CharacterWidths& widths, std::span<std::uint8_t> elements, std::size_t last) {
  for (std::size_t i = 0; i < widths.size(); ++i) elements[last - i] = widths[i];
}

/// The sum of width times weight over eight elements.
inline int weighted_sum(const CharacterWidths& widths, std::span<const std::uint8_t> weights) {
  int sum = 0;
  for (std::size_t i = 0; i < widths.size(); ++i) sum += widths[i] * weights[i];
  return sum;
}

}  // namespace korvex::composite
