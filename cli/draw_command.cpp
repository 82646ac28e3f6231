// `korvex draw`: the command line becomes a request, the family draws it, every output gets its bytes.
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>
#include <string_view>

#include "commands.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "formats/formats.hpp"
#include "formats/terminal.hpp"
#include "symbologies.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

/// What a command line says, as it stands there.
struct DrawArguments {
  std::optional<std::string> data;
  std::string data_file;
  bool is_hexadecimal = false;
  std::vector<std::string> outputs;
  std::string format;
  std::string module;
  std::string dots_per_inch;
  std::string quiet_zone;
  std::string foreground = "black";
  std::string background = "white";
  bool is_verbose = false;
  OptionValues options;
};

void say(const std::string& sentence) {
  std::fprintf(stderr, "korvex: %s\n", sentence.c_str());
}

// ---- the command line ----

void add_own_options(CLI::App& app, const Symbology& symbology, DrawArguments& arguments) {
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

std::string format_names() {
  std::vector<std::string_view> names;
  for (const Format& format : all_formats()) names.push_back(format.name);
  return joined(names, "or");
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
  if (name == "--hex" || name == "--verbose" || name == "--help" || name == "-h") return true;
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

// ---- data and outputs ----

/// One line ending at the end of what somebody typed or piped is no data.
void drop_line_ending(std::string& data) {
  if (!data.ends_with('\n')) return;
  data.pop_back();
  if (data.ends_with('\r')) data.pop_back();
}

std::string from_hexadecimal(std::string_view digits) {
  std::string bytes;
  int high = -1;
  for (std::size_t index = 0; index < digits.size(); ++index) {
    if (std::string_view(" \t\r\n").find(digits[index]) != std::string_view::npos) continue;
    const int value = hexadecimal_value(digits[index]);
    if (value < 0) {
      throw Failure("The character \"" + printable(digits.substr(index, 1)) + "\" at position " +
                    std::to_string(index + 1) +
                    " is no hexadecimal digit; 0-9, a-f, A-F and spaces are allowed.");
    }
    if (high >= 0) bytes += static_cast<char>(high * 16 + value);
    high = high >= 0 ? -1 : value;
  }
  if (high >= 0) throw Failure("The hexadecimal data ends with half a byte; two digits make one.");
  return bytes;
}

std::string read_data(const DrawArguments& arguments) {
  if (arguments.data && !arguments.data_file.empty()) {
    throw UsageError("The data is given twice, as an argument and with --data-file.");
  }
  std::string data;
  if (arguments.data) {
    data = *arguments.data;
  } else if (!arguments.data_file.empty()) {
    data = read_file(arguments.data_file);
  } else if (isatty(STDIN_FILENO) != 0) {
    throw UsageError(
        "No data is given; it stands behind the symbology, in --data-file or on standard input.");
  } else {
    data = read_file("-");
    drop_line_ending(data);
  }
  return arguments.is_hexadecimal ? from_hexadecimal(data) : data;
}

/// A file to write and what it is.
struct Output {
  std::string path;
  const Format* format;
};

const Format* format_of(const std::string& path, const std::string& given) {
  const std::size_t dot = path.find_last_of("./");
  const bool has_ending = dot != std::string::npos && path[dot] == '.';
  if (const Format* const format = has_ending ? find_format(path.substr(dot + 1)) : nullptr) return format;
  if (!given.empty()) return find_format(given);
  throw UsageError(
      (path == "-" ? "Standard output needs --format"
                   : "The name " + path + " does not say what the file is; give it an ending or --format") +
      ": " + format_names() + ".");
}

std::vector<Output> outputs_of(const DrawArguments& arguments) {
  if (!arguments.format.empty() && find_format(arguments.format) == nullptr) {
    throw UsageError("There is no format \"" + printable(arguments.format) + "\"; there are " +
                     format_names() + ".");
  }
  std::vector<Output> outputs;
  for (const std::string& path : arguments.outputs) {
    outputs.push_back({path, format_of(path, arguments.format)});
  }
  if (outputs.empty() && !arguments.format.empty()) outputs.push_back({"-", find_format(arguments.format)});
  return outputs;
}

/// The name of the n-th picture of a series: label-2.png.
std::string numbered(const std::string& path, std::size_t number, std::size_t count) {
  if (count == 1) return path;
  if (path == "-") {
    throw UsageError("A series of " + std::to_string(count) +
                     " symbols goes into files, not to standard output.");
  }
  const std::size_t dot = path.find_last_of("./");
  const std::size_t end = dot != std::string::npos && path[dot] == '.' ? dot : path.size();
  return path.substr(0, end) + "-" + std::to_string(number) + path.substr(end);
}

Picture without_quiet_zone(Picture picture) {
  picture.quiet_zone = {};
  return picture;
}

Style style_of(const DrawArguments& arguments, const ModuleSize& module) {
  Style style;
  style.module = module;
  style.foreground = *parse_color("--foreground", arguments.foreground, false);
  style.background = parse_color("--background", arguments.background, true);
  if (style.background && style.foreground.luminance() >= style.background->luminance()) {
    say("The bars are not darker than their background; most scanners will not read them.");
  }
  return style;
}

/// What is the same for every picture of a drawing.
void finish_pictures(Drawing& drawing, const Symbology& symbology, const std::string& data,
                     const std::string& quiet_zone) {
  for (Picture& picture : drawing.pictures) {
    picture.title = symbology.title;
    picture.description = printable(data);
    if (!quiet_zone.empty()) {
      const double modules = whole_number("--quiet-zone", quiet_zone, 0, 1000);
      picture.quiet_zone = {modules, modules, modules, modules};
    }
  }
}

void say_what_was_chosen(const Drawing& drawing, const Symbology& symbology) {
  for (const std::string& note : drawing.notes) say(std::string(symbology.title) + ": " + note + ".");
  for (const Picture& picture : drawing.pictures) {
    const Box whole = bounds(picture);
    say("The picture has " + decimal(whole.width, 2) + " x " + decimal(whole.height, 2) +
        " modules with its quiet zone.");
  }
}

void draw_in_terminal(const Drawing& drawing, const Style& style) {
  const Terminal terminal = standard_terminal();
  std::string lines;
  for (const Picture& picture : drawing.pictures) lines += terminal_lines(picture, style, terminal);
  write_files({{"-", std::move(lines)}});
}

void draw_into_files(const Drawing& drawing, const Style& style, const std::vector<Output>& outputs,
                     bool has_quiet_zone) {
  std::vector<OutputFile> files;
  const std::size_t count = drawing.pictures.size();
  for (const auto& [path, format] : outputs) {
    for (std::size_t number = 1; number <= count; ++number) {
      const Picture& picture = drawing.pictures[number - 1];
      const bool strip = format->bare && !has_quiet_zone;
      files.push_back({numbered(path, number, count),
                       format->render(strip ? without_quiet_zone(picture) : picture, style)});
    }
  }
  write_files(files);
}

int draw(const Symbology& symbology, const DrawArguments& arguments) {
  const std::vector<Output> outputs = outputs_of(arguments);
  const ModuleSize module = module_size(arguments.module, arguments.dots_per_inch);
  const Style style = style_of(arguments, module);
  if (!module.note.empty()) say(module.note);

  const DrawRequest request{read_data(arguments), arguments.options, module};
  Result<Drawing> result = symbology.draw(request);
  if (!result) {
    if (result.error().code == Code::bad_parameter) throw UsageError(result.error().message);
    throw Failure(result.error().message);
  }
  Drawing drawing = std::move(result).value();
  finish_pictures(drawing, symbology, request.data, arguments.quiet_zone);
  if (arguments.is_verbose) say_what_was_chosen(drawing, symbology);
  if (outputs.empty()) {
    draw_in_terminal(drawing, style);
  } else {
    draw_into_files(drawing, style, outputs, !arguments.quiet_zone.empty());
  }
  return 0;
}

}  // namespace

int draw_command(const std::vector<std::string>& arguments) {
  if (!arguments.empty() && (arguments.front() == "--help" || arguments.front() == "-h")) {
    print_general_help();
    return 0;
  }
  std::vector<std::string> rest = arguments;
  const Symbology& symbology = find_symbology(take_symbology(rest));
  CLI::App app("Draws " + std::string(symbology.title) + " (" + std::string(symbology.standard) +
                   ").\nIt takes " + std::string(symbology.takes) + ".",
               "korvex draw " + std::string(symbology.name));
  DrawArguments draw_arguments;
  add_own_options(app, symbology, draw_arguments);
  add_common_options(app, draw_arguments);
  app.footer("Data that begins with - stands behind --, as in korvex draw " + std::string(symbology.name) +
             " -o label.png -- -1.");
  if (!parse(app, rest)) return 0;
  return draw(symbology, draw_arguments);
}

}  // namespace korvex::cli
