// The sizes of Data Matrix ECC 200 symbols.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace korvex::datamatrix {

/// One size. Modules count the finder and timing patterns in; every data region has one row of them above and
/// below it and one column left and right.
struct SymbolSize {
  int rows;     ///< modules
  int columns;  ///< modules
  int data_codewords;
  int check_codewords;
  int region_rows;     ///< data regions, one under the other
  int region_columns;  ///< data regions, side by side

  /// The modules that hold codewords, all regions put together.
  [[nodiscard]] constexpr int mapping_rows() const { return rows - 2 * region_rows; }
  [[nodiscard]] constexpr int mapping_columns() const { return columns - 2 * region_columns; }
  [[nodiscard]] constexpr int codewords() const { return data_codewords + check_codewords; }

  /// Interleaved Reed-Solomon blocks: as few as keep a block's check codewords to 68, and even when several.
  [[nodiscard]] constexpr int blocks() const {
    constexpr int kMaxBlockCheckCodewords = 68;
    const int least = (check_codewords + kMaxBlockCheckCodewords - 1) / kMaxBlockCheckCodewords;
    return least == 1 ? 1 : least + least % 2;
  }
};

// ISO/IEC 16022:2006, Table 7.
inline constexpr auto kSizes = std::to_array<SymbolSize>({
    // clang-format off
    // rows  cols  data  check  region rows, columns
    {   10,   10,    3,     5,       1,       1},
    {   12,   12,    5,     7,       1,       1},
    {   14,   14,    8,    10,       1,       1},
    {   16,   16,   12,    12,       1,       1},
    {   18,   18,   18,    14,       1,       1},
    {   20,   20,   22,    18,       1,       1},
    {   22,   22,   30,    20,       1,       1},
    {   24,   24,   36,    24,       1,       1},
    {   26,   26,   44,    28,       1,       1},
    {   32,   32,   62,    36,       2,       2},
    {   36,   36,   86,    42,       2,       2},
    {   40,   40,  114,    48,       2,       2},
    {   44,   44,  144,    56,       2,       2},
    {   48,   48,  174,    68,       2,       2},
    {   52,   52,  204,    84,       2,       2},
    {   64,   64,  280,   112,       4,       4},
    {   72,   72,  368,   144,       4,       4},
    {   80,   80,  456,   192,       4,       4},
    {   88,   88,  576,   224,       4,       4},
    {   96,   96,  696,   272,       4,       4},
    {  104,  104,  816,   336,       4,       4},
    {  120,  120, 1050,   408,       6,       6},
    {  132,  132, 1304,   496,       6,       6},
    {  144,  144, 1558,   620,       6,       6},
    // rectangles, a height after the other
    {    8,   18,    5,     7,       1,       1},
    {    8,   32,   10,    11,       1,       2},
    {   12,   26,   16,    14,       1,       1},
    {   12,   36,   22,    18,       1,       2},
    {   16,   36,   32,    24,       1,       2},
    {   16,   48,   49,    28,       1,       2},
    // clang-format on
});

inline constexpr std::span<const SymbolSize> kSquareSizes = std::span(kSizes).first(24);
inline constexpr std::span<const SymbolSize> kRectangleSizes = std::span(kSizes).last(6);

/// The place of `size`, one of kSizes.
constexpr std::size_t index_of(const SymbolSize& size) {
  return static_cast<std::size_t>(&size - kSizes.data());
}

inline constexpr int kMaxDataCodewords = 1558;
inline constexpr int kMaxCodewords = 2178;

static_assert(std::ranges::is_sorted(kSquareSizes, {}, &SymbolSize::data_codewords));
static_assert(std::ranges::is_sorted(kRectangleSizes, {}, &SymbolSize::data_codewords));
static_assert(std::ranges::all_of(kSizes, [](const SymbolSize& size) {
  const int modules = size.mapping_rows() * size.mapping_columns();
  return modules / 8 == size.codewords() && size.mapping_rows() % size.region_rows == 0 &&
         size.mapping_columns() % size.region_columns == 0 && size.check_codewords % size.blocks() == 0 &&
         size.data_codewords <= kMaxDataCodewords && size.codewords() <= kMaxCodewords;
}));

}  // namespace korvex::datamatrix
