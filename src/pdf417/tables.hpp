// The sizes of MicroPDF417.
#pragma once

#include <array>
#include <cstddef>

#include "pdf417/patterns.hpp"
#include "pdf417/request.hpp"

namespace korvex::pdf417 {

struct MicroLayout {
  int columns;
  int rows;
  int check_codewords;
  int left;    ///< number of the left row address pattern of the first row, from 0; the others follow
  int centre;  ///< with 3 and 4 columns
  int right;

  [[nodiscard]] constexpr int data_codewords() const { return columns * rows - check_codewords; }
  [[nodiscard]] constexpr bool has_centre() const { return columns >= 3; }
  /// Whether it is one of those with so many columns and rows, of which 0 is any number.
  [[nodiscard]] constexpr bool goes_with(int wanted_columns, int wanted_rows) const {
    return (wanted_columns == 0 || columns == wanted_columns) && (wanted_rows == 0 || rows == wanted_rows);
  }
};

// ISO/IEC 24728, the table of symbol sizes and that of row address patterns.
inline constexpr auto kMicroLayouts = std::to_array<MicroLayout>({
    // clang-format off
    // columns rows  check  left  centre  right
    {      1,   11,     7,    0,      0,     8},
    {      1,   14,     7,    7,      0,     7},
    {      1,   17,     7,   35,      0,    35},
    {      1,   20,     8,   18,      0,    18},
    {      1,   24,     8,    8,      0,    16},
    {      1,   28,     8,   24,      0,    32},
    {      2,    8,     8,    0,      0,     0},
    {      2,   11,     9,    0,      0,     8},
    {      2,   14,     9,    7,      0,     7},
    {      2,   17,    10,   35,      0,    35},
    {      2,   20,    11,   18,      0,    18},
    {      2,   23,    13,    8,      0,    16},
    {      2,   26,    15,   26,      0,    34},
    {      3,    6,    12,    0,      0,     0},
    {      3,    8,    14,    6,      6,     6},
    {      3,   10,    16,   14,     14,    14},
    {      3,   12,    18,   24,     24,    24},
    {      3,   15,    21,   36,     36,    36},
    {      3,   20,    26,    0,     16,    32},
    {      3,   26,    32,    0,      8,    16},
    {      3,   32,    38,   20,     28,    36},
    {      3,   38,    44,   14,     30,    46},
    {      3,   44,    50,    0,     24,    48},
    {      4,    4,     8,   46,     18,    42},
    {      4,    6,    12,    0,      0,     0},
    {      4,    8,    14,    6,      6,     6},
    {      4,   10,    16,   14,     14,    14},
    {      4,   12,    18,   24,     24,    24},
    {      4,   15,    21,   36,     36,    36},
    {      4,   20,    26,    0,     16,    32},
    {      4,   26,    32,    0,      8,    16},
    {      4,   32,    38,   20,     28,    36},
    {      4,   38,    44,   14,     30,    46},
    {      4,   44,    50,    0,     24,    48},
    // clang-format on
});

constexpr bool micro_layouts_are_sound() {
  for (std::size_t i = 0; i < kMicroLayouts.size(); ++i) {
    const MicroLayout& layout = kMicroLayouts[i];
    // Each size once, by columns, then by rows.
    if (i > 0) {
      const MicroLayout& before = kMicroLayouts[i - 1];
      if (before.columns > layout.columns) return false;
      if (before.columns == layout.columns && before.rows >= layout.rows) return false;
    }
    // The left pattern tells the row, so its numbers do not start again; the others run on from 51 to 0.
    if (layout.left + layout.rows > static_cast<int>(kRowAddresses)) return false;
    if (!layout.has_centre() && layout.centre != 0) return false;
    // The centre stands in the middle between the sides, and 3 and 4 columns of as many rows are alike.
    const auto steps = [](int from, int to) { return (to - from + kRowAddresses) % kRowAddresses; };
    if (layout.has_centre() && steps(layout.left, layout.centre) != steps(layout.centre, layout.right))
      return false;
    for (const MicroLayout& other : kMicroLayouts) {
      if (!layout.has_centre() || !other.has_centre() || other.rows != layout.rows) continue;
      if (other.left != layout.left || other.centre != layout.centre) return false;
    }
    if (layout.check_codewords < 7 || layout.data_codewords() < 4) return false;
  }
  return kMicroLayouts.size() == 34;
}
static_assert(micro_layouts_are_sound());

}  // namespace korvex::pdf417
