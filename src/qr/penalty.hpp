// What speaks against a masked symbol, counted on whole words.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <utility>

#include "qr/lanes.hpp"
#include "qr/layer.hpp"

namespace korvex::qr {

/// What counts as a finder-like pattern, a dark-light-dark-light-dark run of 1 : 1 : 3 : 1 : 1 in a row or
/// column with light beside it.
enum class FinderRule : std::uint8_t {
  /// ISO/IEC 18004:2015, 7.8.3.1: in modules, with four light ones on at least one side. Outside the symbol
  /// is
  /// light, and the outer dark runs may go on on the side that is not.
  published,
  /// Dialect::korvex32: in units of any number of modules, with a light run of four units on at least one
  /// side
  /// and runs that end where they should. Light goes on past the right and the bottom edge only.
  korvex32,
};

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

  /// A word of a row, 0 to side - 1.
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
    /// Patterns by the FinderRule, in rows and columns.
    int finder_likes = 0;
  };
  template <FinderRule rule>
  [[nodiscard]] Counts counts() const {
    return [&]<int... w>(std::integer_sequence<int, w...>) {
      Counts sum;
      (add_counts<rule, w>(sum), ...);
      return sum;
    }
    (std::make_integer_sequence<int, kWords>());
  }

 private:
  // As far as columns are followed beyond a row.
  static constexpr int kRowsAbove = 4;
  static constexpr int kRowsBelow = 13;

  using Rows = Lanes<Word>;  // the same word of rows below each other

  /// Word w of the rows from `row` on.
  template <int w>
  [[nodiscard]] Rows words(int row) const {
    if constexpr (w < 0 || w >= kWords) {
      return Rows{};
    } else {
      return load(&words_[w][static_cast<std::size_t>(row + kRowsAbove)]);
    }
  }

  /// What stands `n` columns further right, `next` is the word after `here`; and further left.
  template <int n>
  static Rows ahead(const Rows& here, const Rows& next) {
    if constexpr (kWords == 1) return here << n;
    return here << n | next >> (kWordBits - n);
  }
  template <int n>
  static Rows behind(const Rows& here, const Rows& previous) {
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

  /// Modules and those around each in its row or column: d1 stands one module further on, b1 one back.
  struct Line {
    Rows b4, b3, b2, b1, d0, d1, d2, d3, d4, d5, d6, d7, d8, d9, d10;
  };
  /// What starts at the modules d0.
  struct Found {
    Rows runs_by_byte;  // five of one colour, one that starts a run counts three: n modules give n - 4 + 2
    Rows patterns_by_byte;  // 1 : 1 : 3 : 1 : 1 in units of one module
    Rows middles;           // maybe the middle of a larger one
  };
  /// `complete` has the modules with four more after them, `first` those that start a line and `first_four`
  /// those with fewer than four before them.
  template <FinderRule rule>
  static Found find(const Line& at, const Rows& complete, const Rows& first, const Rows& first_four) {
    const Rows five_dark = at.d0 & at.d1 & at.d2 & at.d3 & at.d4;
    const Rows dark_in_five = at.d0 | at.d1 | at.d2 | at.d3 | at.d4;
    const Rows five_alike = (five_dark | ~dark_in_five) & complete;
    const Rows run_starts = five_alike & ((at.d0 ^ at.b1) | first);

    const Rows runs_by_byte = ones_by_byte<Word>(five_alike) + (ones_by_byte<Word>(run_starts) << 1);
    if constexpr (rule == FinderRule::published) {
      const Rows before = at.b1 | at.b2 | at.b3 | at.b4;
      const Rows after = at.d7 | at.d8 | at.d9 | at.d10;
      const Rows found = at.d0 & at.d2 & at.d3 & at.d4 & at.d6 & ~(at.d1 | at.d5 | (before & after));
      return {runs_by_byte, ones_by_byte<Word>(found), Rows{}};
    }
    const Rows dark_before = at.b1 | at.b2 | at.b3 | at.b4 | first_four;
    const Rows dark_after = at.d7 | at.d8 | at.d9 | at.d10;
    const Rows patterns = at.d0 & at.d2 & at.d3 & at.d4 & at.d6 & ~(at.b1 | at.d1 | at.d5 | at.d7) &
                          ~(dark_before & dark_after);

    // The middle of a larger pattern is six dark modules or more after two light ones or more. When the unit
    // is two it ends there, and the third module before it is dark; else both the next two are dark and the
    // third before it light.
    const Rows middles = five_dark & at.d5 & at.d8 & ~(at.b1 | at.b2 | (at.d6 ^ at.d7)) & (at.d6 ^ at.b3);
    return {runs_by_byte, ones_by_byte<Word>(patterns), middles};
  }

  /// Adds what stands in word w of the rows.
  template <FinderRule rule, int w>
  void add_counts(Counts& sum) const {
    const Word columns = first_columns<w>(side_);
    const Word columns_but_last_four = first_columns<w>(side_ - 4);
    const Rows first_column = Rows{} | first_columns<w>(1);
    const Rows first_four_columns = Rows{} | first_columns<w>(4);
    const Word* const rows = ones_until(side_);
    const Word* const rows_but_last_four = ones_until(side_ - 4);
    const Word* const first_row = ones_until(1);
    const Word* const first_four_rows = ones_until(4);
    Places middles_across;
    Places middles_down;
    Rows any_middle{};
    Rows dark{};
    Rows runs{};
    Rows patterns{};
    for (int row = 0; row < side_; row += kLaneCount<Word>) {
      const Rows previous = words<w - 1>(row);
      const Rows here = words<w>(row);
      const Rows next = words<w + 1>(row);
      const Found across = find<rule>(
          {behind<4>(here, previous), behind<3>(here, previous), behind<2>(here, previous),
           behind<1>(here, previous), here, ahead<1>(here, next), ahead<2>(here, next), ahead<3>(here, next),
           ahead<4>(here, next), ahead<5>(here, next), ahead<6>(here, next), ahead<7>(here, next),
           ahead<8>(here, next), ahead<9>(here, next), ahead<10>(here, next)},
          load(rows + row) & columns_but_last_four, first_column, first_four_columns);
      const Found down = find<rule>(
          {words<w>(row - 4), words<w>(row - 3), words<w>(row - 2), words<w>(row - 1), here,
           words<w>(row + 1), words<w>(row + 2), words<w>(row + 3), words<w>(row + 4), words<w>(row + 5),
           words<w>(row + 6), words<w>(row + 7), words<w>(row + 8), words<w>(row + 9), words<w>(row + 10)},
          load(rows_but_last_four + row) & columns, load(first_row + row), load(first_four_rows + row));
      dark += pairs_of_bytes<Word>(ones_by_byte<Word>(here));
      runs += pairs_of_bytes<Word>(across.runs_by_byte + down.runs_by_byte);
      patterns += pairs_of_bytes<Word>(across.patterns_by_byte + down.patterns_by_byte);
      store<Word>(across.middles, &middles_across[static_cast<std::size_t>(row)]);
      store<Word>(down.middles, &middles_down[static_cast<std::size_t>(row)]);
      any_middle |= across.middles | down.middles;
    }
    Word found_middle = 0;
    for (int i = 0; i < kLaneCount<Word>; ++i) {
      sum.dark_modules += total_of_pairs(lane<Word>(dark, i));
      sum.runs += total_of_pairs(lane<Word>(runs, i));
      sum.finder_likes += total_of_pairs(lane<Word>(patterns, i));
      found_middle |= lane<Word>(any_middle, i);
    }
    if (found_middle != 0) sum.finder_likes += larger_finder_likes(w, middles_across, middles_down);
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
