// What speaks against a symbol under each of the eight data masks: ISO/IEC 18004:2015, 7.8.3.1.
//
// Everything is counted down columns. A word has a row's modules of as many columns as it has bits, a vector
// of words has the same under several masks, and to compare rows with each other takes no shifts. What stands
// in rows is counted in the columns of the transposed symbol.
#pragma once

#include "qr/construction.hpp"
#include "qr/finder_likes.hpp"
#include "qr/transpose.hpp"

namespace korvex::qr {

/// What speaks against one symbol.
struct Penalty {
  int squares = 0;  ///< 2 x 2 modules of one colour; squares may overlap
  int runs = 0;     ///< of five or more modules of one colour in rows and columns: the lengths, each less 2
  int finder_likes = 0;  ///< in rows and columns, by the rule of the dialect
  int dark_modules = 0;
};

/// Under each mask.
using Penalties = std::array<Penalty, 8>;

/// Ones of many words, counted for each word of a vector.
template <class Word>
class Tally {
 public:
  /// Adds the ones of one vector.
  void add(const Lanes<Word>& ones) { sums_ += pairs_of_bytes<Word>(ones_by_byte<Word>(ones)); }
  /// Adds those of four: cheaper, for only carries of four are spread over bytes.
  void add(const Lanes<Word>& a, const Lanes<Word>& b, const Lanes<Word>& c, const Lanes<Word>& d) {
    const Lanes<Word> twos_of_two = carry(ones_, a, b);
    const Lanes<Word> more_twos = carry(ones_, c, d);
    sums_ += pairs_of_bytes<Word>(ones_by_byte<Word>(carry(twos_, twos_of_two, more_twos)) << 2);
  }

  /// What has been added to word `index` of the vectors.
  [[nodiscard]] int total(int index) const {
    const Lanes<Word> rest = ones_by_byte<Word>(ones_) + (ones_by_byte<Word>(twos_) << 1);
    return total_of_pairs(lane<Word>(sums_ + pairs_of_bytes<Word>(rest), index));
  }

 private:
  /// Adds a and b to `sum` in every bit; what is too much for one bit is carried.
  static Lanes<Word> carry(Lanes<Word>& sum, const Lanes<Word>& a, const Lanes<Word>& b) {
    const Lanes<Word> either = sum ^ a;
    const Lanes<Word> carried = (sum & a) | (either & b);
    sum = either ^ b;
    return carried;
  }

