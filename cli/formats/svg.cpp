// SVG: a user unit is one module, and everything dark is one path on the grid of modules.
#include <algorithm>

#include "formats/formats.hpp"
#include "words.hpp"

namespace korvex::cli::formats {
namespace {

constexpr std::string_view kFaces = "'DejaVu Sans Mono', 'Liberation Mono', Menlo, Consolas, monospace";
// Of these faces, for a font size of 1.
constexpr double kDigitHeight = 0.73;
constexpr double kAdvance = 0.61;

std::string number(double value) {
  return decimal(value, 3);
}

std::string escaped(std::string_view text) {
  std::string safe;
  for (const char c : text) {
    switch (c) {
      case '&':
        safe += "&amp;";
        break;
      case '<':
        safe += "&lt;";
        break;
      case '>':
        safe += "&gt;";
        break;
      default:
        safe += c;
    }
  }
  return safe;
}

std::string attribute(std::string_view name, std::string_view value) {
  std::string text(" ");
  return text.append(name).append("=\"").append(value).append("\"");
}

/// Pixels where the module was given in them and nobody knows how large they are, millimetres otherwise.
std::string length(double modules, const ModuleSize& module) {
  if (module.pixels && !module.millimetres) return number(modules * *module.pixels);
  return number(modules * millimetres_of(module)) + "mm";
}

std::size_t characters_of(std::string_view utf8) {
  return static_cast<std::size_t>(std::ranges::count_if(utf8, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string bars(const Picture& picture, const Reduction& reduction, const Box& whole) {
  std::string path;
  for (const Box& box : dark_boxes(picture, reduction)) {
    path.append("M").append(number(box.left - whole.left)).append(" ").append(number(box.top - whole.top));
    path.append("h").append(number(box.width)).append("v").append(number(box.height));
    path.append("h").append(number(-box.width)).append("z");
  }
  return path;
}

std::string point(double x, double y) {
  return number(x) + " " + number(y);
}

/// A circle; `sweep` 1 runs clockwise.
std::string circle(const Point& centre, double radius, int sweep) {
  const std::string arc = "A" + number(radius) + " " + number(radius) + " 0 0 " + std::to_string(sweep) + " ";
  const std::string left = point(centre.x - radius, centre.y);
  return "M" + left + arc + point(centre.x + radius, centre.y) + arc + left + "z";
}

/// A ring's inner circle runs against its outer one, so that what is inside stays light.
std::string shapes(const Shapes& shapes, double reduction, const Box& whole) {
  const auto moved = [&whole](Point point) { return Point{point.x - whole.left, point.y - whole.top}; };
  std::string path;
  for (const Point& centre : shapes.hexagons) {
    char command = 'M';
    for (const Point& corner : hexagon_corners(moved(centre), 1 - reduction)) {
      path += command + point(corner.x, corner.y);
      command = 'L';
    }
    path += 'z';
  }
  for (const Ring& ring : narrower(shapes.rings, reduction)) {
    path += circle(moved(ring.centre), ring.outer, 1) + circle(moved(ring.centre), ring.inner, 0);
  }
  return path;
}

std::string line(std::string_view characters, double middle, double baseline, double font_size) {
  return "<text" + attribute("x", number(middle)) + attribute("y", number(baseline)) +
         attribute("font-size", number(font_size)) + ">" + escaped(characters) + "</text>\n";
}

/// Characters in cells are elements of their own, since viewers disagree on lists of positions.
std::string text_lines(const Text& text, const Box& whole) {
  const auto count = static_cast<double>(characters_of(text.characters));
  const double font_size = std::min(text.box.height / kDigitHeight, text.box.width / (count * kAdvance));
  const double left = text.box.left - whole.left;
  const double baseline = text.box.bottom() - whole.top;
  if (!text.in_cells) return line(text.characters, left + text.box.width / 2, baseline, font_size);
  std::string lines;
  for (std::size_t index = 0; index < text.characters.size(); ++index) {
    const double middle = left + text.box.width / count * (static_cast<double>(index) + 0.5);
    lines += line(text.characters.substr(index, 1), middle, baseline, font_size);
  }
  return lines;
}

}  // namespace

std::string svg(const Picture& picture, const Style& style) {
  const Box whole = bounds(picture);
  const std::string width = number(whole.width);
  const std::string height = number(whole.height);
  const std::string color = style.foreground.hexadecimal();
  std::string svg = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<svg xmlns=\"http://www.w3.org/2000/svg\"" +
                    attribute("width", length(whole.width, style.module)) +
                    attribute("height", length(whole.height, style.module)) +
                    attribute("viewBox", "0 0 " + width + " " + height) + ">\n";
  svg += "<title>" + escaped(picture.title) + "</title>\n<desc>" + escaped(picture.description) + "</desc>\n";
  if (style.background) {
    svg += "<rect" + attribute("width", width) + attribute("height", height) +
           attribute("fill", style.background->hexadecimal()) + "/>\n";
  }
  if (picture.shapes) {
    svg += "<path" + attribute("fill", color) +
           attribute("d", shapes(*picture.shapes, style.reduction.total(), whole)) + "/>\n";
  } else {
    svg += "<path" + attribute("fill", color) + attribute("shape-rendering", "crispEdges") +
           attribute("d", bars(picture, style.reduction, whole)) + "/>\n";
  }
  if (!picture.texts.empty()) {
    svg += "<g" + attribute("fill", color) + attribute("font-family", kFaces) +
           attribute("text-anchor", "middle") + attribute("xml:space", "preserve") + ">\n";
    for (const Text& text : picture.texts) svg += text_lines(text, whole);
    svg += "</g>\n";
  }
  return svg + "</svg>\n";
}

}  // namespace korvex::cli::formats
