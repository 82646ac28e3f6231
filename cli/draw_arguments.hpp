// The command line of `korvex draw`.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "draw_settings.hpp"
#include "options.hpp"
#include "symbologies.hpp"

namespace korvex::cli {

/// What a command line says, as it stands there; empty texts were not given.
struct DrawArguments {
  const Symbology* symbology = nullptr;
  OptionValues options;  ///< of the symbology's own options
  DrawSettings settings;
  std::optional<std::string> data;
  std::string data_file;
  std::vector<std::string> outputs;
  std::string format;
  bool is_verbose = false;
};

/// Nothing: help was asked for and printed. Throws UsageError.
std::optional<DrawArguments> parse_draw_arguments(const std::vector<std::string>& arguments);

}  // namespace korvex::cli
