// The fixed raster of a MaxiCode symbol.
#pragma once

#include <array>
#include <cstdint>

#include "korvex/maxicode.hpp"

namespace korvex::maxicode {

inline constexpr int kPixelWidth = 224;
inline constexpr int kPixelHeight = 200;

/// Pixels of a row, leftmost in the most significant bit of the first word, 1 is dark.
using PixelRow = std::array<std::uint64_t, (kPixelWidth + 63) / 64>;
using Pixels = std::array<PixelRow, kPixelHeight>;

Pixels pixels_of(const ModuleMatrix& modules);

}  // namespace korvex::maxicode
