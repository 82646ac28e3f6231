// PNG: every module is a whole number of pixels and never grey; only text has shades.
#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "failure.hpp"
#include "formats/cairo_text.hpp"
#include "formats/formats.hpp"
#include "formats/png_file.hpp"

namespace korvex::cli::formats {
namespace {

constexpr long kMostPixels = 32767;  // a side; Cairo draws text on no more

Shades background(int width, int height) {
  Shades shades{
      width, height, static_cast<std::size_t>(cairo_format_stride_for_width(CAIRO_FORMAT_A8, width)), {}};
  shades.bytes.resize(shades.stride * static_cast<std::size_t>(height));
  return shades;
}

void draw_bars(Shades& shades, const Picture& picture, const Reduction& reduction, const Box& whole,
               int scale) {
  const auto pixel = [scale](double modules) { return static_cast<int>(std::lround(modules * scale)); };
  for (const Box& box : dark_boxes(picture, reduction)) {
    const int left = pixel(box.left - whole.left);
    const int right = pixel(box.right() - whole.left);
    const int bottom = pixel(box.bottom() - whole.top);
    for (int y = pixel(box.top - whole.top); y < bottom; ++y) {
      std::fill(shades.row(y) + left, shades.row(y) + right, std::uint8_t{255});
    }
  }
}

void draw_shapes(Shades& shades, const Shapes& shapes, const Reduction& reduction, const Box& whole,
                 int scale) {
  const auto dots = [scale](double modules) { return static_cast<int>(std::lround(modules * scale)); };
  ModuleMatrix pixels = pixels_of(shapes, scale);
  if (reduction.total() > 0) pixels = eroded(pixels, dots(reduction.before), dots(reduction.after));
  const auto left = static_cast<int>(std::lround(-whole.left * scale));
  const auto top = static_cast<int>(std::lround(-whole.top * scale));
  const int rows = std::min(pixels.rows(), shades.height - top);
  const int columns = std::min(pixels.columns(), shades.width - left);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      if (pixels.dark(row, column)) shades.row(top + row)[left + column] = 255;
    }
  }
}

void draw_texts_on(Shades& shades, const Picture& picture, int scale) {
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_image_surface_create_for_data(shades.bytes.data(), CAIRO_FORMAT_A8, shades.width, shades.height,
                                          static_cast<int>(shades.stride)),
      cairo_surface_destroy);
  check(cairo_surface_status(surface.get()));
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> context(cairo_create(surface.get()),
                                                                   cairo_destroy);
  draw_texts(context.get(), picture, scale, true);
  cairo_surface_flush(surface.get());
}

}  // namespace

std::string png(const Picture& picture, const Style& style) {
  const int scale = pixels_of(style.module);
  const Box whole = bounds(picture);
  const long width = std::lround(whole.width * scale);
  const long height = std::lround(whole.height * scale);
  if (width < 1 || height < 1 || width > kMostPixels || height > kMostPixels) {
    throw Failure("The picture would have " + std::to_string(width) + " x " + std::to_string(height) +
                  " pixels; a side has from 1 to " + std::to_string(kMostPixels) + ".");
  }
  Shades shades = background(static_cast<int>(width), static_cast<int>(height));
  draw_bars(shades, picture, style.reduction, whole, scale);
  if (picture.shapes) draw_shapes(shades, *picture.shapes, style.reduction, whole, scale);
  if (!picture.texts.empty()) draw_texts_on(shades, picture, scale);
  return png_file(shades, !picture.texts.empty(), style);
}

}  // namespace korvex::cli::formats
