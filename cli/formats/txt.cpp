// Text: a row of 0 and 1 for every row of modules, 1 for a dark one.
#include <cmath>

#include "formats/formats.hpp"

namespace korvex::cli::formats {

std::string txt(const Picture& picture, const Style&) {
  const auto modules = [](double length) { return static_cast<std::size_t>(std::lround(length)); };
  const Margins& quiet = picture.quiet_zone;
  const std::string left(modules(quiet.left), '0');
  const std::string right(modules(quiet.right), '0');
  const std::string light_row =
      left + std::string(static_cast<std::size_t>(picture.modules.columns()), '0') + right + '\n';

  std::string text;
  for (std::size_t row = 0; row < modules(quiet.top); ++row) text += light_row;
  for (int row = 0; row < picture.modules.rows(); ++row) {
    text += left;
    for (int column = 0; column < picture.modules.columns(); ++column) {
      text += picture.modules.dark(row, column) ? '1' : '0';
    }
    text += right;
    text += '\n';
  }
  for (std::size_t row = 0; row < modules(quiet.bottom); ++row) text += light_row;
  return text;
}

}  // namespace korvex::cli::formats
