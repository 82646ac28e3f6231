// What `korvex draw` and lists of jobs can say of any symbol, whatever its symbology.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace korvex::cli {

class CommandLine;

/// As it was typed; empty texts were not given.
struct DrawSettings {
  bool is_hexadecimal = false;
  bool has_escapes = false;
  std::string module;
  std::string dots_per_inch;
  std::string bar_width_reduction;
  std::string quiet_zone;
  std::string foreground = "black";
  std::string background = "white";
};

/// One of them: a flag or a text.
struct Setting {
  std::string_view name;  ///< with its two dashes
  std::string_view group;
  std::string_view help;
  std::string_view placeholder{};  ///< of its value
  bool DrawSettings::*flag = nullptr;
  std::string DrawSettings::*text = nullptr;
};

std::span<const Setting> all_settings();

/// Binds an option of the command line to it, in a group of the help.
void add_setting(CommandLine& line, const Setting& setting, DrawSettings& settings, std::string_view group);

}  // namespace korvex::cli
