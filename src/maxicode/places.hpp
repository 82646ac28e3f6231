// Where the bits of a MaxiCode symbol go. ISO/IEC 16023, figure 5 and 4.10.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "korvex/maxicode.hpp"

namespace korvex::maxicode {

inline constexpr int kBits = 6 * kCodewords;

/// A module of the grid; row 0 at the top.
struct Cell {
  std::uint8_t row;
  std::uint8_t column;
};

/// The modules that tell which way up the symbol is.
struct OrientationCell {
  Cell cell;
  bool dark;
};
inline constexpr OrientationCell kOrientation[] = {
    {{0, 28}, true},   {{0, 29}, true},   {{9, 10}, true},   {{9, 11}, true},   {{10, 11}, true},
    {{9, 17}, false},  {{10, 17}, false}, {{10, 18}, false}, {{15, 7}, true},   {{16, 7}, false},
    {{16, 8}, true},   {{16, 20}, true},  {{16, 21}, false}, {{17, 20}, true},  {{22, 10}, true},
    {{22, 11}, false}, {{23, 10}, true},  {{22, 17}, true},  {{23, 16}, false}, {{23, 17}, true},
};

/// Columns of the central area, which the bull's-eye covers, in rows 11 to 21.
struct Columns {
  int first, last;
};
inline constexpr int kCentreTop = 11;
inline constexpr Columns kCentre[] = {{11, 15}, {11, 17}, {10, 17}, {10, 18}, {9, 18}, {9, 19},
                                      {9, 18},  {10, 18}, {10, 17}, {11, 17}, {11, 16}};

/// Modules that carry no data: orientation, centre, and the thirtieth of odd rows, which is not there.
inline constexpr auto kFixed = [] {
  std::array<std::array<bool, kColumns>, kRows> fixed{};
  for (std::size_t row = 1; row < kRows; row += 2) fixed[row][kColumns - 1] = true;
  for (std::size_t i = 0; i < std::size(kCentre); ++i) {
    for (int column = kCentre[i].first; column <= kCentre[i].last; ++column) {
      fixed[kCentreTop + i][static_cast<std::size_t>(column)] = true;
    }
  }
  for (const auto& orientation : kOrientation) {
    fixed[static_cast<std::size_t>(orientation.cell.row)][static_cast<std::size_t>(orientation.cell.column)] =
        true;
  }
  return fixed;
}();

/// Blocks of the primary message, around the centre, by their lower left module: they grow upwards and to the
/// right.
inline constexpr Cell kPrimaryBlocks[] = {
    {11, 16}, {17, 18}, {23, 16}, {23, 12}, {20, 10}, {14, 10}, {11, 12}, {14, 18}, {20, 18}, {23, 14},
    {23, 10}, {17, 8},  {11, 10}, {11, 14}, {11, 18}, {17, 20}, {17, 6},  {14, 8},  {20, 8},  {23, 18},
    {23, 8},  {11, 8},  {14, 20}, {20, 20}, {20, 6},  {14, 6},  {11, 20}, {23, 20},
};

/// Every data module in the order of the bits.
inline constexpr auto kCells = [] {
  std::array<Cell, kBits> cells{};
  std::size_t count = 0;
  const auto add_block = [&](int row, int column, int down, int right) {
    for (int i = 0; i < 6; ++i) {
      const int r = row + down * (i / 2);
      const int c = column + right * (i % 2);
      if (kFixed[static_cast<std::size_t>(r)][static_cast<std::size_t>(c)]) continue;
      cells[count++] = {static_cast<std::uint8_t>(r), static_cast<std::uint8_t>(c)};
    }
  };
  for (const Cell anchor : kPrimaryBlocks) add_block(anchor.row, anchor.column, -1, 1);
  // The secondary message runs in bands of three rows, to the right and back to the left, around the primary
  // one.
  for (int band = 0; band < kRows; band += 3) {
    const bool rightwards = band % 6 == 0;
    for (int i = 0; i < 14; ++i) {
      const int column = rightwards ? 2 * i + 1 : 27 - 2 * i;
      const bool covered = band >= 12 && band <= 18  ? column > 5 && column < 23
                           : band == 9 || band == 21 ? column > 7 && column < 23
                                                     : false;
      if (!covered) add_block(band, column, 1, -1);
    }
  }
  for (int band = 0; band < kRows; band += 3) add_block(band, kColumns - 1, 1, -1);
  if (count != cells.size()) throw "every bit has its module";
  return cells;
}();

static_assert(
    [] {
      std::array<std::array<int, kColumns>, kRows> taken{};
      for (const Cell cell : kCells)
        ++taken[static_cast<std::size_t>(cell.row)][static_cast<std::size_t>(cell.column)];
      for (std::size_t row = 0; row < kRows; ++row) {
        for (std::size_t column = 0; column < kColumns; ++column) {
          if (taken[row][column] != (kFixed[row][column] ? 0 : 1)) return false;
        }
      }
      return true;
    }(),
    "every data module is taken once");

}  // namespace korvex::maxicode
