// CC_Encode.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::composite {

/// Reads the record, encodes and paints; returns a result code. A length above 2436 or below 0 is
/// KORVEX_BAD_DATA, a type outside 1 to 12 KORVEX_NO_SYMBOL, everything else that is wrong
/// KORVEX_BAD_PARAMETER. `size` is written when the symbol is encoded, so also where a row of it is too wide
/// to be painted.
std::int16_t entry(Korvex_Device_Context device, const CC_Params* params, Symbol_Size* size);

}  // namespace korvex::composite
