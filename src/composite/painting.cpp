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

}  // namespace

Symbol_Size painted_size(const Symbol& symbol, int module_size_pixels) {
  return {static_cast<std::int16_t>(symbol.modules.columns() * module_size_pixels),
          static_cast<std::int16_t>(height_modules(symbol) * module_size_pixels)};
}

std::int16_t paint(Korvex_Device_Context device, const Symbol& symbol, int module_size_pixels) {
  const std::int64_t width = std::int64_t{symbol.modules.columns()} * module_size_pixels;
  const std::int64_t padded_width = (width + kRowUnitPixels - 1) / kRowUnitPixels * kRowUnitPixels;
  if (padded_width / 8 > kMostRowBytes) return KORVEX_BAD_PARAMETER;  // all rows are equally wide

  const int highest = *std::ranges::max_element(symbol.row_heights);
  raster::Bitmap bitmap(padded_width, std::int64_t{highest} * module_size_pixels);
  if (!bitmap.ok()) return KORVEX_NO_SYMBOL;
  const auto stride = static_cast<std::size_t>(bitmap.stride());
  auto bottom = height_modules(symbol) * module_size_pixels;
  for (int row = symbol.modules.rows() - 1; row >= 0; --row) {
    const int height = symbol.row_heights[static_cast<std::size_t>(row)] * module_size_pixels;
    std::memset(bitmap.row(0), 0, stride);
    raster::expand(symbol.modules.row(row), symbol.modules.columns(), module_size_pixels, bitmap.row(0));
    raster::set_light(bitmap.row(0), static_cast<int>(width), static_cast<int>(padded_width));
    for (int line = 1; line < height; ++line) std::memcpy(bitmap.row(line), bitmap.row(0), stride);
    bottom -= height;
    raster::blit(device, bitmap, height, static_cast<int>(bottom));
  }
  return KORVEX_OK;
}

}  // namespace korvex::composite
