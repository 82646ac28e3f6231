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

/// The same word of a row under each of the eight patterns.
template <class Word>
using ForEachPattern = std::array<Word, 8>;

/// [word of the row][row mod 12][pattern], packed as a Layer is in words of `Word`; also with rows and
/// columns exchanged.
template <class Word, bool kTransposed = false>
inline constexpr auto kMaskPatterns = [] {
  constexpr int kWordBits = sizeof(Word) * 8;
  std::array<std::array<ForEachPattern<Word>, kMaskPeriod>, (kMostModules + kWordBits - 1) / kWordBits>
      patterns{};
  for (int column = 0; column < static_cast<int>(patterns.size()) * kWordBits; ++column) {
    for (int row = 0; row < kMaskPeriod; ++row) {
      for (int pattern = 0; pattern < 8; ++pattern) {
        if (!(kTransposed ? mask_inverts(pattern, column, row) : mask_inverts(pattern, row, column)))
          continue;
        patterns[static_cast<std::size_t>(column / kWordBits)][static_cast<std::size_t>(row)]
                [static_cast<std::size_t>(pattern)] |= Word{1} << (kWordBits - 1 - column % kWordBits);
      }
    }
  }
  return patterns;
}();

}  // namespace korvex::qr
