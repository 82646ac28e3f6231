// Composite symbols on a device: each row is a bitmap of its own.
#pragma once

#include <cstdint>

#include "korvex/composite.hpp"
#include "korvex/korvex32.h"

namespace korvex::composite {

/// Width and height in pixels of a symbol of `module_size` pixels a module. What passes 16 bits is cut off.
Symbol_Size painted_size(const Symbol& symbol, int module_size_pixels);

/// Paints the rows from the lowest to the topmost, with light pixels on their right up to a multiple of 32.
/// Returns KORVEX_OK; KORVEX_BAD_PARAMETER when rows were too wide, which are left out; or KORVEX_NO_SYMBOL
/// when there is no memory for them.
std::int16_t paint(Korvex_Device_Context device, const Symbol& symbol, int module_size_pixels);

}  // namespace korvex::composite
