// The C entry of the QR Code family.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::qr {

/// QR_Encode: checks the record, encodes it and paints the symbol. Returns KORVEX_OK with version_used and
/// `size` written, KORVEX_NO_SYMBOL with version_used 0, or KORVEX_BAD_PARAMETER or KORVEX_GS1_FIXED_MODE
/// with nothing written. From the check of its symbol type on, the data of a GS1 symbol is translated in the
/// caller's buffer, also when the call fails later.
std::int16_t entry(Korvex_Device_Context device, QR_Params* params, Symbol_Size* size);

}  // namespace korvex::qr
