// Separator patterns of stacked DataBar symbols and between the components of composite symbols
// (ISO/IEC 24724, ISO/IEC 24723).
#pragma once

#include "composite/row.hpp"

namespace korvex::composite {

/// A row of DataBar symbol characters and finder patterns as it is drawn: light and dark guard module, the
/// elements, two guard modules; colours go on by turns throughout. Requires widths of 1 to 32 modules.
Row guarded_row(Elements elements, bool dark_first);

/// The separator that stands on or below `row`, which is guarded_row(elements, dark_first): the opposite of
/// every module, but beside finder patterns, where it alternates so that no scan line finds a second finder.
Row adjacent_row_separator(const Row& row, Elements elements, bool dark_first);

/// The opposite of every module: DataBar Limited.
Row opposite_separator(const Row& row);

/// The middle separator of DataBar Stacked: the opposite of its neighbours where they agree, else
/// alternating. Both rows are 50 modules wide.
Row stacked_middle_separator(const Row& upper, const Row& lower);

/// The middle separator of the other stacked symbols: alternating from module 5 on, the last four modules
/// light, five when `width` is odd.
Row alternating_middle_separator(int width);

}  // namespace korvex::composite
