#include "composite/painting.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <numeric>

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

/// Paints the rows from `last` up to `first`, which have `columns` modules. `bottom` is the pixel line below
/// them, then the one below what comes next.
std::int16_t paint_rows(Korvex_Device_Context device, const Symbol& symbol, int first, int last, int columns,
                        int module_size, std::int64_t& bottom) {
  if (first > last) return KORVEX_OK;
  const std::int64_t width =
      (std::int64_t{columns} * module_size + kRowUnitPixels - 1) / kRowUnitPixels * kRowUnitPixels;
  if (width / 8 > kMostRowBytes) return KORVEX_BAD_PARAMETER;  // those above take their place
  const int highest =
      *std::max_element(symbol.row_heights.begin() + first, symbol.row_heights.begin() + last + 1);
  raster::Bitmap bitmap(width, std::int64_t{highest} * module_size);
  if (!bitmap.ok()) return KORVEX_NO_SYMBOL;
  for (int row = last; row >= first; --row) {
    const int height = symbol.row_heights[static_cast<std::size_t>(row)] * module_size;
    draw_row(symbol, row, columns, module_size, height, bitmap);
    bottom -= height;
    raster::blit(device, bitmap, height, static_cast<int>(bottom));
  }
  return KORVEX_OK;
}

}  // namespace

Symbol_Size painted_size(const Symbol& symbol, int module_size_pixels) {
  return {static_cast<std::int16_t>(width_modules(symbol) * module_size_pixels),
          static_cast<std::int16_t>(height_modules(symbol) * module_size_pixels)};
}

std::int16_t paint(Korvex_Device_Context device, const Symbol& symbol, int module_size_pixels) {
  std::int64_t bottom = height_modules(symbol) * module_size_pixels;
  const int rows = symbol.modules.rows();
  const int first_overhanging = rows - symbol.overhanging_rows;
  const std::int16_t lowest = paint_rows(device, symbol, first_overhanging, rows - 1,
                                         symbol.modules.columns(), module_size_pixels, bottom);
  const std::int16_t others =
      paint_rows(device, symbol, 0, first_overhanging - 1, width_modules(symbol), module_size_pixels, bottom);
  return lowest != KORVEX_OK ? lowest : others;
}

}  // namespace korvex::composite
