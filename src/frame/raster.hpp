// From modules to pixels on a device.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "frame/device.hpp"
#include "korvex/module_matrix.hpp"

namespace korvex::raster {

/// Size of one module in pixels, at least 1 each way.
struct ModulePixels {
  int width = 1;
  int height = 1;
};

/// A one-bit picture as a device-dependent monochrome bitmap wants it: rows top to bottom, each starting on a
/// 16-bit boundary, leftmost pixel in the most significant bit, dark 0 and light 1. Freed with the object.
class Bitmap {
 public:
  /// Zero-filled. Check ok(): the memory may not be there.
  Bitmap(std::int64_t width, std::int64_t height);

  [[nodiscard]] bool ok() const { return bytes_ != nullptr; }
  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] int stride() const { return stride_; }
  [[nodiscard]] std::uint8_t* row(int y) { return bytes_.get() + std::int64_t{y} * stride_; }

 private:
  struct Free {
    void operator()(std::uint8_t* bytes) const;
  };
  int width_ = 0;
  int height_ = 0;
  int stride_ = 0;
  std::unique_ptr<std::uint8_t, Free> bytes_;
};

/// Sets the pixels [begin, end) of a row to light.
void set_light(std::uint8_t* row, int begin, int end);

/// Writes one pixel row of a row of `columns` modules into a zeroed row.
void expand(std::span<const std::uint64_t> modules, int columns, int module_width, std::uint8_t* row);

/// Copies `bitmap` to the device with its top left at (0, y): the bitmap path, in the order of operations
/// that every drawing function has.
void blit(Korvex_Device_Context device, Bitmap& bitmap, int y);
/// Copies its first `height` rows alone.
void blit(Korvex_Device_Context device, Bitmap& bitmap, int height, int y);

/// Paints `symbol` at (0, 0) through the bitmap path. Returns KORVEX_OK, or KORVEX_NO_SYMBOL with nothing
/// painted when there is no memory for the bitmap (or it would pass 2^31 - 1 bytes, the most a 32-bit process
/// could have).
std::int16_t paint(Korvex_Device_Context device, const ModuleMatrix& symbol, ModulePixels module);

}  // namespace korvex::raster
