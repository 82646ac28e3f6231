#include "job.hpp"

#include <algorithm>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

#include "data_source.hpp"
#include "failure.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

ModuleSize module_of(const Job& job) {
  const std::optional<UsualModule>& usual = job.symbology->usual_module;
  const auto& [module, dots_per_inch] = std::tie(job.settings.module, job.settings.dots_per_inch);
  if (!usual || !module.empty()) return module_size(module, dots_per_inch);
  if (!dots_per_inch.empty()) return module_size(decimal(usual->millimetres, 3) + "mm", dots_per_inch);
  ModuleSize size;
  size.pixels = usual->pixels;
  size.millimetres = usual->millimetres;
  return size;
}

Style style_of(const DrawSettings& settings, const ModuleSize& module) {
  Style style;
  style.module = module;
  style.reduction = bar_width_reduction(settings.bar_width_reduction, module);
  style.foreground = *parse_color("--foreground", settings.foreground, false);
  style.background = parse_color("--background", settings.background, true);
  return style;
}

std::vector<std::string> remarks_on(const Style& style) {
  std::vector<std::string> remarks;
  if (!style.module.note.empty()) remarks.push_back(style.module.note);
  if (style.background && style.foreground.luminance() >= style.background->luminance()) {
    remarks.emplace_back("The bars are not darker than their background; most scanners will not read them.");
  }
  return remarks;
}

/// What is the same for every picture of a drawing.
void finish_pictures(Drawing& drawing, const Job& job, const std::string& data) {
  for (Picture& picture : drawing.pictures) {
    picture.title = job.symbology->title;
    picture.description = printable(data);
    if (!job.settings.quiet_zone.empty()) {
      const double modules = whole_number("--quiet-zone", job.settings.quiet_zone, 0, 1000);
      picture.quiet_zone = {modules, modules, modules, modules};
    }
  }
}

Picture without_quiet_zone(Picture picture) {
  picture.quiet_zone = {};
  return picture;
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

/// Whether what stands behind the last point of a name looks like the name of a format.
bool is_ending(std::string_view text) {
  constexpr std::size_t kLongest = 5;
  return !text.empty() && text.size() <= kLongest && std::ranges::all_of(text, [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
  });
}

/// Whether the data is to blame for a parameter that the library refuses, as it may be for its length: then a
/// little of it goes with the same options.
bool is_fault_of_data(const Job& job, DrawRequest request) {
  constexpr std::size_t kLittle = 100;
  request.data.resize(std::min(request.data.size(), kLittle));
  while (!request.data.empty() && (request.data.back() & 0x80) != 0)
    request.data.pop_back();  // no half character
  if (request.data.empty()) request.data = "1";
  const Result<Drawing> result = job.symbology->draw(request);
  return result || result.error().code != Code::bad_parameter;
}

}  // namespace

DrawnJob draw_job(const Job& job) {
  const ModuleSize module = module_of(job);
  Style style = style_of(job.settings, module);
  const DrawRequest request{decoded_data(job.data, job.settings),
                            job.settings.is_hexadecimal || job.is_data_of_file, job.options, module};
  Result<Drawing> result = job.symbology->draw(request);
  if (!result) {
    const bool is_usage = result.error().code == Code::bad_parameter && !is_fault_of_data(job, request);
    if (is_usage) throw UsageError(result.error().message);
    throw Failure(result.error().message);
  }
  Drawing drawing = std::move(result).value();
  finish_pictures(drawing, job, request.data);
  std::vector<std::string> remarks = remarks_on(style);
  return {std::move(drawing), std::move(style), std::move(remarks)};
}

Output output_of(std::string path, const std::string& given) {
  const std::size_t dot = path.find_last_of("./");
  const bool has_ending = dot != std::string::npos && path[dot] == '.';
  const Format* format = has_ending ? find_format(path.substr(dot + 1)) : nullptr;
  if (format == nullptr && !given.empty()) format = find_format(given);
  if (format != nullptr) return {std::move(path), format};
  const std::string ending = has_ending ? path.substr(dot + 1) : "";
  if (is_ending(ending)) {
    throw UsageError("There is no format \"" + ending + "\", which " + printable(path) +
                     " asks for; there are " + format_names() +
                     ", and --format says it of names that do not.");
  }
  throw UsageError((path == "-" ? "Standard output needs --format"
                                : "The name " + printable(path) +
                                      " does not say what the file is; give it an ending or --format") +
                   ": " + format_names() + ".");
}

std::vector<OutputFile> render(const DrawnJob& drawn, const std::vector<Output>& outputs,
                               const DrawSettings& settings) {
  std::vector<OutputFile> files;
  const std::vector<Picture>& pictures = drawn.drawing.pictures;
  for (const auto& [path, format] : outputs) {
    const bool strip = format->bare && settings.quiet_zone.empty();
    for (std::size_t number = 1; number <= pictures.size(); ++number) {
      const Picture& picture = pictures[number - 1];
      files.push_back({numbered(path, number, pictures.size()),
                       format->render(strip ? without_quiet_zone(picture) : picture, drawn.style)});
    }
  }
  return files;
}

}  // namespace korvex::cli
