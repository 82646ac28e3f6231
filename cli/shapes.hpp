// Dark shapes that are no rectangles: the hexagons and rings of MaxiCode. Lengths are in modules, from the
// symbol's top left corner.
#pragma once

#include <vector>

#include "korvex/module_matrix.hpp"

namespace korvex::cli {

struct Point {
  double x = 0;
  double y = 0;
};

/// What lies between two circles around one centre.
struct Ring {
  Point centre;
  double inner = 0;  ///< radius
  double outer = 0;
};

struct Shapes {
  double width = 0;  ///< of the whole symbol
  double height = 0;
  std::vector<Point> hexagons;  ///< centres; each is a module wide and stands on a corner
  std::vector<Ring> rings;
  ModuleMatrix pixels;        ///< the symbol as its pixel picture, for sizes that are whole times that
  int pixels_per_module = 0;  ///< of `pixels`
};

/// The six corners of a hexagon of a width in modules, clockwise from the top.
std::vector<Point> hexagon_corners(Point centre, double width = 1);

/// Rings whose dark part is so many modules narrower.
std::vector<Ring> narrower(std::vector<Ring> rings, double reduction);

/// Dark where the pixels from `before` ahead (left and up) to `after` behind are all dark.
ModuleMatrix eroded(const ModuleMatrix& pixels, int before, int after);

/// The symbol with `scale` pixels a module, dark where a shape covers a pixel's middle. `pixels`, every one
/// of them enlarged, where the scale allows that.
ModuleMatrix pixels_of(const Shapes& shapes, int scale);

}  // namespace korvex::cli
