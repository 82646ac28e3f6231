// How a picture is drawn: sizes and colours.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "measure.hpp"
#include "picture.hpp"

namespace korvex::cli {

struct Color {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;

  /// Brightness as people see it, 0 to 1 (ITU-R BT.709 weights).
  [[nodiscard]] double luminance() const { return (0.2126 * red + 0.7152 * green + 0.0722 * blue) / 255; }
  /// "#rrggbb".
  [[nodiscard]] std::string hexadecimal() const;
};

/// Reads "#rrggbb" or the name black or white; "transparent" (nothing) where that is allowed. Throws
/// UsageError.
std::optional<Color> parse_color(std::string_view option_name, std::string_view text,
                                 bool may_be_transparent);

/// Reads `--bwr`, a number of dots less than a module has; nothing when it is empty. Throws UsageError, also
/// when the dots of a module are not known.
Reduction bar_width_reduction(std::string_view dots, const ModuleSize& module);

struct Style {
  ModuleSize module;
  Reduction reduction;
  Color foreground{0, 0, 0};
  std::optional<Color> background = Color{255, 255, 255};  ///< nothing: transparent
};

}  // namespace korvex::cli
