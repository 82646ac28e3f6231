#include "frame/raster.hpp"

#include <cstdlib>
#include <cstring>
#include <limits>
#include <span>

namespace korvex::raster {

void set_light(std::uint8_t* row, int begin, int end) {
  if (begin >= end) return;
  const int first = begin / 8;
  const int last = (end - 1) / 8;
  const auto first_mask = static_cast<std::uint8_t>(0xFF >> (begin % 8));
  const auto last_mask = static_cast<std::uint8_t>(0xFF << (7 - (end - 1) % 8));
  if (first == last) {
    row[first] |= static_cast<std::uint8_t>(first_mask & last_mask);
    return;
  }
  row[first] |= first_mask;
  std::memset(row + first + 1, 0xFF, static_cast<std::size_t>(last - first - 1));
  row[last] |= last_mask;
}

// Run by run.
void expand(std::span<const std::uint64_t> modules, int columns, int module_width, std::uint8_t* row) {
  int light_begin = -1;  // first column of the light run under way, -1 in a dark one
  for (int column = 0; column < columns; ++column) {
    const bool dark = (modules[static_cast<std::size_t>(column / 64)] >> (63 - column % 64) & 1U) != 0;
    if (dark && light_begin >= 0) {
      set_light(row, light_begin * module_width, column * module_width);
      light_begin = -1;
    } else if (!dark && light_begin < 0) {
      light_begin = column;
    }
  }
  if (light_begin >= 0) set_light(row, light_begin * module_width, columns * module_width);
}

void Bitmap::Free::operator()(std::uint8_t* bytes) const {
  std::free(bytes);
}

Bitmap::Bitmap(std::int64_t width, std::int64_t height) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  if (width < 1 || height < 1 || width > kMost - 15) return;
  const std::int64_t stride = (width + 15) / 16 * 2;
  if (height > kMost / stride) return;
  width_ = static_cast<int>(width);
  height_ = static_cast<int>(height);
  stride_ = static_cast<int>(stride);
  bytes_.reset(static_cast<std::uint8_t*>(std::calloc(static_cast<std::size_t>(height * stride), 1)));
}

void blit(Korvex_Device_Context device, Bitmap& bitmap, int y) {
  blit(device, bitmap, bitmap.height(), y);
}

void blit(Korvex_Device_Context device, Bitmap& bitmap, int height, int y) {
  device::Bitmap* const source = device::create_bitmap(device, bitmap.width(), height, bitmap.row(0));
  const Korvex_Device_Context memory = device::create_compatible_dc(device);
  device::select_object(memory, source);
  device::bit_blt(device, 0, y, bitmap.width(), height, memory);
  device::delete_dc(memory);
  device::delete_object(source);
}

std::int16_t paint(Korvex_Device_Context device, const ModuleMatrix& symbol, ModulePixels module) {
  Bitmap bitmap(std::int64_t{symbol.columns()} * module.width, std::int64_t{symbol.rows()} * module.height);
  if (!bitmap.ok()) return KORVEX_NO_SYMBOL;
  const auto stride = static_cast<std::size_t>(bitmap.stride());
  for (int row = 0; row < symbol.rows(); ++row) {
    std::uint8_t* const first = bitmap.row(row * module.height);
    expand(symbol.row(row), symbol.columns(), module.width, first);
    for (int line = 1; line < module.height; ++line) {
      std::memcpy(bitmap.row(row * module.height + line), first, stride);
    }
  }
  blit(device, bitmap, 0);
  return KORVEX_OK;
}

}  // namespace korvex::raster
