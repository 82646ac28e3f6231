// From what somebody asked for to pictures and files: the one way for the command line and for lists of jobs.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "draw_settings.hpp"
#include "files.hpp"
#include "formats/formats.hpp"
#include "options.hpp"
#include "style.hpp"
#include "symbologies.hpp"

namespace korvex::cli {

/// A symbol to draw (or a series of them).
struct Job {
  const Symbology* symbology = nullptr;
  OptionValues options;  ///< of the symbology's own options
  DrawSettings settings;
  std::string data;              ///< as given, before --hex or --escapes
  bool is_data_of_file = false;  ///< taken byte for byte: bytes, not text
};

struct DrawnJob {
  Drawing drawing;
  Style style;
  std::vector<std::string> remarks;  ///< sentences on the picture that whoever asked should see
};

/// Throws UsageError for settings and options that make no sense, Failure for data that cannot be encoded.
DrawnJob draw_job(const Job& job);

/// A file to write and what it is.
struct Output {
  std::string path;
  const Format* format;
};

/// The path's format by its ending, else the one `given` (empty: none). Throws UsageError.
Output output_of(std::string path, const std::string& given);

/// The files of all pictures in all outputs; the pictures of a series are numbered, as in label-2.png. Throws
/// UsageError or Failure.
std::vector<OutputFile> render(const DrawnJob& drawn, const std::vector<Output>& outputs,
                               const DrawSettings& settings);

}  // namespace korvex::cli
