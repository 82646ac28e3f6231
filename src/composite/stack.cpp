#include "composite/stack.hpp"

#include <cassert>

namespace korvex::composite {

Stack::Stack(Symbol& symbol, const Component2d& component, int rows, int width_modules)
    : symbol_(symbol), component_(component) {
  symbol.component = component.kind;
  symbol.component_columns = component.columns;
  symbol.component_rows = component.rows;
  symbol.modules = ModuleMatrix(component.rows + rows, width_modules);
  symbol.row_heights.resize(static_cast<std::size_t>(symbol.modules.rows()));
}

void Stack::add_component(int left_pad_modules) {
  for (int i = 0; i < component_.rows; ++i) {
    Row row;
    put_component_row(component_, i, row);
    add(row, left_pad_modules, component_row_height(component_));
  }
}

void Stack::add(const Row& row, int left_pad_modules, int height_modules) {
  assert(left_pad_modules >= 0 && left_pad_modules + row.width() <= symbol_.modules.columns());
  symbol_.row_heights[static_cast<std::size_t>(next_row_)] = static_cast<std::uint16_t>(height_modules);
  const std::span<std::uint64_t> target = symbol_.modules.row(next_row_);
  const std::span<const std::uint64_t> source = row.words();
  const auto skipped = static_cast<std::size_t>(left_pad_modules / 64);
  const int shift = left_pad_modules % 64;
  for (std::size_t i = 0; i < source.size(); ++i) {
    target[skipped + i] |= source[i] >> shift;
    if (shift > 0 && skipped + i + 1 < target.size()) target[skipped + i + 1] = source[i] << (64 - shift);
  }
  ++next_row_;
}

}  // namespace korvex::composite
