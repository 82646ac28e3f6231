// The C entry of the PDF417 family.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::pdf417 {

/// PDF_Encode: draws one symbol. Returns
///   KORVEX_BAD_PARAMETER  ecc_level, columns, rows or the size of MicroPDF417 out of range: `size` untouched
///   KORVEX_NO_SYMBOL      no such symbol holds the data: `size` is 0 x 0
///   KORVEX_BAD_PARAMETER  module_width or row_height out of range: `size` is in modules and rows
///   KORVEX_OK             drawn: `size` is in pixels
std::int16_t entry(Korvex_Device_Context device, const PDF_Params* params, Symbol_Size* size);

}  // namespace korvex::pdf417
