// PNG files of two colours and the shades between them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "style.hpp"

namespace korvex::cli {

/// Pixels of 0 (background) to 255 (foreground), rows from the top, `stride` bytes each.
struct Shades {
  int width = 0;
  int height = 0;
  std::size_t stride = 0;
  std::vector<std::uint8_t> bytes;

  [[nodiscard]] std::uint8_t* row(int y) { return bytes.data() + static_cast<std::size_t>(y) * stride; }
  [[nodiscard]] const std::uint8_t* row(int y) const {
    return bytes.data() + static_cast<std::size_t>(y) * stride;
  }
};

/// A PNG file with a palette: one bit a pixel, or four when it `has_shades` (16 of them, the ends exact).
/// Throws Failure when memory runs out.
std::string png_file(const Shades& shades, bool has_shades, const Style& style);

}  // namespace korvex::cli