  Lanes<Word> ones_{};
  Lanes<Word> twos_{};
  Lanes<Word> sums_{};
};

/// Adds the runs and the patterns like a finder of the columns that `counted` has.
template <Dialect kDialect, class Word>
void add_lines(const MaskedColumns<Word>& symbol, Word counted, Penalties& sums) {
  using Rows = Lanes<Word>;
  constexpr int kMasks = kLaneCount<Word>;
  for (int mask = 0; mask < 8; mask += kMasks) {
    Tally<Word> fives;       // runs of five: one of n modules has n - 4 of them
    Tally<Word> beginnings;  // the first ones of each run
    Tally<Word> finder_likes;
    Rows five_above{};
    struct Found {
      Rows five, begins, finder_like;
    };
    const auto starting_in = [&](int row) {
      const auto at = [&](int step) { return symbol.at(row + step, mask); };
      const Rows all_dark = at(0) & at(1) & at(2) & at(3) & at(4);
      const Rows any_dark = at(0) | at(1) | at(2) | at(3) | at(4);
      Found found{(all_dark | ~any_dark) & counted, {}, {}};
      found.begins = found.five & ~five_above;
      five_above = found.five;
      if constexpr (kDialect == Dialect::standard) {
        found.finder_like = standard_finder_likes(symbol, row, mask);
      } else {
        Rows larger;
        found.finder_like = old_finder_likes(symbol, row, mask, larger);
        for (int i = 0; i < kMasks; ++i) {
          const Word places = lane<Word>(larger, i);
          if (places == 0) continue;
          sums[static_cast<std::size_t>(mask + i)].finder_likes +=
              count_larger_finder_likes(symbol, row, mask + i, places);
        }
      }
      return found;
    };
    // The rows where five modules can start are one more than a multiple of four. Two runs, or two patterns,
    // of a column do not start within four rows, so four rows of them fit in one vector.
    const int last = symbol.side() - 5;
    for (int row = 0; row < last; row += 4) {
      const Found a = starting_in(row);
      const Found b = starting_in(row + 1);
      const Found c = starting_in(row + 2);
      const Found d = starting_in(row + 3);
      fives.add(a.five, b.five, c.five, d.five);
      beginnings.add(a.begins | b.begins | c.begins | d.begins);
      finder_likes.add(a.finder_like | b.finder_like | c.finder_like | d.finder_like);
    }
    const Found rest = starting_in(last);
    fives.add(rest.five);
    beginnings.add(rest.begins);
    for (int i = 0; i < kMasks; ++i) {
      Penalty& sum = sums[static_cast<std::size_t>(mask + i)];
      sum.runs += fives.total(i) + 2 * beginnings.total(i);
      sum.finder_likes += finder_likes.total(i);
    }
  }
}

/// Adds the dark modules, and the squares whose left columns `counted` has. `next` has the columns further
/// right.
template <class Word>
void add_areas(const MaskedColumns<Word>& symbol, const MaskedColumns<Word>& next, Word counted,
               Penalties& sums) {
  using Rows = Lanes<Word>;
  constexpr int kMasks = kLaneCount<Word>;
  constexpr int kLastBit = sizeof(Word) * 8 - 1;
  const int last = symbol.side() - 1;  // a multiple of four
  for (int mask = 0; mask < 8; mask += kMasks) {
    Tally<Word> squares;
    Tally<Word> dark;
    const auto changes_right = [&](int row) {
      const Rows here = symbol.at(row, mask);
      return here ^ (here << 1 | next.at(row, mask) >> kLastBit);
    };
    Rows changes_above = changes_right(0);
    const auto square_below = [&](int row) {
      const Rows changes = changes_right(row + 1);
      const Rows square =
          ~(changes_above | changes | (symbol.at(row, mask) ^ symbol.at(row + 1, mask))) & counted;
      changes_above = changes;
      return square;
    };
    for (int row = 0; row < last; row += 4) {
      const Rows a = square_below(row);
      const Rows b = square_below(row + 1);
      const Rows c = square_below(row + 2);
      const Rows d = square_below(row + 3);
      squares.add(a, b, c, d);
      dark.add(symbol.at(row, mask), symbol.at(row + 1, mask), symbol.at(row + 2, mask),
               symbol.at(row + 3, mask));
    }
    dark.add(symbol.at(last, mask));
    for (int i = 0; i < kMasks; ++i) {
      Penalty& sum = sums[static_cast<std::size_t>(mask + i)];
      sum.squares += squares.total(i);
      sum.dark_modules += dark.total(i);
    }
  }
}

/// Format information of each mask, and the same with the bits in reverse.
template <class Word>
struct Formats {
  ForEachPattern<Word> upright{};
  ForEachPattern<Word> transposed{};
};

/// The penalties of a Model 1 or Model 2 symbol under each mask.
template <Dialect kDialect, class Word>
Penalties penalties(const Canvas& canvas, const Formats<Word>& formats) {
  const int side = canvas.columns;
  Layer transposed;
  transpose(canvas.dark, side, transposed);
  // The data area looks the same from above and from the left.
  Penalties sums{};
  constexpr int kBits = sizeof(Word) * 8;
  std::array<MaskedColumns<Word>, 2> symbol = {MaskedColumns<Word>(side), MaskedColumns<Word>(side)};
  symbol[static_cast<std::size_t>(canvas.words % 2)].clear();  // right of the symbol
  for (int w = canvas.words - 1; w >= 0; --w) {
    MaskedColumns<Word>& here = symbol[static_cast<std::size_t>(w % 2)];
    const MaskedColumns<Word>& next = symbol[static_cast<std::size_t>((w + 1) % 2)];
    here.template draw<false>(canvas.dark, canvas.data_area, formats.upright, w);
    add_lines<kDialect>(here, first_columns<Word>(side - w * kBits), sums);
    add_areas(here, next, first_columns<Word>(side - 1 - w * kBits), sums);
  }
  for (int w = 0; w < canvas.words; ++w) {
    symbol[0].template draw<true>(transposed, canvas.data_area, formats.transposed, w);
    add_lines<kDialect>(symbol[0], first_columns<Word>(side - w * kBits), sums);
  }
  return sums;
}

}  // namespace korvex::qr
