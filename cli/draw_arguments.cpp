#include "draw_arguments.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <string_view>

#include "commands.hpp"
#include "failure.hpp"
#include "formats/formats.hpp"

namespace korvex::cli {
namespace {

void add_own_options(CLI::App& app, DrawArguments& arguments) {
  const Symbology& symbology = *arguments.symbology;
  for (const Option& option : symbology.options) {
    const std::string name(option.name);
    const std::string group = "Options of " + std::string(symbology.name);
    std::string help(option.help);
    if (!option.preset.empty()) help.append(" (").append(option.preset).append(")");
    if (option.is_flag()) {
      app.add_flag_callback(
             name, [&] { arguments.options.set(option, ""); }, help)
          ->group(group);
      continue;
    }
    const auto set = [&](const std::string& value) { arguments.options.set(option, value); };
    std::string placeholder(option.value);
    for (const std::string_view choice : option.choices) {
      placeholder.append(placeholder.empty() ? "" : "|").append(choice);
    }
    app.add_option_function<std::string>(name, set, help)->type_name(placeholder)->group(group);
  }
}

void add_common_options(CLI::App& app, DrawArguments& arguments) {
  app.add_option("DATA", arguments.data, "the data; from --data-file or standard input when left out")
      ->type_name("");
  const auto text = [&](const char* name, std::string& value, const char* type, const std::string& help,
                        const char* group) {
    app.add_option(name, value, help)->type_name(type)->group(group);
  };
  text("--data-file", arguments.data_file, "FILE", "take the data from a file, byte for byte", "Data");
  app.add_flag("--hex", arguments.is_hexadecimal, "the data is hexadecimal, two digits a byte")
      ->group("Data");

  app.add_flag("--escapes", arguments.has_escapes,
               "the data has names of control characters in braces, such as {GS} and {EOT}; {{ is a brace")
      ->group("Data");

  app.add_option("-o,--output", arguments.outputs,
                 "write this file (may be given again); the ending says what it is: " + format_names() +
                     "; - is standard output; in the terminal when there is none")
      ->type_name("FILE")
      ->allow_extra_args(false)
      ->group("Output");
  text("--format", arguments.format, "FORMAT", "what a file is whose name does not say: " + format_names(),
       "Output");
  app.add_flag("--verbose", arguments.is_verbose, "say on standard error what was chosen")->group("Output");

  text("--module", arguments.module, "SIZE", "a module in pixels (4), or in millimetres as in 0.33mm",
       "Picture");
  text("--dpi", arguments.dots_per_inch, "N", "dots per inch; millimetres are rounded to whole dots",
       "Picture");
  text("--quiet-zone", arguments.quiet_zone, "N", "light modules on every side (what the standard asks for)",
       "Picture");
  text("--foreground", arguments.foreground, "COLOUR", "'#rrggbb', black or white", "Picture");
  text("--background", arguments.background, "COLOUR", "'#rrggbb', black, white or transparent", "Picture");
}

/// Whether an option of any symbology stands alone, so that no value follows it.
bool is_flag(std::string_view name) {
  if (name == "--hex" || name == "--escapes" || name == "--verbose" || name == "--help" || name == "-h")
    return true;
  return std::ranges::any_of(symbologies(), [&](const Symbology& symbology) {
    const auto option = std::ranges::find(symbology.options, name, &Option::name);
    return option != symbology.options.end() && option->is_flag();
  });
}

/// Takes the symbology's name out of the arguments; options may stand before it.
std::string take_symbology(std::vector<std::string>& arguments) {
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    if (!argument->starts_with('-')) {
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
    std::printf("  %-18s %s\n", symbology.name.data(), symbology.title.data());
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
  std::vector<std::string> rest = arguments;
  const Symbology& symbology = find_symbology(take_symbology(rest));
  DrawArguments parsed;
  parsed.symbology = &symbology;
  CLI::App app("Draws " + std::string(symbology.title) + " (" + std::string(symbology.standard) +
                   ").\nIt takes " + std::string(symbology.takes) + ".",
               "korvex draw " + std::string(symbology.name));
  add_own_options(app, parsed);
  add_common_options(app, parsed);
  app.footer("Data that begins with - stands behind --, as in korvex draw " + std::string(symbology.name) +
             " -o label.png -- -1.");
  if (!parse(app, rest)) return std::nullopt;
  return parsed;
}

}  // namespace korvex::cli
