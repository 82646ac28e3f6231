// Where the human readable text of a linear symbol stands.
#pragma once

#include "korvex/linear.hpp"
#include "picture.hpp"

namespace korvex::cli::families {

/// Adds the symbol's text to a picture that has its bars: EAN/UPC with long guard bars and digits under and
/// beside them as ISO/IEC 15420 shows, an add-on's digits above, any other text in the middle below.
/// `narrow`: modules of the narrowest element.
void place_linear_text(Picture& picture, linear::Symbology symbology, const linear::Symbol& symbol,
                       int narrow);

}  // namespace korvex::cli::families
