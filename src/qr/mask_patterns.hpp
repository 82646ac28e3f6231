// The data mask patterns as packed rows.
#pragma once

#include <array>
#include <cstdint>

#include "qr/layer.hpp"

namespace korvex::qr {

/// True where pattern `pattern`, 0 to 7, inverts a module. ISO/IEC 18004:2015, Table 10.
constexpr bool mask_inverts(int pattern, int row, int column) {
  const int product = row * column;
  switch (pattern) {
    case 0:
      return (row + column) % 2 == 0;
    case 1:
      return row % 2 == 0;
    case 2:
      return column % 3 == 0;
    case 3:
      return (row + column) % 3 == 0;
    case 4:
      return (row / 2 + column / 3) % 2 == 0;
    case 5:
      return product % 2 + product % 3 == 0;
    case 6:
      return (product % 2 + product % 3) % 2 == 0;
    default:
      return ((row + column) % 2 + product % 3) % 2 == 0;
  }
}

inline constexpr int kMaskPeriod = 12;  // every pattern repeats after so many rows, and after so many columns

/// [pattern][word of the row][row mod 12], packed as a Layer is.
using MaskPatterns = std::array<std::array<std::array<std::uint64_t, kMaskPeriod>, Layer::kMostWords>, 8>;

constexpr MaskPatterns make_mask_patterns() {
  MaskPatterns patterns{};
  for (int pattern = 0; pattern < 8; ++pattern) {
    for (int row = 0; row < kMaskPeriod; ++row) {
      for (int column = 0; column < 64 * Layer::kMostWords; ++column) {
        const std::uint64_t bit = mask_inverts(pattern, row, column) ? 1 : 0;
        patterns[static_cast<std::size_t>(pattern)][static_cast<std::size_t>(column / 64)]
                [static_cast<std::size_t>(row)] |= bit << (63 - column % 64);
      }
    }
  }
  return patterns;
}
inline constexpr MaskPatterns kMaskPatterns = make_mask_patterns();

}  // namespace korvex::qr
