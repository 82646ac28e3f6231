// What speaks against a masked symbol, counted on whole words.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>

#include "qr/bit_counts.hpp"
#include "qr/layer.hpp"

namespace korvex::qr {

/// A masked Model 1 or Model 2 symbol, square, in words of `Word` and `kWords` of them a row, packed as a
/// Layer is. Around it everything is light.
template <class Word, int kWords>
class MaskedGrid {
 public:
  static constexpr int kWordBits = sizeof(Word) * 8;

  explicit MaskedGrid(int side) : side_(side) {
    for (auto& rows : words_) {
      std::fill_n(rows.begin(), kRowsAbove, Word{0});
      std::fill_n(rows.begin() + kRowsAbove + side, kRowsBelow, Word{0});
    }
  }

  /// A word of a row.
  [[nodiscard]] Word& word(int word, int row) {
    return words_[static_cast<std::size_t>(word)][static_cast<std::size_t>(row + kRowsAbove)];
  }
  [[nodiscard]] bool dark(int row, int column) const {
    const auto& rows = words_[static_cast<std::size_t>(column / kWordBits)];
    return (rows[static_cast<std::size_t>(row + kRowsAbove)] >> (kWordBits - 1 - column % kWordBits) & 1U) !=
           0;
  }

  /// What speaks against the symbol.
  struct Counts {
    int dark_modules = 0;
    /// Of the runs of five or more modules of one colour in rows and columns, the sum of their lengths, each
    /// less 2.
    int runs = 0;
    /// Dark-light-dark-light-dark runs of 1 : 1 : 3 : 1 : 1 in rows and columns with a light run of four
    /// units or more on at least one side. Past the right and the bottom edge light goes on, past the left
    /// and the top it does not.
    int finder_likes = 0;
  };
  [[nodiscard]] Counts counts() const {
    return [&]<int... w>(std::integer_sequence<int, w...>) {
      Counts sum;
      (add_counts<w>(sum), ...);
      return sum;
    }
    (std::make_integer_sequence<int, kWords>());
  }

 private:
  // As far as columns are followed beyond a row.
  static constexpr int kRowsAbove = 4;
  static constexpr int kRowsBelow = 13;

  template <int w>
  [[nodiscard]] Word word(int row) const {
    if constexpr (w < 0 || w >= kWords) {
      return 0;
    } else {
      return words_[w][static_cast<std::size_t>(row + kRowsAbove)];
    }
  }

  /// What stands `n` columns further right, `next` is the word after `here`; and further left.
  template <int n>
  static constexpr Word ahead(Word here, Word next) {
    if constexpr (kWords == 1) return here << n;
    return here << n | next >> (kWordBits - n);
  }
  template <int n>
  static constexpr Word behind(Word here, Word previous) {
    if constexpr (kWords == 1) return here >> n;
    return here >> n | previous << (kWordBits - n);
  }

  /// Word w of a row whose first `count` columns are ones.
  template <int w>
  static constexpr Word first_columns(int count) {
    const int bits = std::clamp(count - w * kWordBits, 0, kWordBits);
    return bits == 0 ? 0 : static_cast<Word>(~Word{0} << (kWordBits - bits));
  }
  /// The same for rows: all ones below index `end`, zeros from there on.
  static const Word* ones_until(int end) {
    static constexpr auto kSteps = [] {
      std::array<Word, 2 * Layer::kRows> steps{};
      std::fill_n(steps.begin(), Layer::kRows, static_cast<Word>(~Word{0}));
      return steps;
    }();
    return kSteps.data() + (Layer::kRows - end);
  }

  /// Rows up to a whole number of those that a vector unit takes at once: in those below the symbol nothing
  /// is found.
  [[nodiscard]] int grouped_rows() const { return (side_ + 3) / 4 * 4; }

  /// Many modules, one a bit, with those around each in a row or a column: d1 stands one module further on,
  /// b1 one back.
  struct Line {
    Word b4, b3, b2, b1, d0, d1, d2, d3, d4, d5, d6, d7, d8, d9, d10;
  };
  /// What starts at these modules: runs of five, by byte with those that start a run counted three times, as
  /// a run of n modules has n - 4 places where five of it start and counts n - 2; patterns of one-module
  /// units, by byte; and where the middle of a larger pattern may start.
  struct Found {
    Word runs_by_byte;
    Word patterns_by_byte;
    Word middles;
  };
  /// `complete` has the modules that have four more after them, `first` those that start a line and
  /// `first_four` those that have fewer than four before them.
  static Found find(const Line& at, Word complete, Word first, Word first_four) {
    const Word five_dark = at.d0 & at.d1 & at.d2 & at.d3 & at.d4;
    const Word any_dark_of_five = at.d0 | at.d1 | at.d2 | at.d3 | at.d4;
    const Word five_alike = (five_dark | ~any_dark_of_five) & complete;
    const Word run_starts = five_alike & ((at.d0 ^ at.b1) | first);

    const Word dark_before = at.b1 | at.b2 | at.b3 | at.b4 | first_four;
    const Word dark_after = at.d7 | at.d8 | at.d9 | at.d10;
    const Word patterns = at.d0 & at.d2 & at.d3 & at.d4 & at.d6 & ~(at.b1 | at.d1 | at.d5 | at.d7) &
                          ~(dark_before & dark_after);

    // Six dark modules after two light ones. The ninth belongs to the middle as well or, when the unit is
    // two, to the last dark run.
    const Word middles = five_dark & at.d5 & at.d8 & ~(at.b1 | at.b2);
    return {ones_by_byte(five_alike) + 2 * ones_by_byte(run_starts), ones_by_byte(patterns), middles};
  }

