// Separator patterns of stacked DataBar symbols and between the components of composite symbols
// (ISO/IEC 24724, ISO/IEC 24723).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "composite/row.hpp"

namespace korvex::composite {

/// A row of DataBar symbol characters and finder patterns as it is drawn: light and dark guard module, the
/// elements, two guard modules; colours go on by turns throughout. Requires widths of 1 to 32 modules.
Row guarded_row(Elements elements, bool dark_first);

/// Where finder patterns stand among the elements of a row: of each the place of the first of its three wide
/// elements, from left to right.
class FinderPlaces {
 public:
  void push(std::size_t place) { places_[count_++] = static_cast<std::uint8_t>(place); }
  [[nodiscard]] std::span<const std::uint8_t> all() const { return {places_.data(), count_}; }

 private:
  std::array<std::uint8_t, 64> places_;  // not cleared: count_ says what is there
  std::size_t count_ = 0;
};

/// The places where any three elements are as wide together as those of a finder pattern: what
/// Dialect::korvex32 takes for finders, whether they are or not.
FinderPlaces finder_like_places(Elements elements, bool dark_first);

/// The separator that stands on or below `row`, which is guarded_row(elements, dark_first): the opposite of
/// every module, but beside finder patterns, where it alternates so that no scan line finds a second finder.
Row adjacent_row_separator(const Row& row, Elements elements, bool dark_first, const FinderPlaces& finders);

/// The opposite of every module: DataBar Limited.
Row opposite_separator(const Row& row);

/// The middle separator of DataBar Stacked: the opposite of its neighbours where they agree, else
/// alternating. Both rows are 50 modules wide.
Row stacked_middle_separator(const Row& upper, const Row& lower);

/// The middle separator of the other stacked symbols: alternating from module 5 on, the last four modules
/// light, five when `width` is odd.
Row alternating_middle_separator(int width);

}  // namespace korvex::composite
