#include "symbologies.hpp"

#include <algorithm>
#include <iterator>

#include "failure.hpp"
#include "families/families.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

std::vector<Symbology> all_families() {
  std::vector<Symbology> all;
  for (auto* const family : {families::linear, families::qr, families::pdf417, families::datamatrix,
                             families::maxicode, families::composite, families::veri}) {
    std::ranges::move(family(), std::back_inserter(all));
  }
  return all;
}

}  // namespace

std::span<const Symbology> symbologies() {
  static const std::vector<Symbology> all = all_families();
  return all;
}

const Symbology& find_symbology(std::string_view name) {
  const auto found = std::ranges::find(symbologies(), name, &Symbology::name);
  if (found != symbologies().end()) return *found;

  std::vector<std::string_view> names;
  for (const Symbology& symbology : symbologies()) names.push_back(symbology.name);
  std::string sentence = "There is no symbology \"" + printable(name) + "\"";
  if (const std::string_view meant = nearest(name, names); !meant.empty()) {
    sentence.append("; did you mean ").append(meant).append("?");
  } else {
    sentence += "; korvex list shows them all.";
  }
  throw UsageError(sentence);
}

}  // namespace korvex::cli
