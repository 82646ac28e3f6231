// What speaks against a masked symbol, counted on whole words.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "qr/layer.hpp"

namespace korvex::qr {

/// A masked Model 1 or Model 2 symbol, square, in words of `Word` and `kWords` of them a row, packed as a
/// Layer is. The rows around it are light.
template <class Word, int kWords>
class MaskedGrid {
 public:
  static constexpr int kWordBits = sizeof(Word) * 8;

  explicit MaskedGrid(int side) : side_(side) {
    for (auto& column : words_) {
      std::fill_n(column.begin(), kRowsAbove, Word{0});
      std::fill_n(column.begin() + kRowsAbove + side, kRowsBelow, Word{0});
    }
  }

  [[nodiscard]] int side() const { return side_; }
  /// The words number `word` of all rows, row 0 first.
  [[nodiscard]] Word* word_column(int word) { return &words_[static_cast<std::size_t>(word)][kRowsAbove]; }
  [[nodiscard]] bool dark(int row, int column) const {
    return (word(column / kWordBits, row) >> (kWordBits - 1 - column % kWordBits) & 1U) != 0;
  }

  /// 2 x 2 squares of one colour, overlapping ones each.
  [[nodiscard]] int squares() const {
    return sum_over_words([&]<int w>() {
      const Word columns = first_columns<w>(side_ - 1);
      return sum_ones(0, side_ - 1, [&](int row) {
        return columns & ~(changes_right<w>(row) | changes_right<w>(row + 1) | changes_down<w>(row));
      });
    });
  }

  [[nodiscard]] int dark_modules() const {
    return sum_over_words([&]<int w>() { return sum_ones(0, side_, [&](int row) { return word<w>(row); }); });
  }

  /// Runs of five or more modules of one colour in rows and columns, each with its length less 2.
  [[nodiscard]] int runs() const {
    // A run of n modules has n - 4 places where five of it start, and one of them starts the run: n - 4 + 2.
    return sum_over_words([&]<int w>() {
      const Word starts = first_columns<w>(side_ - 4);
      const Word line_start = first_columns<w>(1);
      const auto five_across = [&](int row) {
        const Word c1 = changes_right<w>(row);
        const Word next = changes_right<w + 1>(row);
        return starts & ~(c1 | ahead<1>(c1, next) | ahead<2>(c1, next) | ahead<3>(c1, next));
      };
      const auto starts_across = [&](int row) {
        const Word before = behind<1>(changes_right<w>(row), changes_right<w - 1>(row));
        return five_across(row) & (before | line_start);
      };
      const Word columns = first_columns<w>(side_);
      const auto five_down = [&](int row) {
        return columns & ~(changes_down<w>(row) | changes_down<w>(row + 1) | changes_down<w>(row + 2) |
                           changes_down<w>(row + 3));
      };
      const auto starts_down = [&](int row) { return five_down(row) & changes_down<w>(row - 1); };
      return sum_ones(0, side_, five_across) + 2 * sum_ones(0, side_, starts_across) +
             sum_ones(0, side_ - 4, five_down) + 2 * sum_ones(0, 1, five_down) +
             2 * sum_ones(1, side_ - 4, starts_down);
    });
  }

  /// Dark-light-dark-light-dark runs of 1 : 1 : 3 : 1 : 1 in rows and columns with a light run of four units
  /// or more on at least one side. Past the right and the bottom edge everything is light.
  [[nodiscard]] int finder_likes() const { return finder_likes_of_one_module() + larger_finder_likes(); }

 private:
  // As far as the columns look beyond a row.
  static constexpr int kRowsAbove = 4;
  static constexpr int kRowsBelow = 12;

