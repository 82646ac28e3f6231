// DataBar rows against a second writing of ISO/IEC 24724: element by element, slow, and without tables of
// widths.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "composite/character_widths.hpp"
#include "composite/databar_tables.hpp"
#include "composite/limited_check_characters.hpp"
#include "composite/row.hpp"
#include "composite/separators.hpp"
#include "korvex/composite.hpp"

namespace korvex::composite {
namespace {

using Widths = std::vector<int>;

int choose(int n, int k) {
  if (k < 0 || n < k) return 0;
  int result = 1;
  for (int i = 1; i <= k; ++i) result = result * (n - k + i) / i;
  return result;
}

/// ISO/IEC 24724, Annex B: the widths of `elements` elements, `modules` together, none above `widest`, by
/// value.
Widths element_widths(int value, int modules, int elements, int widest, bool no_narrow) {
  Widths widths;
  int narrow = 0;
  for (int bar = 0; bar < elements - 1; ++bar) {
    int width = 1;
    int ways = 0;
    for (narrow |= 1 << bar;; ++width, narrow &= ~(1 << bar)) {
      ways = choose(modules - width - 1, elements - bar - 2);
      if (!no_narrow && narrow == 0 && modules - width - (elements - bar - 1) >= elements - bar - 1) {
        ways -= choose(modules - width - (elements - bar), elements - bar - 2);
      }
      if (elements - bar - 1 > 1) {
        int less = 0;
        for (int wide = modules - width - (elements - bar - 2); wide > widest; --wide) {
          less += choose(modules - width - wide - 1, elements - bar - 3);
        }
        ways -= less * (elements - 1 - bar);
      } else if (modules - width > widest) {
        --ways;
      }
      value -= ways;
      if (value < 0) break;
    }
    value += ways;
    modules -= width;
    widths.push_back(width);
  }
  widths.push_back(modules);
  return widths;
}

/// A row of a group table: modules and widest element of both subsets, values of the second, of the group.
struct Group {
  int first_modules, first_widest, second_modules, second_widest, second_values, values;
};
using Groups = std::vector<Group>;

const Groups kOutside = {{12, 8, 4, 1, 1, 161},
                         {10, 6, 6, 3, 10, 800},
                         {8, 4, 8, 5, 34, 1054},
                         {6, 3, 10, 6, 70, 700},
                         {4, 1, 12, 8, 126, 126}};
const Groups kInside = {
    {10, 7, 5, 2, 4, 336}, {8, 5, 7, 4, 20, 700}, {6, 3, 9, 6, 48, 480}, {4, 1, 11, 8, 81, 81}};
const Groups kExpanded = {{12, 7, 5, 2, 4, 348},
                          {10, 5, 7, 4, 20, 1040},
                          {8, 4, 9, 5, 52, 1560},
                          {6, 3, 11, 6, 104, 1040},
                          {4, 1, 13, 8, 204, 204}};
const Groups kLimited = {{17, 6, 9, 3, 28, 183064},    {13, 5, 13, 4, 728, 637000},
                         {9, 3, 17, 6, 6454, 180712},  {15, 5, 11, 4, 203, 490245},
                         {11, 4, 15, 5, 2408, 488824}, {19, 8, 7, 1, 1, 17094},
                         {7, 1, 19, 8, 16632, 16632}};

/// The widths of a character, the subsets by turns.
Widths character(const Groups& groups, int value, int elements, bool first_may_lack_narrow) {
  std::size_t group = 0;
  while (value >= groups[group].values) value -= groups[group++].values;
  const Group& row = groups[group];
  const Widths first = element_widths(value / row.second_values, row.first_modules, elements,
                                      row.first_widest, first_may_lack_narrow);
  const Widths second = element_widths(value % row.second_values, row.second_modules, elements,
                                       row.second_widest, !first_may_lack_narrow);
  Widths widths;
  for (int i = 0; i < elements; ++i) {
    widths.push_back(first[static_cast<std::size_t>(i)]);
    widths.push_back(second[static_cast<std::size_t>(i)]);
  }
  return widths;
}

TEST(CompositeDataBar, EveryCharacterHasTheWidthsOfTheStandardsProcedure) {
  const auto compare = [](const Groups& groups, std::span<const CharacterGroup> table,
                          bool first_may_lack_narrow) {
    for (int value = 0; value < table.back().end; ++value) {
      const auto widths = character_widths(table, value);
      ASSERT_EQ(Widths(widths.begin(), widths.end()), character(groups, value, 4, first_may_lack_narrow))
          << value;
    }
  };
  compare(kOutside, kOutsideGroups, true);
  compare(kInside, kInsideGroups, true);
  compare(kExpanded, kExpandedGroups, false);
}

/// '#' dark, '.' light.
std::string art(const ModuleMatrix& modules, int row) {
  std::string text;
  for (int column = 0; column < modules.columns(); ++column) text += modules.dark(row, column) ? '#' : '.';
  return text;
}
std::string art(const Row& row) {
  std::string text;
  for (int i = 0; i < row.width(); ++i) text += row.modules(i, 1) != 0 ? '#' : '.';
  return text;
}
std::string thirteen_digits(std::uint64_t number) {
  return std::to_string(10'000'000'000'000 + number).substr(1);
}
/// Elements by turns light and dark.
std::string drawn(const Widths& widths, bool dark = false) {
  std::string text;
  for (const int width : widths) {
    text.append(static_cast<std::size_t>(width), dark ? '#' : '.');
    dark = !dark;
  }
  return text;
}

TEST(CompositeDataBar, LimitedRowsAreThoseOfASlowSecondWriting) {
  std::mt19937_64 engine(24724);
  for (int i = 0; i < 3000; ++i) {
    const bool linked = i % 2 == 1;
    std::uint64_t number = i < 2 ? 1'999'999'999'999 : engine() % 2'000'000'000'000;
    const std::string text = thirteen_digits(number) + (linked ? "|" : "");
    const Result<Symbol> symbol = encode({.symbology = Symbology::databar_limited}, text);
    ASSERT_TRUE(symbol);

    if (linked) number += 2'015'133'531'096;
    const Widths left = character(kLimited, static_cast<int>(number / 2'013'571), 7, true);
    const Widths right = character(kLimited, static_cast<int>(number % 2'013'571), 7, true);
    int checksum = 0;
    int weight = 1;
    for (const Widths& widths : {left, right}) {
      for (const int width : widths) {
        checksum += width * weight;
        weight = weight * 3 % 89;
      }
    }
    Widths all = {1, 1};
    all.insert(all.end(), left.begin(), left.end());
    for (const char c : std::to_string(kLimitedCheckCharacters[static_cast<std::size_t>(checksum % 89)])) {
      all.push_back(c - '0');
    }
    all.insert(all.end(), right.begin(), right.end());
    all.insert(all.end(), {1, 1});
    ASSERT_EQ(art(symbol->modules, symbol->modules.rows() - 1), drawn(all)) << text;
  }
}

TEST(CompositeDataBar, OmnidirectionalRowsAreThoseOfASlowSecondWriting) {
  const int finders[9][3] = {{3, 8, 2}, {3, 5, 5}, {3, 3, 7}, {3, 1, 9}, {2, 7, 4},
                             {2, 5, 6}, {2, 3, 8}, {1, 5, 7}, {1, 3, 9}};
  std::mt19937_64 engine(1);
  for (int i = 0; i < 3000; ++i) {
    const bool linked = i % 2 == 1;
    std::uint64_t number = i < 2 ? 9'999'999'999'999 : engine() % 10'000'000'000'000;
    const Result<Symbol> symbol = encode({}, thirteen_digits(number) + (linked ? "|" : ""));
    ASSERT_TRUE(symbol);

    if (linked) number += 10'000'000'000'000;
    const auto left = static_cast<int>(number / 4'537'077);
    const auto right = static_cast<int>(number % 4'537'077);
    const Widths one = character(kOutside, left / 1597, 4, true);
    const Widths two = character(kInside, left % 1597, 4, true);
    const Widths three = character(kOutside, right / 1597, 4, true);
    const Widths four = character(kInside, right % 1597, 4, true);
    // Places of the widths, by character: the first element, and the step to the next; inside characters
    // begin with their second subset.
    Widths all(42, 1);
    int checksum = 0;
    int weight = 1;
    const auto place = [&](const Widths& widths, int first, int step, bool swapped) {
      for (int k = 0; k < 8; ++k) {
        const int width = widths[static_cast<std::size_t>(swapped ? k ^ 1 : k)];
        all[static_cast<std::size_t>(first + k * step)] = width;
        checksum += width * weight;
        weight = weight * 3 % 79;
      }
    };
    place(one, 0, 1, false);
    place(two, 20, -1, true);
    place(three, 41, -1, false);
    place(four, 21, 1, true);
    checksum %= 79;
    if (checksum >= 8) ++checksum;
    if (checksum >= 72) ++checksum;
    for (std::size_t k = 0; k < 3; ++k) {
      all[8 + k] = finders[checksum / 9][k];
      all[33 - k] = finders[checksum % 9][k];
    }
    all.insert(all.begin(), {1, 1});
    all.insert(all.end(), {1, 1});
    const std::string row = art(symbol->modules, symbol->modules.rows() - 1);
    ASSERT_EQ(row, linked ? "....." + drawn(all) : drawn(all)) << number;
  }
}

TEST(CompositeDataBar, SeparatorsAlternateBesideFindersAndEndLight) {
  struct Case {
    std::vector<std::uint8_t> elements;
    bool dark_first;
    const char* row;
    const char* separator;
  };
  for (const Case& c : {
           // Three elements of 13 modules: light, dark, light; dark, light, dark with a wide and a narrow
           // light one.
           Case{{5, 1, 3, 8, 2, 1, 1, 6},
                false,  //
                ".#.....#...########..#.######.#",
                "....###.#.#........#..#........"},
           Case{{4, 3, 8, 2, 1, 1, 4},
                false,  //
                ".#....###........##.#....#.",
                "....##...#.#.#.#...#.##...."},
           Case{{4, 5, 3, 1, 9, 1, 1, 5},
                true,  //
                "#.####.....###.#########.#.....#.",
                "......#####..........#..#.###...."},
           // No finder at all, but 13 modules.
           Case{{4, 6, 3, 2, 5},
                true,  //
                "#.####......###..#####.#",
                "......#.#.#....##......."},
       }) {
    const Row row = guarded_row(c.elements, c.dark_first);
    EXPECT_EQ(art(row), c.row);
    EXPECT_EQ(art(adjacent_row_separator(row, c.elements, c.dark_first)), c.separator);
  }
}

TEST(CompositeDataBar, StackedRowsHaveTheirSeparatorsBetweenThem) {
  for (int i = 0; i < 200; ++i) {
    const std::string number = thirteen_digits(i * 48'271'000'003ULL);
    const Result<Symbol> stacked = encode({.symbology = Symbology::databar_stacked}, number);
    ASSERT_TRUE(stacked);
    EXPECT_EQ(stacked->row_heights, (std::vector<std::uint16_t>{5, 1, 7}));
    const std::string upper = art(stacked->modules, 0);
    const std::string middle = art(stacked->modules, 1);
    const std::string lower = art(stacked->modules, 2);
    EXPECT_EQ(middle.substr(0, 4) + middle.substr(46), "........");
    for (std::size_t column = 20; column < 30; ++column) {  // beyond the reach of both ends
      const char opposed = upper[column] == lower[column] ? upper[column] : middle[column - 1];
      EXPECT_NE(middle[column], opposed) << number << ", column " << column;
    }

    const Result<Symbol> omni = encode({.symbology = Symbology::databar_stacked_omni}, number + "|");
    ASSERT_TRUE(omni);
    const int last = omni->modules.rows() - 1;
    EXPECT_EQ(art(omni->modules, last - 2), ".....#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#.#...........");
    EXPECT_EQ(art(omni->modules, last - 3), art(omni->modules, last - 5));  // above and below the upper row
    EXPECT_EQ(art(omni->modules, last - 4).substr(50), ".......");
  }
}

}  // namespace
}  // namespace korvex::composite
