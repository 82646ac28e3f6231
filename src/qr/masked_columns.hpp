// A symbol under all eight data masks side by side.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "qr/lanes.hpp"
#include "qr/layer.hpp"
#include "qr/mask_patterns.hpp"

namespace korvex::qr {

/// As many columns of a square symbol as a word has bits, under each mask. Above and below everything is
/// light.
template <class Word>
class MaskedColumns {
 public:
  static constexpr int kBits = sizeof(Word) * 8;
  static constexpr int kMasks = kLaneCount<Word>;  // in a vector
  using Rows = Lanes<Word>;

  explicit MaskedColumns(int side) : side_(side) {
    for (int row = 0; row < kRowsAbove; ++row) rows_[static_cast<std::size_t>(row)] = {};
    clear_rows(side, kRowsBelow);
  }

  [[nodiscard]] int side() const { return side_; }

  /// The masks from `mask` on in a row, kRowsAbove above the symbol to kRowsBelow below it.
  [[nodiscard]] Rows at(int row, int mask) const {
    return load(&rows_[static_cast<std::size_t>(row + kRowsAbove)][static_cast<std::size_t>(mask)]);
  }
  [[nodiscard]] Word word(int row, int mask) const {
    return rows_[static_cast<std::size_t>(row + kRowsAbove)][static_cast<std::size_t>(mask)];
  }

  /// Makes all columns light.
  void clear() { clear_rows(0, side_); }

  /// Draws word w of a symbol of modules `dark`, masked in `area`, with format information.
  template <bool kTransposed>
  void draw(const Layer& dark, const Layer& area, const ForEachPattern<Word>& formats, int w) {
    const std::uint64_t* const dark_rows = dark.word_column(w);
    const std::uint64_t* const area_rows = area.word_column(w);
    for (int row = 0; row < side_; ++row) {
      const auto& patterns = kMaskPatterns<Word, kTransposed>[static_cast<std::size_t>(w)]
                                                             [static_cast<std::size_t>(row % kMaskPeriod)];
      const auto row_dark = static_cast<Word>(dark_rows[row] >> (64 - kBits));
      const auto row_area = static_cast<Word>(area_rows[row] >> (64 - kBits));
      auto& words = rows_[static_cast<std::size_t>(row + kRowsAbove)];
      for (std::size_t mask = 0; mask < 8; mask += kMasks) {
        store<Word>((load(&patterns[mask]) & row_area) ^ row_dark, &words[mask]);
      }
    }
    draw_format_information(formats, w);
  }

 private:
  // As far as columns are followed beyond the symbol.
  static constexpr int kRowsAbove = 4;
  static constexpr int kRowsBelow = 10;

  void clear_rows(int first, int count) {
    std::fill_n(rows_.begin() + kRowsAbove + first, count, ForEachPattern<Word>{});
  }

  /// ISO/IEC 18004:2015, 7.9.1, see draw_format_information() of one symbol. The transposed symbol has the
  /// same places, with the bits in reverse: bit 7 would stand where the dark module is, which it leaves dark.
  void draw_format_information(const ForEachPattern<Word>& formats, int w) {
    constexpr int kLine = 8;  // row and column
    // Bits [first, first + count) side by side, the first one rightmost.
    const auto draw = [&](int row, int column, int first, int count) {
      const int end = column + count - w * kBits;
      if (end <= 0 || end - count >= kBits) return;
      auto& words = rows_[static_cast<std::size_t>(row + kRowsAbove)];
      for (std::size_t mask = 0; mask < 8; mask += kMasks) {
        const Rows bits = load(&formats[mask]) >> first & ((Word{1} << count) - 1);
        store<Word>(load(&words[mask]) | (end <= kBits ? bits << (kBits - end) : bits >> (end - kBits)),
                    &words[mask]);
      }
    };
    for (int bit = 0; bit < 6; ++bit) draw(bit, kLine, bit, 1);
    draw(7, kLine, 6, 1);
    draw(kLine, kLine - 1, 7, 2);
    draw(kLine, 0, 9, 6);
    for (int bit = 7; bit < 15; ++bit) draw(side_ - 15 + bit, kLine, bit, 1);
    draw(kLine, side_ - 8, 0, 8);
  }

  int side_;
  std::array<ForEachPattern<Word>, kRowsAbove + kMostModules + kRowsBelow> rows_;
};

}  // namespace korvex::qr
