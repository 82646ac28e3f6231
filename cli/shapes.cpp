#include "shapes.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace korvex::cli {
namespace {

constexpr double kHalfWidth = 0.5;                       // of a hexagon
constexpr double kHalfHeight = std::numbers::inv_sqrt3;  // from its middle to a corner

bool in_hexagon(double x, double y) {
  x = std::abs(x);
  y = std::abs(y);
  return x <= kHalfWidth && y <= kHalfHeight - x * kHalfHeight;
}

/// Darkens the pixels in the square of `reach` around `centre` whose middles `covers` (relative to it) takes.
template <class Covers>
void darken(ModuleMatrix& pixels, Point centre, double reach, int scale, Covers covers) {
  const auto first = [scale](double length) { return std::max(0, static_cast<int>(length * scale)); };
  const int bottom = std::min(pixels.rows(), first(centre.y + reach) + 1);
  const int right = std::min(pixels.columns(), first(centre.x + reach) + 1);
  for (int row = first(centre.y - reach); row < bottom; ++row) {
    for (int column = first(centre.x - reach); column < right; ++column) {
      if (covers((column + 0.5) / scale - centre.x, (row + 0.5) / scale - centre.y))
        pixels.set_dark(row, column, true);
    }
  }
}

ModuleMatrix enlarged(const ModuleMatrix& pixels, int times) {
  ModuleMatrix larger(pixels.rows() * times, pixels.columns() * times);
  for (int row = 0; row < larger.rows(); ++row) {
    for (int column = 0; column < larger.columns(); ++column) {
      if (pixels.dark(row / times, column / times)) larger.set_dark(row, column, true);
    }
  }
  return larger;
}

}  // namespace

std::vector<Point> hexagon_corners(Point centre, double width) {
  const auto corner = [&](double x, double y) { return Point{centre.x + width * x, centre.y + width * y}; };
  const double shoulder = kHalfHeight / 2;
  return {corner(0, -kHalfHeight), corner(kHalfWidth, -shoulder), corner(kHalfWidth, shoulder),
          corner(0, kHalfHeight),  corner(-kHalfWidth, shoulder), corner(-kHalfWidth, -shoulder)};
}

std::vector<Ring> narrower(std::vector<Ring> rings, double reduction) {
  for (Ring& ring : rings) {
    if (ring.inner > 0) ring.inner += reduction / 2;
    ring.outer -= reduction / 2;
  }
  return rings;
}

ModuleMatrix eroded(const ModuleMatrix& pixels, int before, int after) {
  const auto all_dark = [](const ModuleMatrix& from, int row, int column, int rows, int columns) {
    if (row < 0 || column < 0 || row + rows > from.rows() || column + columns > from.columns()) return false;
    for (int r = row; r < row + rows; ++r) {
      for (int c = column; c < column + columns; ++c) {
        if (!from.dark(r, c)) return false;
      }
    }
    return true;
  };
  const int reach = before + after + 1;
  ModuleMatrix narrow(pixels.rows(), pixels.columns());
  ModuleMatrix low(pixels.rows(), pixels.columns());
  for (int row = 0; row < pixels.rows(); ++row) {
    for (int column = 0; column < pixels.columns(); ++column) {
      if (all_dark(pixels, row, column - before, 1, reach)) narrow.set_dark(row, column, true);
    }
  }
  for (int row = 0; row < pixels.rows(); ++row) {
    for (int column = 0; column < pixels.columns(); ++column) {
      if (all_dark(narrow, row - before, column, reach, 1)) low.set_dark(row, column, true);
    }
  }
  return low;
}

ModuleMatrix pixels_of(const Shapes& shapes, int scale) {
  if (scale % shapes.pixels_per_module == 0) return enlarged(shapes.pixels, scale / shapes.pixels_per_module);
  ModuleMatrix pixels(static_cast<int>(std::ceil(shapes.height * scale)),
                      static_cast<int>(std::ceil(shapes.width * scale)));
  for (const Point& centre : shapes.hexagons) darken(pixels, centre, kHalfHeight, scale, in_hexagon);
  for (const Ring& ring : shapes.rings) {
    darken(pixels, ring.centre, ring.outer, scale, [&ring](double x, double y) {
      const double radius = std::hypot(x, y);
      return radius >= ring.inner && radius <= ring.outer;
    });
  }
  return pixels;
}

}  // namespace korvex::cli