  template <int w>
  [[nodiscard]] Word word(int row) const {
    if constexpr (w < 0 || w >= kWords) {
      return 0;
    } else {
      return words_[w][static_cast<std::size_t>(row + kRowsAbove)];
    }
  }
  [[nodiscard]] Word word(int w, int row) const {
    return words_[static_cast<std::size_t>(w)][static_cast<std::size_t>(row + kRowsAbove)];
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

  /// Where the next module to the right, or below, has the other colour.
  template <int w>
  [[nodiscard]] Word changes_right(int row) const {
    return word<w>(row) ^ ahead<1>(word<w>(row), word<w + 1>(row));
  }
  template <int w>
  [[nodiscard]] Word changes_down(int row) const {
    return word<w>(row) ^ word<w>(row + 1);
  }

  /// The sum of what `count` returns for each word of a row.
  template <class Count>
  static int sum_over_words(Count count) {
    return [&]<int... w>(std::integer_sequence<int, w...>) {
      return (count.template operator()<w>() + ...);
    }
    (std::make_integer_sequence<int, kWords>());
  }

  /// Ones in what `word_of` returns for the rows [begin, end).
  template <class WordOfRow>
  static int sum_ones(int begin, int end, WordOfRow word_of) {
    constexpr Word kAll = ~Word{0};
    constexpr Word kLow8Of16 = kAll / 257;   // 0x00FF00FF...
    constexpr Word kOneIn16 = kAll / 65535;  // 0x00010001...
    constexpr int kRowsABatch = 31;          // no byte passes 8 * 31
    int sum = 0;
    while (begin < end) {
      const int batch_end = std::min(end, begin + kRowsABatch);
      Word bytes = 0;  // ones counted in each byte
      for (; begin < batch_end; ++begin) {
        Word x = word_of(begin);
        x -= x >> 1 & kAll / 3;
        x = (x & kAll / 5) + (x >> 2 & kAll / 5);
        bytes += (x + (x >> 4)) & kAll / 17;
      }
      const Word pairs = (bytes & kLow8Of16) + (bytes >> 8 & kLow8Of16);
      sum += static_cast<int>(static_cast<Word>(pairs * kOneIn16) >> (kWordBits - 16));
    }
    return sum;
  }

  [[nodiscard]] int finder_likes_of_one_module() const {
    // A pattern starts at a module; d1 stands one module further, b1 one before it, and so on.
    const auto pattern = [](Word b1, Word d0, Word d1, Word d2, Word d3, Word d4, Word d5, Word d6, Word d7) {
      return ~b1 & d0 & ~d1 & d2 & d3 & d4 & ~d5 & d6 & ~d7;
    };
    return sum_over_words([&]<int w>() {
      const Word four_before = ~first_columns<w>(4);
      const auto across = [&](int row) {
        const Word previous = word<w - 1>(row);
        const Word here = word<w>(row);
        const Word next = word<w + 1>(row);
        const Word b1 = behind<1>(here, previous);
        const Word d7 = ahead<7>(here, next);
        const Word light_before =
            ~(b1 | behind<2>(here, previous) | behind<3>(here, previous) | behind<4>(here, previous)) &
            four_before;
        const Word light_after = ~(d7 | ahead<8>(here, next) | ahead<9>(here, next) | ahead<10>(here, next));
        return pattern(b1, here, ahead<1>(here, next), ahead<2>(here, next), ahead<3>(here, next),
                       ahead<4>(here, next), ahead<5>(here, next), ahead<6>(here, next), d7) &
               (light_before | light_after);
      };
      const auto down_from = [&](int row) {
        return pattern(word<w>(row - 1), word<w>(row), word<w>(row + 1), word<w>(row + 2), word<w>(row + 3),
                       word<w>(row + 4), word<w>(row + 5), word<w>(row + 6), word<w>(row + 7));
      };
      const auto light_after = [&](int row) {
        return ~(word<w>(row + 7) | word<w>(row + 8) | word<w>(row + 9) | word<w>(row + 10));
      };
      const auto light_before = [&](int row) {
        return ~(word<w>(row - 1) | word<w>(row - 2) | word<w>(row - 3) | word<w>(row - 4));
      };
      const auto down_near_top = [&](int row) { return down_from(row) & light_after(row); };
      const auto down = [&](int row) { return down_from(row) & (light_before(row) | light_after(row)); };
      return sum_ones(0, side_, across) + sum_ones(0, 4, down_near_top) + sum_ones(4, side_ - 6, down);
    });
  }

  /// Patterns with a unit of two modules or more: few, so that each place where the middle may start is
  /// looked at.
  [[nodiscard]] int larger_finder_likes() const {
    // The middle: six dark modules after two light ones, with the neighbours that a unit of two has, or three
    // or more.
    const auto may_start = [](Word b4, Word b3, Word b2, Word b1, Word d0, Word d1, Word d2, Word d3, Word d4,
                              Word d5, Word d6, Word d7, Word d8, Word d9) {
      return ~(b2 | b1) & d0 & d1 & d2 & d3 & d4 & d5 &
             ((b4 & b3 & ~d6 & ~d7 & d8 & d9) | (~b3 & d6 & d7 & d8));
    };
    return sum_over_words([&]<int w>() {
      const auto across = [&](int row) {
        const Word previous = word<w - 1>(row);
        const Word here = word<w>(row);
        const Word next = word<w + 1>(row);
        return may_start(behind<4>(here, previous), behind<3>(here, previous), behind<2>(here, previous),
                         behind<1>(here, previous), here, ahead<1>(here, next), ahead<2>(here, next),
                         ahead<3>(here, next), ahead<4>(here, next), ahead<5>(here, next),
                         ahead<6>(here, next), ahead<7>(here, next), ahead<8>(here, next),
                         ahead<9>(here, next));
      };
      const auto down = [&](int row) {
        return may_start(word<w>(row - 4), word<w>(row - 3), word<w>(row - 2), word<w>(row - 1), word<w>(row),
                         word<w>(row + 1), word<w>(row + 2), word<w>(row + 3), word<w>(row + 4),
                         word<w>(row + 5), word<w>(row + 6), word<w>(row + 7), word<w>(row + 8),
                         word<w>(row + 9));
      };
      const auto in_row = [&](int row, int column) {
        return is_finder_like([&](int at) { return dark(row, at); }, column);
      };
      const auto in_column = [&](int row, int column) {
        return is_finder_like([&](int at) { return dark(at, column); }, row);
      };
      return count_places<w>(across, in_row) + count_places<w>(down, in_column);
    });
  }

  /// Ones of `candidates_in` at whose row and column `confirm` says yes.
  template <int w, class Candidates, class Confirm>
  [[nodiscard]] int count_places(Candidates candidates_in, Confirm confirm) const {
    std::array<Word, kMostModules> candidates;
    Word any = 0;
    for (int row = 0; row < side_; ++row) {
      any |= candidates[static_cast<std::size_t>(row)] = candidates_in(row);
    }
    if (any == 0) return 0;
    int count = 0;
    for (int row = 0; row < side_; ++row) {
      for (Word rest = candidates[static_cast<std::size_t>(row)]; rest != 0;) {
        const int bit = std::countl_zero(rest);
        rest &= static_cast<Word>(~(Word{1} << (kWordBits - 1 - bit)));
        if (confirm(row, w * kWordBits + bit)) ++count;
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
    if (run(middle - unit - 1, -1, true, unit + 1) != unit ||
        run(middle, 1, true, 3 * unit + 1) != 3 * unit ||
        run(middle + 3 * unit, 1, false, unit + 1) != unit ||
        run(middle + 4 * unit, 1, true, unit + 1) != unit) {
      return false;
    }
    const int after = run(end, 1, false, 4 * unit);
    return run(start - 1, -1, false, 4 * unit) == 4 * unit || after == 4 * unit || end + after == side_;
  }

  int side_;
  std::array<std::array<Word, kRowsAbove + Layer::kRows + kRowsBelow>, kWords> words_;
};

}  // namespace korvex::qr
