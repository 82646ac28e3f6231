#include "measure.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "failure.hpp"
#include "options.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr double kMillimetresPerInch = 25.4;
constexpr double kCssPixelsPerInch = 96;
constexpr double kUsualMillimetres = 0.33;  // the nominal X dimension of EAN/UPC
constexpr int kUsualPixels = 4;
constexpr int kMostPixels = 1000;
constexpr double kMostMillimetres = 100;
constexpr double kLongestModules = 10000;

/// A number and whether "mm" follows it.
struct Measure {
  double number = 0;
  bool in_millimetres = false;
};

std::optional<Measure> parse(std::string_view text) {
  Measure measure;
  measure.in_millimetres = text.ends_with("mm");
  if (measure.in_millimetres) text.remove_suffix(2);
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, measure.number, std::chars_format::fixed);
  if (error != std::errc() || stop != end || !std::isfinite(measure.number)) return std::nullopt;
  return measure;
}

std::string quoted(std::string_view text) {
  return "\"" + printable(text) + "\"";
}

/// Whole dots for a module of so many millimetres.
void round_to_dots(ModuleSize& size, double millimetres, double dots_per_inch) {
  const double dots = millimetres * dots_per_inch / kMillimetresPerInch;
  const int whole = std::max(1, static_cast<int>(std::lround(dots)));
  size.pixels = whole;
  size.millimetres = whole * kMillimetresPerInch / dots_per_inch;
  if (std::abs(dots - whole) < 1e-6) return;
  size.note = "A module of " + decimal(millimetres, 4) + " mm is " + decimal(dots, 2) + " dots at " +
              decimal(dots_per_inch, 2) + " dpi; it is drawn with " + std::to_string(whole) +
              (whole == 1 ? " dot, " : " dots, ") + decimal(*size.millimetres, 4) + " mm.";
}

}  // namespace

ModuleSize module_size(std::string_view module, std::string_view dots_per_inch) {
  ModuleSize size;
  if (!dots_per_inch.empty()) {
    const std::optional<Measure> dpi = parse(dots_per_inch);
    if (!dpi || dpi->in_millimetres || dpi->number < 1 || dpi->number > 100000) {
      throw UsageError("--dpi is a number from 1 to 100000, not " + quoted(dots_per_inch) + ".");
    }
    size.dots_per_inch = dpi->number;
  }
  if (module.empty()) {
    if (size.dots_per_inch) round_to_dots(size, kUsualMillimetres, *size.dots_per_inch);
    return size;
  }
  const std::optional<Measure> measure = parse(module);
  if (measure && measure->in_millimetres && measure->number > 0 && measure->number <= kMostMillimetres) {
    size.millimetres = measure->number;
    if (size.dots_per_inch) round_to_dots(size, measure->number, *size.dots_per_inch);
    return size;
  }
  if (!measure || measure->in_millimetres || measure->number < 1 || measure->number > kMostPixels ||
      measure->number != std::floor(measure->number)) {
    throw UsageError("--module is a whole number of pixels from 1 to " + std::to_string(kMostPixels) +
                     ", or up to " + decimal(kMostMillimetres, 0) + " millimetres as in 0.33mm, not " +
                     quoted(module) + ".");
  }
  size.pixels = static_cast<int>(measure->number);
  if (size.dots_per_inch) size.millimetres = *size.pixels * kMillimetresPerInch / *size.dots_per_inch;
  return size;
}

int pixels_of(const ModuleSize& module) {
  if (!module.pixels && module.millimetres) {
    throw UsageError("A module in millimetres becomes whole pixels only with --dpi.");
  }
  return module.pixels.value_or(kUsualPixels);
}

double millimetres_of(const ModuleSize& module) {
  if (module.millimetres) return *module.millimetres;
  if (module.pixels) return *module.pixels * kMillimetresPerInch / kCssPixelsPerInch;
  return kUsualMillimetres;
}

double length_in_modules(std::string_view option_name, std::string_view text, const ModuleSize& module) {
  const std::optional<Measure> measure = parse(text);
  if (measure && measure->in_millimetres && !module.millimetres) {
    throw UsageError(std::string(option_name) + " in millimetres needs --module in millimetres, or --dpi.");
  }
  const double modules = !measure                  ? 0
                         : measure->in_millimetres ? measure->number / *module.millimetres
                                                   : measure->number;
  if (modules <= 0 || modules > kLongestModules) {
    throw UsageError(std::string(option_name) + " is a number of modules up to " +
                     decimal(kLongestModules, 0) + ", or of millimetres as in 20mm, not " + quoted(text) +
                     ".");
  }
  return modules;
}

}  // namespace korvex::cli
