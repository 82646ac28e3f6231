// Rows laid one under another.
#pragma once

#include "composite/component.hpp"
#include "composite/request.hpp"
#include "composite/row.hpp"

namespace korvex::composite {

/// Fills a symbol from its top row down. Rows narrower than the symbol have light modules after them.
class Stack {
 public:
  /// Makes `symbol` one of `rows` rows below those of `component`, if it has any.
  Stack(Symbol& symbol, const Component2d& component, int rows, int width_modules);

  /// Appends the rows of the 2D component, `left_pad` light modules before them.
  void add_component(int left_pad_modules);
  void add(const Row& row, int left_pad_modules, int height_modules);

 private:
  Symbol& symbol_;
  const Component2d& component_;
  int next_row_ = 0;
};

}  // namespace korvex::composite
