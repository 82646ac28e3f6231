#include "formats/terminal.hpp"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <optional>
#include <string_view>
#include <vector>

#include "failure.hpp"

namespace korvex::cli {
namespace {

constexpr std::size_t kRowsPerLine = 2;
constexpr double kHighestBars = 20;  // of linear symbols, in modules

/// By the dark quarters of a character cell: 1 top left, 2 top right, 4 bottom left, 8 bottom right.
constexpr std::string_view kQuarters[] = {" ", "▘", "▝", "▀", "▖", "▌", "▞", "▛",
                                          "▗", "▚", "▐", "▜", "▄", "▙", "▟", "█"};

using Row = std::vector<bool>;           // dark modules
using Cells = std::vector<std::string>;  // a line's characters

/// The picture on a grid of modules. A line of text takes as much room as a line of two rows.
struct Grid {
  int left = 0;  ///< column of the symbol's coordinates that stands first
  int columns = 0;
  std::vector<Row> rows;
  struct TextLine {
    std::size_t line;
    const Text* text;
  };
  std::vector<TextLine> texts;

  void add_rows(const Row& row, long count) {
    rows.resize(rows.size() + static_cast<std::size_t>(std::max(count, 0L)), row);
  }
  [[nodiscard]] Row light() const { return Row(static_cast<std::size_t>(columns)); }
  [[nodiscard]] Row row_of(const ModuleMatrix& modules, int row) const {
    Row dark = light();
    for (int column = 0; column < modules.columns(); ++column) {
      dark[static_cast<std::size_t>(column - left)] = modules.dark(row, column);
    }
    return dark;
  }
  /// A line of all texts that stand above the symbol, or below it, between the bars of `behind`.
  void add_texts(const Picture& picture, bool above, const Row& behind) {
    if (rows.size() % kRowsPerLine != 0) rows.push_back(behind);
    const std::size_t line = rows.size() / kRowsPerLine;
    for (const Text& text : picture.texts) {
      if ((text.box.top < 0) == above) texts.push_back({line, &text});
    }
    if (!texts.empty() && texts.back().line == line) add_rows(behind, kRowsPerLine);
  }
};

Grid grid_of(const Picture& picture) {
  const Box whole = bounds(picture);
  Grid grid{static_cast<int>(whole.left), static_cast<int>(whole.width), {}, {}};
  const bool is_linear = picture.modules.rows() == 1;
  grid.add_rows(grid.light(), std::lround(picture.quiet_zone.top));
  grid.add_texts(picture, true, grid.light());
  for (int row = 0; row < picture.modules.rows(); ++row) {
    double height = picture.row_heights[static_cast<std::size_t>(row)];
    if (is_linear) height = std::min(height, kHighestBars);
    grid.add_rows(grid.row_of(picture.modules, row), std::max(1L, std::lround(height)));
  }
  grid.add_texts(picture, false,
                 picture.long_bars ? grid.row_of(picture.long_bars->modules, 0) : grid.light());
  grid.add_rows(grid.light(), std::lround(picture.quiet_zone.bottom));
  return grid;
}

/// Line by line; `modules_per_cell` of them stand side by side in a character cell.
std::vector<Cells> cells_of(const Grid& grid, int modules_per_cell) {
  const auto dark = [&](std::size_t row, int column) {
    return row < grid.rows.size() && column < grid.columns &&
           grid.rows[row][static_cast<std::size_t>(column)];
  };
  std::vector<Cells> lines;
  for (std::size_t top = 0; top < grid.rows.size(); top += kRowsPerLine) {
    Cells& cells = lines.emplace_back();
    for (int left = 0; left < grid.columns; left += modules_per_cell) {
      const int right = left + modules_per_cell - 1;
      const int quarters = (dark(top, left) ? 1 : 0) + (dark(top, right) ? 2 : 0) +
                           (dark(top + 1, left) ? 4 : 0) + (dark(top + 1, right) ? 8 : 0);
      cells.emplace_back(kQuarters[quarters]);
    }
  }
  return lines;
}

std::vector<std::string> characters_of(const std::string& utf8) {
  std::vector<std::string> characters;
  for (const char c : utf8) {
    if ((c & 0xC0) != 0x80) characters.emplace_back();
    if (!characters.empty()) characters.back() += c;
  }
  return characters;
}

void write_text(Cells& cells, const Text& text, int left, int modules_per_cell) {
  const std::vector<std::string> characters = characters_of(text.characters);
  const auto count = static_cast<double>(characters.size());
  const double pitch = text.in_cells ? text.box.width / count / modules_per_cell : 1;
  const double middle = (text.box.left + text.box.width / 2 - left) / modules_per_cell;
  for (std::size_t index = 0; index < characters.size(); ++index) {
    const double center = middle + pitch * (static_cast<double>(index) + 0.5 - count / 2);
    const auto cell = static_cast<std::ptrdiff_t>(std::floor(center));
    if (cell >= 0 && cell < std::ssize(cells)) cells[static_cast<std::size_t>(cell)] = characters[index];
  }
}

std::string color_escape(const Style& style) {
  const auto numbers = [](const Color& color) {
    return std::to_string(color.red) + ";" + std::to_string(color.green) + ";" + std::to_string(color.blue);
  };
  return "\x1b[38;2;" + numbers(style.foreground) + ";48;2;" + numbers(*style.background) + "m";
}

/// Shapes as pixels, two a module, for blocks that are no smaller.
Picture in_pixels(const Picture& picture) {
  constexpr int kScale = 2;
  Picture pixels;
  pixels.modules = pixels_of(*picture.shapes, kScale);
  pixels.row_heights.assign(static_cast<std::size_t>(pixels.modules.rows()), 1);
  const Margins& quiet = picture.quiet_zone;
  pixels.quiet_zone = {kScale * quiet.left, kScale * quiet.top, kScale * quiet.right, kScale * quiet.bottom};
  return pixels;
}

}  // namespace

Terminal standard_terminal() {
  Terminal terminal;
  if (isatty(STDOUT_FILENO) == 0) return terminal;
  terminal.has_colors = true;
  winsize size{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0) terminal.columns = size.ws_col;
  return terminal;
}

std::string terminal_lines(const Picture& picture, const Style& style, const Terminal& terminal) {
  const std::optional<Picture> pixels = picture.shapes ? std::optional(in_pixels(picture)) : std::nullopt;
  const Grid grid = grid_of(pixels ? *pixels : picture);  // whose texts are the picture's own
  const bool is_linear = picture.modules.rows() == 1;
  const auto width = [&](int modules_per_cell) {
    return (grid.columns + modules_per_cell - 1) / modules_per_cell;
  };
  const auto fits = [&](int modules_per_cell) {
    return terminal.columns == 0 || width(modules_per_cell) <= terminal.columns;
  };
  const int modules_per_cell = is_linear && !fits(1) ? 2 : 1;
  if (!fits(modules_per_cell)) {
    throw Failure("The symbol does not fit: it is " + std::to_string(width(modules_per_cell)) +
                  " columns wide and the terminal " + std::to_string(terminal.columns) +
                  "; write it into a file with -o.");
  }
  std::vector<Cells> lines = cells_of(grid, modules_per_cell);
  for (const auto& [line, text] : grid.texts) write_text(lines[line], *text, grid.left, modules_per_cell);

  const bool in_colors = terminal.has_colors && style.background;
  std::string drawn;
  for (const Cells& cells : lines) {
    if (in_colors) drawn += color_escape(style);
    for (const std::string& cell : cells) drawn += cell;
    drawn += in_colors ? "\x1b[0m\n" : "\n";
  }
  return drawn;
}

}  // namespace korvex::cli
