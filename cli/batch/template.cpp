#include "batch/template.hpp"

#include <algorithm>
#include <cstdint>

#include "failure.hpp"
#include "words.hpp"

namespace korvex::cli::batch {

Template::Template(std::string_view option_name, std::string_view text) : option_name_(option_name) {
  std::string plain;
  while (!text.empty()) {
    const char c = text.front();
    text.remove_prefix(1);
    if (c != '{' || text.starts_with('{')) {
      plain += c;
      if (c == '{') text.remove_prefix(1);
      continue;
    }
    const std::size_t end = text.find('}');
    if (end == std::string_view::npos || end == 0) {
      throw UsageError(option_name_ + " has a { that opens no name, as in {id}; {{ is a brace.");
    }
    parts_.push_back({plain, false});
    plain.clear();
    std::string name(text.substr(0, end));
    std::ranges::replace(name, '_', '-');
    parts_.push_back({name, true});
    text.remove_prefix(end + 1);
  }
  parts_.push_back({plain, false});
}

std::vector<std::string> Template::names() const {
  std::vector<std::string> names;
  for (const Part& part : parts_) {
    if (part.is_name) names.push_back(part.text);
  }
  return names;
}

template <class Change>
std::string Template::expanded(const Fields& fields, Change change) const {
  std::string text;
  for (const Part& part : parts_) {
    if (!part.is_name) {
      text += part.text;
      continue;
    }
    const auto field = fields.find(part.text);
    if (field == fields.end()) {
      throw Failure("There is no field \"" + printable(part.text) + "\", which " + option_name_ +
                    " asks for.");
    }
    text += change(field->second);
  }
  return text;
}

std::string Template::text(const Fields& fields) const {
  return expanded(fields, [](const std::string& value) { return value; });
}

std::string Template::file_name(const Fields& fields) const {
  return expanded(fields, [](std::string value) {
    std::ranges::replace_if(
        value,
        [](char c) {
          return static_cast<std::uint8_t>(c) < ' ' || c == '\x7F' ||
                 std::string_view("/\\:*?\"<>|").find(c) != std::string_view::npos;
        },
        '_');
    if (value.starts_with('.')) value.front() = '_';
    return value;
  });
}

}  // namespace korvex::cli::batch
