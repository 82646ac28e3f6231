#include "picture.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace korvex::cli {
namespace {

constexpr double kTextMargin = 1;    // light modules beyond a text, for round digits reach past their height
constexpr double kDescender = 0.35;  // of the height of a digit, and what some parentheses reach down to

double room_below(const Text& text) {
  const bool flat = std::ranges::all_of(
      text.characters, [](char c) { return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z' && c != 'Q'); });
  return kTextMargin + (flat ? 0 : kDescender * text.box.height);
}

}  // namespace

std::vector<Box> dark_boxes(const Picture& picture, const Reduction& reduction) {
  if (picture.shapes) return {};
  const ModuleMatrix& modules = picture.modules;
  std::vector<Box> boxes;
  // A strip of a row, dark where the neighbour that it borders on is dark too.
  const auto add_strip = [&](int row, int neighbour, double top, double bottom) {
    if (neighbour < 0 || neighbour >= modules.rows() || bottom <= top) return;
    const auto is_dark = [&](int column) {
      return column < modules.columns() && modules.dark(row, column) && modules.dark(neighbour, column);
    };
    const bool may_be_long = picture.long_bars && row + 1 == modules.rows();
    for (int column = 0; column < modules.columns(); ++column) {
      if (!is_dark(column)) continue;
      const int first = column;
      while (is_dark(column)) ++column;
      const bool is_long = may_be_long && picture.long_bars->modules.dark(0, first);
      boxes.push_back({first + reduction.before, top, column - first - reduction.total(),
                       bottom - top + (is_long ? picture.long_bars->extra : 0)});
    }
  };
  const Reduction lower = modules.rows() > 1 ? reduction : Reduction{};
  double top = 0;
  for (int row = 0; row < modules.rows(); ++row) {
    const double bottom = top + picture.row_heights[static_cast<std::size_t>(row)];
    add_strip(row, row - 1, top, top + lower.before);
    add_strip(row, row, top + lower.before, bottom - lower.after);
    add_strip(row, row + 1, bottom - lower.after, bottom);
    top = bottom;
  }
  return boxes;
}

Box bounds(const Picture& picture) {
  const double rows = std::accumulate(picture.row_heights.begin(), picture.row_heights.end(), 0.0) +
                      (picture.long_bars ? picture.long_bars->extra : 0);
  const double height = picture.shapes ? picture.shapes->height : rows;
  double left = -picture.quiet_zone.left;
  double top = -picture.quiet_zone.top;
  double right =
      (picture.shapes ? picture.shapes->width : picture.modules.columns()) + picture.quiet_zone.right;
  double bottom = height + picture.quiet_zone.bottom;
  for (const Text& text : picture.texts) {
    left = std::min(left, text.box.left);
    right = std::max(right, text.box.right());
    top = std::min(top, text.box.top - kTextMargin - picture.quiet_zone.top);
    bottom = std::max(bottom, text.box.bottom() + room_below(text) + picture.quiet_zone.bottom);
  }
  left = std::floor(left);
  top = std::floor(top);
  return {left, top, std::ceil(right) - left, std::ceil(bottom) - top};
}

}  // namespace korvex::cli