  /// Adds what stands in word w of the rows.
  template <int w>
  void add_counts(Counts& sum) const {
    const Word all_columns = first_columns<w>(side_);
    const Word complete_columns = first_columns<w>(side_ - 4);
    const Word* const all_rows = ones_until(side_);
    const Word* const complete_rows = ones_until(side_ - 4);
    const Word* const first_row = ones_until(1);
    const Word* const first_four_rows = ones_until(4);
    Places middles_across;
    Places middles_down;
    Word any_middle = 0;
    Word dark = 0;
    Word runs = 0;
    Word patterns = 0;
    for (int row = 0; row < grouped_rows(); ++row) {
      const Word previous = word<w - 1>(row);
      const Word here = word<w>(row);
      const Word next = word<w + 1>(row);
      const Line right = {behind<4>(here, previous),
                          behind<3>(here, previous),
                          behind<2>(here, previous),
                          behind<1>(here, previous),
                          here,
                          ahead<1>(here, next),
                          ahead<2>(here, next),
                          ahead<3>(here, next),
                          ahead<4>(here, next),
                          ahead<5>(here, next),
                          ahead<6>(here, next),
                          ahead<7>(here, next),
                          ahead<8>(here, next),
                          ahead<9>(here, next),
                          ahead<10>(here, next)};
      const Line down = {
          word<w>(row - 4), word<w>(row - 3), word<w>(row - 2), word<w>(row - 1), here,
          word<w>(row + 1), word<w>(row + 2), word<w>(row + 3), word<w>(row + 4), word<w>(row + 5),
          word<w>(row + 6), word<w>(row + 7), word<w>(row + 8), word<w>(row + 9), word<w>(row + 10)};
      const Found across_found =
          find(right, complete_columns & all_rows[row], first_columns<w>(1), first_columns<w>(4));
      const Found down_found =
          find(down, all_columns & complete_rows[row], first_row[row], first_four_rows[row]);
      dark += pairs_of_bytes(ones_by_byte(here));
      runs += pairs_of_bytes(across_found.runs_by_byte + down_found.runs_by_byte);
      patterns += pairs_of_bytes(across_found.patterns_by_byte + down_found.patterns_by_byte);
      middles_across[static_cast<std::size_t>(row)] = across_found.middles;
      middles_down[static_cast<std::size_t>(row)] = down_found.middles;
      any_middle |= across_found.middles | down_found.middles;
    }
    sum.dark_modules += total_of_pairs(dark);
    sum.runs += total_of_pairs(runs);
    sum.finder_likes += total_of_pairs(patterns);
    if (any_middle != 0) sum.finder_likes += larger_finder_likes(w, middles_across, middles_down);
  }

  /// One word of each row.
  using Places = std::array<Word, Layer::kRows>;

  /// Patterns with a unit of two modules or more: so few that each place where a middle may start is looked
  /// at. The places are words number w of the rows.
  [[nodiscard]] int larger_finder_likes(int w, const Places& across, const Places& down) const {
    int count = 0;
    for (int row = 0; row < side_; ++row) {
      const Word in_row = across[static_cast<std::size_t>(row)];
      const Word in_columns = down[static_cast<std::size_t>(row)];
      if ((in_row | in_columns) == 0) continue;
      for (Word rest = in_row; rest != 0; rest &= rest - 1) {
        const int column = (w + 1) * kWordBits - 1 - std::countr_zero(rest);
        if (is_finder_like([&](int at) { return dark(row, at); }, column)) ++count;
      }
      for (Word rest = in_columns; rest != 0; rest &= rest - 1) {
        const int column = (w + 1) * kWordBits - 1 - std::countr_zero(rest);
        if (is_finder_like([&](int at) { return dark(at, column); }, row)) ++count;
      }
    }
    return count;
  }

  /// True when the dark run that starts at `middle` of a line is the middle of a counted pattern.
  template <class Dark>
  [[nodiscard]] bool is_finder_like(Dark dark, int middle) const {
    // Modules of one colour from `at` on, going `step`, at most `most`.
    const auto run = [&](int at, int step, bool is_dark, int most) {
      int length = 0;
      while (length < most && at >= 0 && at < side_ && dark(at) == is_dark) {
        ++length;
        at += step;
      }
      return length;
    };
    const int unit = run(middle - 1, -1, false, side_);
    const int start = middle - 2 * unit;
    const int end = middle + 5 * unit;
    if (start < 0 || end > side_) return false;
    if (run(middle, 1, true, 3 * unit + 1) != 3 * unit ||
        run(middle + 3 * unit, 1, false, unit + 1) != unit ||
        run(middle + 4 * unit, 1, true, unit + 1) != unit ||
        run(middle - unit - 1, -1, true, unit + 1) != unit) {
      return false;
    }
    const int after = run(end, 1, false, 4 * unit);
    return after == 4 * unit || end + after == side_ || run(start - 1, -1, false, 4 * unit) == 4 * unit;
  }

  int side_;
  std::array<std::array<Word, kRowsAbove + Layer::kRows + kRowsBelow>, kWords> words_;
};

}  // namespace korvex::qr
