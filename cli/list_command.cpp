#include <cstdio>
#include <nlohmann/json.hpp>

#include "command_line.hpp"
#include "commands.hpp"
#include "symbologies.hpp"

namespace korvex::cli {
namespace {

using nlohmann::ordered_json;

ordered_json to_json(const Option& option) {
  ordered_json object = {{"name", option.name}, {"help", option.help}};
  if (!option.value.empty()) object["value"] = option.value;
  if (!option.choices.empty()) object["choices"] = option.choices;
  if (!option.preset.empty()) object["default"] = option.preset;
  if (!option.alone.empty()) object["alone"] = option.alone;
  return object;
}

ordered_json to_json(const Symbology& symbology) {
  ordered_json options = ordered_json::array();
  for (const Option& option : symbology.options) options.push_back(to_json(option));
  return {{"name", symbology.name},
          {"title", symbology.title},
          {"standard", symbology.standard},
          {"takes", symbology.takes},
          {"example", {{"data", symbology.example.data}, {"options", symbology.example.options}}},
          {"options", options}};
}

/// "--check none|mod43".
std::string usage(const Option& option) {
  std::string text(option.name);
  return option.is_flag() ? text : text + ' ' + option.placeholder();
}

std::string to_text(const Symbology& symbology) {
  constexpr std::size_t kIndent = 22;
  constexpr std::size_t kWidth = 100;
  std::string text(symbology.name);
  text.append(text.size() < kIndent ? kIndent - text.size() : 1, ' ');
  text.append(symbology.title).append(" (").append(symbology.standard).append(")\n");
  const std::string indent(kIndent, ' ');
  text.append(indent).append("takes ").append(symbology.takes).append("\n");
  std::string line = indent;
  for (const Option& option : symbology.options) {
    const std::string next = usage(option);
    if (line.size() > kIndent && line.size() + 2 + next.size() > kWidth) {
      text.append(line).append("\n");
      line = indent;
    }
    if (line.size() > kIndent) line += "  ";
    line += next;
  }
  return line.size() > kIndent ? text.append(line).append("\n") : text;
}

}  // namespace

int list_command(const std::vector<std::string>& arguments) {
  CommandLine line("korvex list", "Shows every symbology: its name, what it takes and its own options.");
  bool as_json = false;
  line.flag("--json", as_json, {"Options", "as a list of JSON objects, for programs"});
  if (!line.parse(arguments)) return 0;

  if (as_json) {
    ordered_json list = ordered_json::array();
    for (const Symbology& symbology : symbologies()) list.push_back(to_json(symbology));
    std::printf("%s\n", list.dump(2).c_str());
    return 0;
  }
  for (const Symbology& symbology : symbologies()) std::printf("%s", to_text(symbology).c_str());
  return 0;
}

}  // namespace korvex::cli
