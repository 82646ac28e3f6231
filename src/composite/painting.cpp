#include "composite/painting.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <numeric>
#include <optional>

#include "frame/raster.hpp"

namespace korvex::composite {
namespace {

constexpr std::int64_t kMostRowBytes = 7016;
constexpr std::int64_t kRowUnitPixels = 32;

std::int64_t height_modules(const Symbol& symbol) {
  return std::accumulate(symbol.row_heights.begin(), symbol.row_heights.end(), std::int64_t{0});
}

/// Modules of the rows that do not overhang.
int width_modules(const Symbol& symbol) {
  return symbol.modules.columns() - (symbol.overhanging_rows > 0 ? 1 : 0);
}

/// Fills the first `height` lines of a bitmap with a row of `columns` modules, the rest of each line light.
void draw_row(const Symbol& symbol, int row, int columns, int module_size, int height,
              raster::Bitmap& bitmap) {
  const auto stride = static_cast<std::size_t>(bitmap.stride());
  std::memset(bitmap.row(0), 0, stride);
  raster::expand(symbol.modules.row(row), columns, module_size, bitmap.row(0));
  raster::set_light(bitmap.row(0), columns * module_size, bitmap.width());
  for (int line = 1; line < height; ++line) std::memcpy(bitmap.row(line), bitmap.row(0), stride);
}

/// Rows of equal width and the bitmap that they are painted through, one after the other.
class Rows {
 public:
  /// The rows from `first` to `end` - 1, which have `columns` modules.
  Rows(const Symbol& symbol, int first, int end, int columns, int module_size)
      : symbol_(symbol), first_(first), end_(end), columns_(columns), module_size_(module_size) {
    const std::int64_t width =
        (std::int64_t{columns} * module_size + kRowUnitPixels - 1) / kRowUnitPixels * kRowUnitPixels;
    if (first == end) return;
    if (width / 8 > kMostRowBytes) {
      result_ = KORVEX_BAD_PARAMETER;
      return;
    }
    const int highest =
        *std::max_element(symbol.row_heights.begin() + first, symbol.row_heights.begin() + end);
    bitmap_.emplace(width, std::int64_t{highest} * module_size);
    if (!bitmap_->ok()) result_ = KORVEX_NO_SYMBOL;
  }

  /// KORVEX_OK; KORVEX_BAD_PARAMETER for rows that are too wide, KORVEX_NO_SYMBOL when there is no memory.
  [[nodiscard]] std::int16_t result() const { return result_; }

  /// From the last one up, when the result is KORVEX_OK. `bottom` is the pixel line below them, then the one
  /// below what comes next: for rows too wide, those above take their place.
  void paint(Korvex_Device_Context device, std::int64_t& bottom) {
    if (result_ != KORVEX_OK) return;
    for (int row = end_ - 1; row >= first_; --row) {
      const int height = symbol_.row_heights[static_cast<std::size_t>(row)] * module_size_;
      draw_row(symbol_, row, columns_, module_size_, height, *bitmap_);
      bottom -= height;
      raster::blit(device, *bitmap_, height, static_cast<int>(bottom));
    }
  }

 private:
  const Symbol& symbol_;
  int first_;
  int end_;
  int columns_;
  int module_size_;
  std::int16_t result_ = KORVEX_OK;
  std::optional<raster::Bitmap> bitmap_;
};

}  // namespace

Symbol_Size painted_size(const Symbol& symbol, int module_size_pixels) {
  return {static_cast<std::int16_t>(width_modules(symbol) * module_size_pixels),
          static_cast<std::int16_t>(height_modules(symbol) * module_size_pixels)};
}

std::int16_t paint(Korvex_Device_Context device, const Symbol& symbol, int module_size_pixels) {
  std::int64_t bottom = height_modules(symbol) * module_size_pixels;
  const int rows = symbol.modules.rows();
  const int first_overhanging = rows - symbol.overhanging_rows;
  Rows overhanging(symbol, first_overhanging, rows, symbol.modules.columns(), module_size_pixels);
  Rows others(symbol, 0, first_overhanging, width_modules(symbol), module_size_pixels);
  // Without memory for all of it nothing is painted.
  if (overhanging.result() == KORVEX_NO_SYMBOL || others.result() == KORVEX_NO_SYMBOL)
    return KORVEX_NO_SYMBOL;
  overhanging.paint(device, bottom);
  others.paint(device, bottom);
  return overhanging.result() != KORVEX_OK ? overhanging.result() : others.result();
}

}  // namespace korvex::composite
