#include "style.hpp"

#include <charconv>
#include <cstdio>

#include "failure.hpp"
#include "options.hpp"
#include "words.hpp"

namespace korvex::cli {

std::string Color::hexadecimal() const {
  char text[8];
  std::snprintf(text, sizeof text, "#%02x%02x%02x", red, green, blue);
  return text;
}

std::optional<Color> parse_color(std::string_view option_name, std::string_view text,
                                 bool may_be_transparent) {
  if (text == "transparent" && may_be_transparent) return std::nullopt;
  if (text == "black") return Color{0, 0, 0};
  if (text == "white") return Color{255, 255, 255};
  std::uint32_t rgb = 0;
  const std::string_view digits = text.starts_with('#') ? text.substr(1) : text;
  const auto [stop, error] = std::from_chars(digits.data(), digits.data() + digits.size(), rgb, 16);
  if (digits.size() != 6 || error != std::errc() || stop != digits.data() + digits.size()) {
    throw UsageError(std::string(option_name) + " is a colour as in '#1a2b3c', black" +
                     (may_be_transparent ? ", white or transparent" : " or white") + ", not \"" +
                     printable(text) + "\".");
  }
  return Color{static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
               static_cast<std::uint8_t>(rgb)};
}

Reduction bar_width_reduction(std::string_view dots, const ModuleSize& module) {
  if (dots.empty()) return {};
  if (!module.pixels && module.millimetres) {
    throw UsageError("--bwr counts dots; a module in millimetres has them only with --dpi.");
  }
  const int pixels = pixels_of(module);
  const int reduced = whole_number("--bwr", dots, 0, pixels - 1);
  const int before = reduced / 2;
  return {static_cast<double>(before) / pixels, static_cast<double>(reduced - before) / pixels};
}

}  // namespace korvex::cli
