// The C entry of the VERI family.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::veri {

/// VERI_Encode. Returns KORVEX_OK, KORVEX_NO_SYMBOL (the data does not fit, or no symbol of this size is
/// made) or KORVEX_BAD_PARAMETER (a null pointer, or modules that are not square); a failing call paints and
/// writes nothing.
std::int16_t entry(Korvex_Device_Context device, const VERI_Params* params, Symbol_Size* size);

}  // namespace korvex::veri
