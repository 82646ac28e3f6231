#include "options.hpp"

#include <algorithm>
#include <charconv>

#include "failure.hpp"
#include "words.hpp"

namespace korvex::cli {

bool Option::has_choice(std::string_view choice) const {
  return std::ranges::find(choices, choice) != choices.end();
}

std::string Option::placeholder() const {
  std::string text(value);
  for (const std::string_view choice : choices) text.append(text.empty() ? "" : "|").append(choice);
  return alone.empty() ? text : "[" + text + "]";
}

void OptionValues::set(const Option& option, std::string_view value) {
  if (!option.choices.empty() && !option.has_choice(value)) {
    throw UsageError(std::string(option.name) + " is " + joined(option.choices, "or") + ", not \"" +
                     printable(value) + "\".");
  }
  values_.insert_or_assign(std::string(option.name), std::string(value));
}

bool OptionValues::flag(const Option& option) const {
  return values_.contains(option.name);
}

std::optional<std::string> OptionValues::text(const Option& option) const {
  if (const auto found = values_.find(option.name); found != values_.end()) return found->second;
  if (!option.preset.empty()) return std::string(option.preset);
  return std::nullopt;
}

std::optional<int> OptionValues::number(const Option& option, int least, int most) const {
  const std::optional<std::string> value = text(option);
  if (!value) return std::nullopt;
  return whole_number(option.name, *value, least, most);
}

int whole_number(std::string_view option_name, std::string_view text, int least, int most) {
  int number = 0;
  const char* const end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || stop != end || number < least || number > most) {
    throw UsageError(std::string(option_name) + " is a whole number from " + std::to_string(least) + " to " +
                     std::to_string(most) + ", not \"" + printable(text) + "\".");
  }
  return number;
}

}  // namespace korvex::cli
