// Modules under construction, packed for work on many rows at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "qr/tables.hpp"

namespace korvex::qr {

/// Bits [begin, end) of a word, bit 0 the most significant; what lies outside 0..63 is cut off.
constexpr std::uint64_t bit_range(int begin, int end) {
  const auto from = [](int bit) {
    return bit <= 0 ? ~std::uint64_t{0} : bit >= 64 ? 0 : ~std::uint64_t{0} >> bit;
  };
  return from(begin) & ~from(end);
}

/// A word whose first `count` columns are ones: none from 0 down, all from its width up.
template <class Word>
constexpr Word first_columns(int count) {
  return static_cast<Word>(bit_range(0, count) >> (64 - 8 * sizeof(Word)));
}

/// One bit a module. Word w of a row has columns 64 w to 64 w + 63, the first in its most significant bit;
/// the words of equal w of all rows lie side by side, so that loops over rows need no steps. Nothing is
/// initialised.
class Layer {
 public:
  static constexpr int kMostWords = (kMostModules + 63) / 64;
  static constexpr int kRows = (kMostModules + 11) / 12 * 12;  // masks repeat every 12 rows

  [[nodiscard]] std::uint64_t* word_column(int word) { return words_[static_cast<std::size_t>(word)].data(); }
  [[nodiscard]] const std::uint64_t* word_column(int word) const {
    return words_[static_cast<std::size_t>(word)].data();
  }
  [[nodiscard]] std::uint64_t& word(int row, int word) { return word_column(word)[row]; }
  [[nodiscard]] std::uint64_t word(int row, int word) const { return word_column(word)[row]; }

  /// Sets the bits of `row` that are 1 in the low `width` bits of `bits`, leftmost at `column`. Requires
  /// 1 <= width <= 32.
  void set(int row, int column, int width, std::uint64_t bits) {
    const int end = column % 64 + width;
    if (end <= 64) {
      word(row, column / 64) |= bits << (64 - end);
    } else {
      word(row, column / 64) |= bits >> (end - 64);
      word(row, column / 64 + 1) |= bits << (128 - end);
    }
  }
  /// Sets one bit.
  void set(int row, int column) { set(row, column, 1, 1); }

  /// Clears a rectangle.
  void clear(int row, int column, int height, int width) {
    for (int w = column / 64; w <= (column + width - 1) / 64; ++w) {
      const std::uint64_t bits = bit_range(column - 64 * w, column + width - 64 * w);
      for (int r = row; r < row + height; ++r) word(r, w) &= ~bits;
    }
  }

  /// Sets the bits [begin, end) of rows [first, last], clears their others, in the first `words` words.
  void fill_rows(int first, int last, int words, int begin, int end) {
    for (int w = 0; w < words; ++w) {
      const std::uint64_t bits = bit_range(begin - 64 * w, end - 64 * w);
      for (int r = first; r <= last; ++r) word(r, w) = bits;
    }
  }

 private:
  std::array<std::array<std::uint64_t, kRows>, kMostWords> words_;
};

}  // namespace korvex::qr
