// The C entry of the MaxiCode family.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::maxicode {

/// MAXI_Encode. Returns KORVEX_OK, KORVEX_BAD_PARAMETER (a field out of range, a null pointer) or
/// KORVEX_NO_SYMBOL (the message does not fit); a failing call paints and writes nothing.
std::int16_t entry(Korvex_Device_Context device, const MAXI_Params* params, Symbol_Size* size);

}  // namespace korvex::maxicode
