#include "formats/formats.hpp"

#include <algorithm>
#include <array>
#include <vector>

#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr std::array kFormats = {
    Format{"png", "PNG, a picture of pixels", formats::png, false},
    Format{"svg", "SVG, for screens and drawing programs", formats::svg, false},
    Format{"pdf", "PDF, for printing", formats::pdf, false},
    Format{"eps", "Encapsulated PostScript, for typesetting", formats::eps, false},
    Format{"txt", "text, a row of 0 and 1 for every row of modules", formats::txt, true},
};

char lower(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::span<const Format> all_formats() {
  return kFormats;
}

std::string format_names() {
  std::vector<std::string_view> names;
  for (const Format& format : all_formats()) names.push_back(format.name);
  return joined(names, "or");
}

const Format* find_format(std::string_view name) {
  const auto found = std::ranges::find_if(
      kFormats, [&](const Format& format) { return std::ranges::equal(format.name, name, {}, {}, lower); });
  return found == kFormats.end() ? nullptr : &*found;
}

}  // namespace korvex::cli
