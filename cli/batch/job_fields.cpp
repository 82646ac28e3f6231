#include "batch/job_fields.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>

#include "data_source.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

constexpr std::array<std::string_view, 5> kOwnFields = {"id", "line", "symbology", "data", "data-file"};

bool is_own(std::string_view name) {
  return std::ranges::find(kOwnFields, name) != kOwnFields.end();
}

const Setting* setting_of(std::string_view name) {
  const auto found = std::ranges::find_if(
      all_settings(), [&](const Setting& setting) { return setting.name.substr(2) == name; });
  return found == all_settings().end() ? nullptr : &*found;
}

const Option* option_of(const Symbology& symbology, std::string_view name) {
  const auto found = std::ranges::find_if(
      symbology.options, [&](const Option& option) { return option.name.substr(2) == name; });
  return found == symbology.options.end() ? nullptr : &*found;
}

bool is_option_of_any(std::string_view name) {
  return std::ranges::any_of(
      symbologies(), [&](const Symbology& symbology) { return option_of(symbology, name) != nullptr; });
}

/// Spreadsheets write TRUE, scripts True.
std::optional<bool> truth_of(std::string_view value) {
  constexpr std::array<std::string_view, 4> kTrue = {"true", "1", "yes", ""};
  constexpr std::array<std::string_view, 3> kFalse = {"false", "0", "no"};
  std::string word(value);
  std::ranges::transform(word, word.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  if (std::ranges::find(kTrue, word) != kTrue.end()) return true;
  if (std::ranges::find(kFalse, word) != kFalse.end()) return false;
  return std::nullopt;
}

bool truth(std::string_view name, std::string_view value) {
  if (const auto truth = truth_of(value)) return *truth;
  throw UsageError("The field \"" + printable(name) + "\" is true or false, not \"" + printable(value) +
                   "\".");
}

void set(const Option& option, std::string_view name, const std::string& value, OptionValues& options) {
  const bool is_truth = option.is_flag() || (!option.alone.empty() && truth_of(value));
  if (!is_truth) {
    options.set(option, value);
  } else if (truth(name, value)) {
    options.set(option, option.alone);
  }
}

void set(const Setting& setting, std::string_view name, const std::string& value, DrawSettings& settings) {
  if (setting.flag != nullptr) {
    settings.*setting.flag = truth(name, value);
  } else {
    settings.*setting.text = value;
  }
}

[[noreturn]] void refuse(std::string_view name, const Symbology& symbology) {
  std::vector<std::string_view> names(kOwnFields.begin(), kOwnFields.end());
  for (const Setting& setting : all_settings()) names.push_back(setting.name.substr(2));
  for (const Option& option : symbology.options) names.push_back(option.name.substr(2));
  const std::string_view meant = nearest(name, names);
  throw UsageError("There is no option \"" + printable(name) + "\" of " + std::string(symbology.name) + "; " +
                   (meant.empty()
                        ? "korvex draw " + std::string(symbology.name) + " --help shows what there is."
                        : "did you mean " + std::string(meant) + "?"));
}

/// Puts the data into the job.
void take_data(const Fields& fields, const Defaults& defaults, Job& job) {
  const auto data = fields.find("data");
  const auto file = fields.find("data-file");
  if (data == fields.end() && file == fields.end()) throw UsageError("No data is given.");
  job.is_data_of_file = file != fields.end();
  const std::string path = job.is_data_of_file ? file->second : "";
  if (job.is_data_of_file && path.empty()) throw UsageError("The name of the data file is empty.");
  if (job.is_data_of_file && defaults.list_is_standard_input && is_standard_input(path)) {
    throw UsageError("The data file is standard input, from which the list comes.");
  }
  job.data = read_data(data == fields.end() ? std::nullopt : std::optional(data->second), path);
}

}  // namespace

void check_names(const Defaults& defaults, const std::vector<std::string>& header) {
  if (!defaults.symbology.empty()) find_symbology(defaults.symbology);
  for (const auto& [name, value] : defaults.options) {
    if (!is_option_of_any(name)) throw UsageError("No symbology has the option \"" + printable(name) + "\".");
  }
  for (const std::string& name : header) {
    if (is_own(name) || setting_of(name) != nullptr || is_option_of_any(name)) continue;
    if (defaults.passed_over.contains(name)) continue;
    throw UsageError("The column \"" + printable(name) +
                     "\" is no field of a job and no option of any symbology; --ignore " + printable(name) +
                     " passes it over.");
  }
}

Job job_of(const Fields& fields, const Defaults& defaults) {
  Job job;
  const auto given = fields.find("symbology");
  const std::string& name = given == fields.end() ? defaults.symbology : given->second;
  if (name.empty()) throw UsageError("No symbology is given, neither in the list nor with --symbology.");
  job.symbology = &find_symbology(name);
  job.settings = defaults.settings;
  for (const auto& [option_name, value] : defaults.options) {
    if (const Option* const option = option_of(*job.symbology, option_name)) {
      set(*option, option_name, value, job.options);
    }
  }
  for (const auto& [field, value] : fields) {
    if (is_own(field)) continue;
    if (const Option* const option = option_of(*job.symbology, field)) {
      set(*option, field, value, job.options);
    } else if (const Setting* const setting = setting_of(field)) {
      set(*setting, field, value, job.settings);
    } else if (!defaults.passed_over.contains(field)) {
      refuse(field, *job.symbology);
    }
  }
  take_data(fields, defaults, job);
  return job;
}

}  // namespace korvex::cli::batch
