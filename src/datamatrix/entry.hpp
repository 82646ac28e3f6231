// The C entry of the Data Matrix family.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::datamatrix {

/// DATA_Encode: paints the symbol on `device` and writes its size in pixels. Returns KORVEX_OK; else nothing
/// is painted or written: KORVEX_BAD_PARAMETER for a missing record, a module below one pixel, a tilde that
/// stands alone, more data than the encoder takes, or a size beyond what Symbol_Size can tell;
/// KORVEX_NO_SYMBOL when no symbol of the size asked for holds the data.
std::int16_t entry(Korvex_Device_Context device, const DATA_Params* params, Symbol_Size* size);

}  // namespace korvex::datamatrix
