// Sizes: what a module measures in pixels and in millimetres, and lengths in modules or millimetres.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvex::cli {

/// How large a module is drawn. Pictures of pixels need `pixels`; the others take the best that is known.
struct ModuleSize {
  std::optional<int> pixels;
  std::optional<double> millimetres;  ///< on paper; unknown for pixels without dots per inch
  std::optional<double> dots_per_inch;
  std::string note;  ///< one sentence when the size asked for had to be rounded to whole pixels, else empty
};

/// Reads `--module` ("3": pixels; "0.33mm") and `--dpi`; empty texts were not given. A module in millimetres
/// is rounded to whole dots when the dots per inch are known; the dots alone ask for the usual 0.33 mm.
/// Throws UsageError.
ModuleSize module_size(std::string_view module, std::string_view dots_per_inch);

/// Pixels of a module in a picture of pixels. Throws UsageError when only millimetres are known.
int pixels_of(const ModuleSize& module);
/// Millimetres of a module in a picture without pixels: as known; else pixels of 1/96 inch; else 0.33.
double millimetres_of(const ModuleSize& module);

/// Reads "40" (modules) or "20mm" into modules, more than 0 and at most 10000. Throws UsageError, also for
/// millimetres when the module's own are not known.
double length_in_modules(std::string_view option_name, std::string_view text, const ModuleSize& module);

}  // namespace korvex::cli
