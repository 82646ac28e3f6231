// Labels in bulk: one symbol a record of a list, on all cores, in the order of the list.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "batch/job_fields.hpp"
#include "batch/sheet.hpp"
#include "batch/template.hpp"

namespace korvex::cli::batch {

struct SheetRequest {
  std::string path;
  SheetLayout layout;
  std::optional<Template> caption;
};

struct Batch {
  std::string jobs;             ///< the list's path; "-" is standard input
  std::string folder;           ///< empty: no files but the sheet
  std::vector<Template> names;  ///< of the files of a symbol
  std::string format;           ///< of names that do not say it
  std::optional<SheetRequest> sheet;
  Defaults defaults;
  std::string report;  ///< path; "-" is standard output
  bool resume = false;
  unsigned threads = 1;
  std::string arguments;  ///< that make it what it is; those of an interrupted run are the same
};

/// Draws all of it, with progress and a summary on standard error. Returns the exit status: 0, 1 when records
/// failed, 130 when it was interrupted. Throws UsageError or Failure when it cannot begin or go on.
int run(const Batch& batch);

}  // namespace korvex::cli::batch
