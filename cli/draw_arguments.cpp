#include "draw_arguments.hpp"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "command_line.hpp"
#include "failure.hpp"
#include "formats/formats.hpp"

namespace korvex::cli {
namespace {

void add_own_options(CommandLine& line, DrawArguments& arguments) {
  const Symbology& symbology = *arguments.symbology;
  const std::string group = "Options of " + std::string(symbology.name);
  for (const Option& option : symbology.options) {
    const std::string name(option.name);
    std::string help(option.help);
    if (!option.preset.empty()) help.append(" (").append(option.preset).append(")");
    const std::string placeholder = option.placeholder();
    const OptionHelp shown{group, help, placeholder};
    if (option.is_flag()) {
      line.flag(
          name, [&] { arguments.options.set(option, ""); }, shown);
    } else {
      line.option(
          name, [&](const std::string& value) { arguments.options.set(option, value); }, shown);
    }
  }
}

void add_settings(CommandLine& line, DrawSettings& settings, std::string_view group) {
  for (const Setting& setting : all_settings()) {
    if (setting.group == group) add_setting(line, setting, settings, group);
  }
}

void add_common_options(CommandLine& line, DrawArguments& arguments) {
  line.positional("DATA", arguments.data, "the data; from --data-file or standard input when left out");
  line.option("--data-file", arguments.data_file,
              {"Data", "take the data from a file, byte for byte", "FILE"});
  add_settings(line, arguments.settings, "Data");

  line.repeated("-o,--output", arguments.outputs,
                {"Output",
                 "write this file (may be given again); the ending says what it is: " + format_names() +
                     "; - is standard output; in the terminal when there is none",
                 "FILE"});
  line.option("--format", arguments.format,
              {"Output", "what a file is whose name does not say: " + format_names(), "FORMAT"});
  line.flag("--verbose", arguments.is_verbose, {"Output", "say on standard error what was chosen"});
  add_settings(line, arguments.settings, "Picture");
}

/// The option of any symbology whose value may be left out; nullptr when it is none of these.
const Option* option_with_value_left_out(std::string_view name) {
  for (const Symbology& symbology : symbologies()) {
    for (const Option& option : symbology.options) {
      if (option.name == name && !option.alone.empty()) return &option;
    }
  }
  return nullptr;
}

/// Binds values to such options: "--gs1 lenient" and "--gs1" with anything else behind it become
/// "--gs1=lenient" and "--gs1=strict", so that data are never taken for the value.
std::vector<std::string> with_values_bound(const std::vector<std::string>& arguments) {
  std::vector<std::string> bound;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (arguments[i] == "--") {
      bound.insert(bound.end(), arguments.begin() + static_cast<std::ptrdiff_t>(i), arguments.end());
      break;
    }
    bound.push_back(arguments[i]);
    const Option* const option = option_with_value_left_out(arguments[i]);
    if (option == nullptr) continue;
    const bool is_given = i + 1 < arguments.size() && option->has_choice(arguments[i + 1]);
    bound.back().append("=").append(is_given ? arguments[++i] : option->alone);
  }
  return bound;
}

/// Whether an option of any symbology stands alone, so that no value follows it.
bool is_flag(std::string_view name) {
  if (name == "--verbose" || name == "--help" || name == "-h") return true;
  const auto setting = std::ranges::find(all_settings(), name, &Setting::name);
  if (setting != all_settings().end()) return setting->flag != nullptr;
  return std::ranges::any_of(symbologies(), [&](const Symbology& symbology) {
    const auto option = std::ranges::find(symbology.options, name, &Option::name);
    return option != symbology.options.end() && option->is_flag();
  });
}

/// Takes the symbology's name out of the arguments; options may stand before it.
std::string take_symbology(std::vector<std::string>& arguments) {
  bool is_option_over = false;  // behind --
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (!is_option_over && *argument == "--") {
      is_option_over = true;
      continue;
    }
    if (is_option_over || !argument->starts_with('-')) {
      std::string name = std::move(*argument);
      arguments.erase(argument);
      return name;
    }
    const bool has_value_inside =
        argument->find('=') != std::string::npos || (argument->starts_with("-o") && argument->size() > 2);
    if (!has_value_inside && !is_flag(*argument) && argument + 1 != arguments.end()) ++argument;
  }
  throw UsageError(
      "No symbology is given, as in korvex draw ean13 400638133393; korvex list shows them all.");
}

void print_general_help() {
  std::printf(
      "Draws a symbol into files or in the terminal.\n\nUsage: korvex draw SYMBOLOGY [DATA] [-o FILE]...\n\n"
      "Symbologies (korvex draw SYMBOLOGY --help shows the options of each):\n");
  for (const Symbology& symbology : symbologies()) {
    std::printf("  %-20s %s\n", symbology.name.data(), symbology.title.data());
  }
  std::printf(
      "\nExamples:\n"
      "  korvex draw ean13 400638133393 -o label.png\n"
      "  korvex draw code128 'Korvex 128' --module 0.33mm --dpi 300 -o label.png -o label.pdf\n"
      "  korvex draw itf --check mod10 0001234567890 -o - --format svg\n");
}

}  // namespace

std::optional<DrawArguments> parse_draw_arguments(const std::vector<std::string>& arguments) {
  if (!arguments.empty() && (arguments.front() == "--help" || arguments.front() == "-h")) {
    print_general_help();
    return std::nullopt;
  }
  std::vector<std::string> rest = with_values_bound(arguments);
  const Symbology& symbology = find_symbology(take_symbology(rest));
  DrawArguments parsed;
  parsed.symbology = &symbology;
  CommandLine line("korvex draw " + std::string(symbology.name),
                   "Draws " + std::string(symbology.title) + " (" + std::string(symbology.standard) +
                       ").\nIt takes " + std::string(symbology.takes) + ".",
                   "Data that begins with - stands behind --, as in korvex draw " +
                       std::string(symbology.name) + " -o label.png -- -1.");
  add_own_options(line, parsed);
  add_common_options(line, parsed);
  if (!line.parse(rest)) return std::nullopt;
  return parsed;
}

}  // namespace korvex::cli
