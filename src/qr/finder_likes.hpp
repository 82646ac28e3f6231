// What looks like a finder pattern in the columns of a masked symbol, by either rule.
#pragma once

#include <bit>

#include "korvex/result.hpp"
#include "qr/masked_columns.hpp"

namespace korvex::qr {

/// ISO/IEC 18004:2015, 7.8.3.1: dark 1, light 1, dark 3, light 1, dark 1 with four light modules before or
/// after. The outer dark modules may go on where it is not light, and around the symbol everything is light.
///
/// Gives those that start in `row`, under the masks from `mask` on.
template <class Word>
Lanes<Word> standard_finder_likes(const MaskedColumns<Word>& symbol, int row, int mask) {
  const auto at = [&](int step) { return symbol.at(row + step, mask); };
  const Lanes<Word> pattern = at(0) & at(2) & at(3) & at(4) & at(6) & ~(at(1) | at(5));
  const Lanes<Word> dark_before = at(-4) | at(-3) | at(-2) | at(-1);
  const Lanes<Word> dark_after = at(7) | at(8) | at(9) | at(10);
  return pattern & ~(dark_before & dark_after);
}

/// The rule of the old dialect: runs of 1 : 1 : 3 : 1 : 1 units of any size, neither longer nor shorter, with
/// a light run of four units or more before or after. Light goes on past the last row, but not before the
/// first.
///
/// Gives those of one module a unit that start in `row`, under the masks from `mask` on. Where the middle of
/// a larger one may start stands in `larger`.
template <class Word>
Lanes<Word> old_finder_likes(const MaskedColumns<Word>& symbol, int row, int mask, Lanes<Word>& larger) {
  const auto at = [&](int step) { return symbol.at(row + step, mask); };
  const Word before_first = row < 4 ? static_cast<Word>(~Word{0}) : 0;
  const Lanes<Word> dark_before = at(-4) | at(-3) | at(-2) | at(-1) | before_first;
  const Lanes<Word> dark_after = at(7) | at(8) | at(9) | at(10);

  // The middle of a larger pattern is six dark modules or more after two light ones or more. When the unit is
  // two it ends there, and the third module before it is dark; else both the next two are dark and the third
  // before it is light.
  larger = at(0) & at(1) & at(2) & at(3) & at(4) & at(5) & at(8) & ~(at(-1) | at(-2) | (at(6) ^ at(7))) &
           (at(6) ^ at(-3));
  return at(0) & at(2) & at(3) & at(4) & at(6) & ~(at(-1) | at(1) | at(5) | at(7)) &
         ~(dark_before & dark_after);
}

/// True when the dark run that starts in row `middle` is the middle of a pattern of the old dialect. `dark`
/// tells the module in a row of the column.
template <class Dark>
bool is_old_finder_like(Dark dark, int middle, int side) {
  // Modules of one colour from `at` on, going `step`, at most `most`.
  const auto run = [&](int at, int step, bool is_dark, int most) {
    int length = 0;
    while (length < most && at >= 0 && at < side && dark(at) == is_dark) {
      ++length;
      at += step;
    }
    return length;
  };
  const int unit = run(middle - 1, -1, false, side);
  const int start = middle - 2 * unit;
  const int end = middle + 5 * unit;
  if (start < 0 || end > side) return false;
  if (run(middle, 1, true, 3 * unit + 1) != 3 * unit || run(middle + 3 * unit, 1, false, unit + 1) != unit ||
      run(middle + 4 * unit, 1, true, unit + 1) != unit ||
      run(middle - unit - 1, -1, true, unit + 1) != unit) {
    return false;
  }
  const int after = run(end, 1, false, 4 * unit);
  return after == 4 * unit || end + after == side || run(start - 1, -1, false, 4 * unit) == 4 * unit;
}

/// Counts the patterns of more than one module a unit among the places that old_finder_likes() has left in
/// `larger`.
template <class Word>
int count_larger_finder_likes(const MaskedColumns<Word>& symbol, int row, int mask, Word larger) {
  int count = 0;
  for (; larger != 0; larger &= larger - 1) {
    const int bit = std::countr_zero(larger);
    const auto dark = [&](int at) { return (symbol.word(at, mask) >> bit & 1U) != 0; };
    if (is_old_finder_like(dark, row, symbol.side())) ++count;
  }
  return count;
}

}  // namespace korvex::qr
