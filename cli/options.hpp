// The options of a symbology as data, so that the command line, lists of jobs and `korvex list` share one
// table.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::cli {

struct Option {
  std::string_view name;     ///< with its two dashes
  std::string_view value{};  ///< what stands behind it, such as "N"; empty: nothing, it is a flag
  std::string_view help{};   ///< without a full stop
  std::vector<std::string_view> choices{};  ///< the values allowed; empty: the family checks them
  std::string_view preset{};                ///< the value when it is not given; empty: none
  std::string_view alone{};  ///< the value when the name stands alone; empty: one must follow. With choices.

  [[nodiscard]] bool is_flag() const { return value.empty() && choices.empty(); }
  [[nodiscard]] bool has_choice(std::string_view choice) const;
  /// "N", "a|b", "[a|b]" where the value may be left out; empty for a flag.
  [[nodiscard]] std::string placeholder() const;
};

/// Values given for options, by name.
class OptionValues {
 public:
  /// Throws UsageError when the value is not among the option's choices.
  void set(const Option& option, std::string_view value);

  /// True for a flag that was given.
  [[nodiscard]] bool flag(const Option& option) const;
  /// What was given, else the preset, else nothing.
  [[nodiscard]] std::optional<std::string> text(const Option& option) const;
  /// A whole number; nothing when neither given nor preset. Throws UsageError when it is none in least..most.
  [[nodiscard]] std::optional<int> number(const Option& option, int least, int most) const;

 private:
  std::map<std::string, std::string, std::less<>> values_;
};

/// Reads a whole number in least..most. Throws UsageError with the option's name.
int whole_number(std::string_view option_name, std::string_view text, int least, int most);

}  // namespace korvex::cli
