// `korvex draw`: the command line becomes a request, the family draws it, and every output gets its bytes.
#include <cstddef>
#include <cstdio>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "commands.hpp"
#include "data_source.hpp"
#include "draw_arguments.hpp"
#include "escapes.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "formats/formats.hpp"
#include "formats/terminal.hpp"
#include "symbologies.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

void say(const std::string& sentence) {
  std::fprintf(stderr, "korvex: %s\n", sentence.c_str());
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
  throw UsageError((path == "-" ? "Standard output needs --format"
                                : "The name " + printable(path) +
                                      " does not say what the file is; give it an ending or --format") +
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

ModuleSize module_of(const DrawArguments& arguments) {
  const std::optional<UsualModule>& usual = arguments.symbology->usual_module;
  if (!usual || !arguments.module.empty()) return module_size(arguments.module, arguments.dots_per_inch);
  if (!arguments.dots_per_inch.empty()) {
    return module_size(decimal(usual->millimetres, 3) + "mm", arguments.dots_per_inch);
  }
  ModuleSize module;
  module.pixels = usual->pixels;
  module.millimetres = usual->millimetres;
  return module;
}

std::string data_of(const DrawArguments& arguments) {
  if (arguments.has_escapes && arguments.is_hexadecimal) {
    throw UsageError("--hex has no use for names of control characters; --escapes does not go with it.");
  }
  std::string data = read_data(arguments.data, arguments.data_file, arguments.is_hexadecimal);
  return arguments.has_escapes ? with_escapes(data) : data;
}

int draw(const DrawArguments& arguments) {
  const Symbology& symbology = *arguments.symbology;
  const std::vector<Output> outputs = outputs_of(arguments);
  const ModuleSize module = module_of(arguments);
  const Style style = style_of(arguments, module);
  if (!module.note.empty()) say(module.note);

  const DrawRequest request{data_of(arguments), arguments.is_hexadecimal, arguments.options, module};
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
  const std::optional<DrawArguments> parsed = parse_draw_arguments(arguments);
  return parsed ? draw(*parsed) : 0;
}

}  // namespace korvex::cli
