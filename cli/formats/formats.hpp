// The file formats. Each is one file here and one line in formats.cpp.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "picture.hpp"
#include "style.hpp"

namespace korvex::cli {

struct Format {
  std::string_view name;  ///< also the ending of file names
  std::string_view title;
  /// The bytes of a file. Throws UsageError or Failure.
  std::string (*render)(const Picture&, const Style&);
  bool bare;  ///< has a quiet zone only when one is asked for
};

std::span<const Format> all_formats();

/// "png, svg, ... or txt".
std::string format_names();

/// Null when there is none of that name, in capital letters or small ones.
const Format* find_format(std::string_view name);

namespace formats {

std::string png(const Picture& picture, const Style& style);
std::string svg(const Picture& picture, const Style& style);
std::string pdf(const Picture& picture, const Style& style);
std::string eps(const Picture& picture, const Style& style);
std::string txt(const Picture& picture, const Style& style);

}  // namespace formats
}  // namespace korvex::cli
