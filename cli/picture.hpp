// What is drawn, in modules, whatever the file format: x counts from the symbol's left edge and y from its
// top edge, downwards.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "korvex/module_matrix.hpp"
#include "shapes.hpp"

namespace korvex::cli {

struct Box {
  double left = 0;
  double top = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] double right() const { return left + width; }
  [[nodiscard]] double bottom() const { return top + height; }
};

/// A line of human readable text.
struct Text {
  std::string characters;  ///< UTF-8 without control characters
  Box box;                 ///< as high as a digit; formats keep every character inside its width
  bool in_cells =
      false;  ///< each character in the middle of its own equal share of the box, as under EAN/UPC
};

/// Bars of the last row that reach below the others, as guard bars do.
struct LongBars {
  ModuleMatrix modules;  ///< one row: dark where a bar is long
  double extra = 0;      ///< how much further they reach
};

struct Margins {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;
};

struct Picture {
  std::string title;                ///< for people who look at the file: what it is
  std::string description;          ///< and the data, printable
  ModuleMatrix modules;             ///< the symbol's rows; a linear symbol has one
  std::vector<double> row_heights;  ///< one a row
  std::optional<LongBars> long_bars;
  std::optional<Shapes> shapes;  ///< what is dark instead of `modules`, which then serve as text alone
  std::vector<Text> texts;
  Margins quiet_zone;  ///< light, around the symbol; text below or above the bars lies outside it
};

/// How much of every dark area is left out, against ink that spreads, in modules: less than one in all.
struct Reduction {
  double before = 0;  ///< at left and upper edges
  double after = 0;   ///< at right and lower edges

  [[nodiscard]] double total() const { return before + after; }
};

/// Everything that is dark but for shapes: whole runs of modules in each row, top row first. A reduction
/// makes bars narrower, and the modules of symbols of several rows lower too.
std::vector<Box> dark_boxes(const Picture& picture, const Reduction& reduction = {});

/// The symbol, its quiet zone and its texts; in whole modules, so that the symbol stays on their grid.
Box bounds(const Picture& picture);

}  // namespace korvex::cli
