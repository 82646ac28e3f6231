#include "draw_settings.hpp"

#include <array>

#include "command_line.hpp"

namespace korvex::cli {
namespace {

using S = DrawSettings;

constexpr std::array kSettings = {
    Setting{"--hex", "Data", "the data is hexadecimal, two digits a byte", "", &S::is_hexadecimal, nullptr},
    Setting{"--escapes", "Data",
            "the data has names of control characters in braces, such as {GS} and {EOT}; {{ is a brace", "",
            &S::has_escapes, nullptr},
    Setting{"--module", "Picture", "a module in pixels (4), or in millimetres as in 0.33mm", "SIZE", nullptr,
            &S::module},
    Setting{"--dpi", "Picture", "dots per inch; millimetres are rounded to whole dots", "N", nullptr,
            &S::dots_per_inch},
    Setting{"--bwr", "Picture",
            "bar width reduction in dots, against ink that spreads: dark modules are drawn so much narrower",
            "DOTS", nullptr, &S::bar_width_reduction},
    Setting{"--quiet-zone", "Picture", "light modules on every side (what the standard asks for)", "N",
            nullptr, &S::quiet_zone},
    Setting{"--foreground", "Picture", "'#rrggbb', black or white", "COLOUR", nullptr, &S::foreground},
    Setting{"--background", "Picture", "'#rrggbb', black, white or transparent", "COLOUR", nullptr,
            &S::background},
};

}  // namespace

std::span<const Setting> all_settings() {
  return kSettings;
}

void add_setting(CommandLine& line, const Setting& setting, DrawSettings& settings, std::string_view group) {
  const OptionHelp shown{group, setting.help, setting.placeholder};
  if (setting.flag != nullptr) {
    line.flag(std::string(setting.name), settings.*setting.flag, shown);
  } else {
    line.option(std::string(setting.name), settings.*setting.text, shown);
  }
}

}  // namespace korvex::cli
