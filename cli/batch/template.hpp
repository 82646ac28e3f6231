// Texts with names of fields in braces, such as {id}-{symbology}.png.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "batch/records.hpp"

namespace korvex::cli::batch {

class Template {
 public:
  /// `{{` is a brace. Throws UsageError, with the option's name, where a brace opens no name.
  Template(std::string_view option_name, std::string_view text);

  /// The names that it asks for.
  [[nodiscard]] std::vector<std::string> names() const;

  /// The text with every name's value. Throws Failure when a field is not given.
  [[nodiscard]] std::string text(const Fields& fields) const;
  /// Likewise, with values that stay within their folder: what no file name should have becomes _.
  [[nodiscard]] std::string file_name(const Fields& fields) const;

 private:
  struct Part {
    std::string text;
    bool is_name = false;
  };
  template <class Change>
  [[nodiscard]] std::string expanded(const Fields& fields, Change change) const;

  std::string option_name_;
  std::vector<Part> parts_;
};

}  // namespace korvex::cli::batch
