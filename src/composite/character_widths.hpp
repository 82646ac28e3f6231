// Element widths of DataBar symbol characters (ISO/IEC 24724).
//
// A character has two subsets of elements, the first in its even places and the second in its odd ones, each
// with a fixed number of modules and a widest element. A subset's value numbers the ways of dividing its
// modules in the order of the first width, then the second, and so on. Where a subset must have a narrow
// element, ways without an element of one module are left out.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korvex::composite {

/// Whether a subset of elements must have one that is one module wide.
enum class Narrow : std::uint8_t { optional, required };

/// Ways of dividing `modules` into `parts` elements of `narrowest` to `widest` modules.
constexpr int count_ways(int modules, int parts, int narrowest, int widest) {
  if (parts == 0) return modules == 0 ? 1 : 0;
  int ways = 0;
  for (int width = narrowest; width <= widest && width <= modules; ++width) {
    ways += count_ways(modules - width, parts - 1, narrowest, widest);
  }
  return ways;
}

/// Four widths, the first in the highest of four nibbles.
using FourWidths = std::uint16_t;

/// Every way of a four-element subset, by its value.
template <int Modules, int Widest, Narrow Rule>
inline constexpr auto kFourElementWays = [] {
  constexpr int kCount =
      count_ways(Modules, 4, 1, Widest) - (Rule == Narrow::required ? count_ways(Modules, 4, 2, Widest) : 0);
  std::array<FourWidths, kCount> ways{};
  std::size_t value = 0;
  for (int a = 1; a <= Widest; ++a) {
    for (int b = 1; b <= Widest; ++b) {
      for (int c = 1; c <= Widest; ++c) {
        const int d = Modules - a - b - c;
        if (d < 1 || d > Widest) continue;
        if (Rule == Narrow::required && a > 1 && b > 1 && c > 1 && d > 1) continue;
        ways[value++] = static_cast<FourWidths>(a << 12 | b << 8 | c << 4 | d);
      }
    }
  }
  return ways;
}();

/// Characters of eight elements whose subsets have the same numbers of modules.
struct CharacterGroup {
  int end = 0;  ///< one more than the group's last value
  int begin = 0;
  int values = 0;
  int second_values = 0;  ///< not always all that there are
  std::span<const FourWidths> first;
  std::span<const FourWidths> second;
};

/// Numbers the rows of a group table: each group begins where the one before ends.
template <std::size_t Count>
constexpr std::array<CharacterGroup, Count> number_groups(std::array<CharacterGroup, Count> groups) {
  int next = 0;
  for (CharacterGroup& group : groups) {
    group.begin = next;
    next += group.values;
    group.end = next;
  }
  return groups;
}

/// The eight widths of a character by value: the first subset in places 0, 2, 4, 6, the second in 1, 3, 5, 7.
/// Requires a value below the last group's end.
inline std::array<std::uint8_t, 8> character_widths(std::span<const CharacterGroup> groups, int value) {
  std::size_t index = 0;
  while (value >= groups[index].end) ++index;
  const CharacterGroup& group = groups[index];
  const auto in_group = static_cast<unsigned>(value - group.begin);
  const auto second_count = static_cast<unsigned>(group.second_values);
  const unsigned first = group.first[in_group / second_count];
  const unsigned second = group.second[in_group % second_count];
  const auto nibble = [](unsigned widths, int shift) {
    return static_cast<std::uint8_t>(widths >> shift & 0xFU);
  };
  return {nibble(first, 12), nibble(second, 12), nibble(first, 8), nibble(second, 8),
          nibble(first, 4),  nibble(second, 4),  nibble(first, 0), nibble(second, 0)};
}

}  // namespace korvex::composite
