// Item numbers as people write them for GS1 DataBar and EAN/UPC symbols.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "composite/request.hpp"
#include "korvex/result.hpp"

namespace korvex::composite {

/// Appends the digits that the linear component is made of, without the check digit, to `plain`. `text` is
/// that many digits, or these and their check digit, or 01 and the 14 digits of a GTIN with the identifier in
/// brackets or without; for UPC-E also the six digits below the bars, with the number system 0 in front, and
/// with the check digit behind. Returns what is wrong with it.
std::optional<Error> append_item_number(Symbology symbology, std::string_view text, std::string& plain);

}  // namespace korvex::composite
