// Rows and columns of packed bits exchanged.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "qr/lanes.hpp"
#include "qr/layer.hpp"

namespace korvex::qr {

/// As many rows as a word has cells of `kBits` bits, the first cell of a row in its most significant bits.
template <int kBits>
using SquareOfCells = std::array<std::uint64_t, 64 / kBits>;

/// In the first `rows` rows, exchanges the top right and the bottom left quarter of each square of 2 * kHalf
/// cells a side. Takes `Words` at once.
template <int kBits, int kHalf, class Words>
void exchange_quarters(SquareOfCells<kBits>& square, std::size_t rows) {
  constexpr int kShift = kBits * kHalf;
  constexpr std::uint64_t kRightHalves = ~std::uint64_t{0} / ((std::uint64_t{1} << kShift) + 1);
  constexpr std::size_t kStep = sizeof(Words) / 8;  // words at once
  static_assert(kHalf % kStep == 0);
  for (std::size_t first = 0; first < rows; first += std::size_t{2} * kHalf) {
    for (std::size_t i = first; i < first + kHalf; i += kStep) {
      Words top;
      Words bottom;
      std::memcpy(&top, &square[i], sizeof top);
      std::memcpy(&bottom, &square[i + kHalf], sizeof bottom);
      const Words changed = (top ^ bottom >> kShift) & kRightHalves;
      top ^= changed;
      bottom ^= changed << kShift;
      std::memcpy(&square[i], &top, sizeof top);
      std::memcpy(&square[i + kHalf], &bottom, sizeof bottom);
    }
  }
}

/// Exchanges rows and columns of a square; only the first `rows` rows of the result are wanted.
template <int kBits>
void transpose(SquareOfCells<kBits>& square, int rows) {
  using Words = Lanes<std::uint64_t>;
  constexpr int kSide = 64 / kBits;
  const std::size_t wanted = rows <= kSide / 2 ? kSide / 2 : kSide;
  if constexpr (kSide == 64) exchange_quarters<kBits, 32, Words>(square, kSide);
  exchange_quarters<kBits, 16, Words>(square, kSide == 64 ? wanted : kSide);
  exchange_quarters<kBits, 8, Words>(square, wanted);
  exchange_quarters<kBits, 4, Words>(square, wanted);
  exchange_quarters<kBits, 2, Words>(square, wanted);
  exchange_quarters<kBits, 1, std::uint64_t>(square, wanted);
}

/// Writes to the first `side` rows of `result` a layer of `side` rows and columns with these exchanged.
inline void transpose(const Layer& layer, int side, Layer& result) {
  constexpr int kSide = 64;
  for (int w = 0; w * kSide < side; ++w) {
    for (int first_row = 0; first_row < side; first_row += kSide) {
      SquareOfCells<1> square{};
      std::copy_n(layer.word_column(w) + first_row, std::min(kSide, side - first_row), square.begin());
      const int columns = std::min(kSide, side - w * kSide);
      transpose<1>(square, columns);
      std::copy_n(square.begin(), columns, result.word_column(first_row / kSide) + w * kSide);
    }
  }
}

}  // namespace korvex::qr
