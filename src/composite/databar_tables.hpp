// Characters, finder patterns and weights of DataBar Omnidirectional and DataBar Expanded.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "composite/character_widths.hpp"

namespace korvex::composite {

/// A group's two subsets, by modules and widest element; values of the group and of its second subset.
template <Narrow First, int FirstModules, int FirstWidest, int SecondModules, int SecondWidest, int Values,
          int SecondValues>
constexpr CharacterGroup make_group() {
  constexpr Narrow kSecond = First == Narrow::optional ? Narrow::required : Narrow::optional;
  constexpr std::span<const FourWidths> kFirstWays = kFourElementWays<FirstModules, FirstWidest, First>;
  constexpr std::span<const FourWidths> kSecondWays = kFourElementWays<SecondModules, SecondWidest, kSecond>;
  static_assert(SecondValues <= static_cast<int>(kSecondWays.size()));
  static_assert(Values % SecondValues == 0 && Values / SecondValues <= static_cast<int>(kFirstWays.size()));
  return {.values = Values, .second_values = SecondValues, .first = kFirstWays, .second = kSecondWays};
}

// ISO/IEC 24724, clause 5: outside characters, 16 modules, left and right in the symbol.
inline constexpr auto kOutsideGroups = number_groups(std::array{
    // first, second: modules, widest; values of the group, of the second subset
    make_group<Narrow::optional, 12, 8, 4, 1, 161, 1>(),
    make_group<Narrow::optional, 10, 6, 6, 3, 800, 10>(),
    make_group<Narrow::optional, 8, 4, 8, 5, 1054, 34>(),
    make_group<Narrow::optional, 6, 3, 10, 6, 700, 70>(),
    make_group<Narrow::optional, 4, 1, 12, 8, 126, 126>(),
});
// Inside characters, 15 modules, between the finder patterns.
inline constexpr auto kInsideGroups = number_groups(std::array{
    make_group<Narrow::optional, 10, 7, 5, 2, 336, 4>(),
    make_group<Narrow::optional, 8, 5, 7, 4, 700, 20>(),
    make_group<Narrow::optional, 6, 3, 9, 6, 480, 48>(),
    make_group<Narrow::optional, 4, 1, 11, 8, 81, 81>(),
});
inline constexpr int kOutsideValues = 2841;
inline constexpr int kInsideValues = 1597;
static_assert(kOutsideGroups.back().end == kOutsideValues && kInsideGroups.back().end == kInsideValues);

// ISO/IEC 24724, clause 7: DataBar Expanded, 17 modules.
inline constexpr auto kExpandedGroups = number_groups(std::array{
    make_group<Narrow::required, 12, 7, 5, 2, 348, 4>(),
    make_group<Narrow::required, 10, 5, 7, 4, 1040, 20>(),
    make_group<Narrow::required, 8, 4, 9, 5, 1560, 52>(),
    make_group<Narrow::required, 6, 3, 11, 6, 1040, 104>(),
    make_group<Narrow::required, 4, 1, 13, 8, 204, 204>(),
});
static_assert(kExpandedGroups.back().end == 4192);

/// The wide elements of a finder pattern, from its outer end; two narrow ones follow.
using FinderWidths = std::array<std::uint8_t, 3>;
inline constexpr int kFinderModules = 15;

// ISO/IEC 24724, clause 5: 0 to 8.
inline constexpr std::array<FinderWidths, 9> kFinders = {{
    {3, 8, 2},
    {3, 5, 5},
    {3, 3, 7},
    {3, 1, 9},
    {2, 7, 4},
    {2, 5, 6},
    {2, 3, 8},
    {1, 5, 7},
    {1, 3, 9},
}};
// Clause 7: A to F.
inline constexpr std::array<FinderWidths, 6> kExpandedFinders = {{
    {1, 8, 4},
    {3, 6, 4},
    {3, 4, 6},
    {3, 2, 8},
    {2, 6, 5},
    {2, 2, 9},
}};
static_assert([] {
  const auto sums_right = [](const auto& finders) {
    for (const FinderWidths& widths : finders) {
      if (widths[0] + widths[1] + widths[2] + 2 != kFinderModules) return false;
    }
    return true;
  };
  return sums_right(kFinders) && sums_right(kExpandedFinders);
}());

/// Powers of 3 modulo `modulus`: the weights of elements in a checksum.
template <std::size_t Count>
constexpr std::array<std::uint8_t, Count> powers_of_3(int modulus) {
  std::array<std::uint8_t, Count> powers{};
  int power = 1;
  for (std::uint8_t& weight : powers) {
    weight = static_cast<std::uint8_t>(power);
    power = power * 3 % modulus;
  }
  return powers;
}

}  // namespace korvex::composite
