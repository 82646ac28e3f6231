// From the fields of a record to the job that they ask for.
#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

#include "batch/records.hpp"
#include "draw_settings.hpp"
#include "job.hpp"

namespace korvex::cli::batch {

/// What holds for every record that does not say it itself.
struct Defaults {
  std::string symbology;
  DrawSettings settings;
  std::vector<std::pair<std::string, std::string>> options;  ///< of symbologies that have them
  std::set<std::string, std::less<>> passed_over;            ///< fields that are no option, and need not be
  bool list_is_standard_input = false;                       ///< so that no job's data is
};

/// Throws UsageError for a default option, or a column, that nothing knows.
void check_names(const Defaults& defaults, const std::vector<std::string>& header);

/// Throws UsageError or Failure.
Job job_of(const Fields& fields, const Defaults& defaults);

}  // namespace korvex::cli::batch
