// GS1 DataBar, and EAN/UPC and GS1-128 as linear components of composite symbols.
#include "korvex/composite.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string>
#include <utility>

#include "failure.hpp"
#include "families/families.hpp"
#include "families/gs1_data.hpp"
#include "words.hpp"

namespace korvex::cli::families {
namespace {

constexpr int kMostSegments = 22;

const Option kComponent{"--cc", "TEXT",
                        "text of the 2D component above, as after a | in the data; may be empty"};
const Option kSegments{"--segments", "N", "symbol characters a row, 2 to 22 and even (one row)"};
const Option kHeight{"--height", "LENGTH", "height of the bars in modules, or in millimetres as in 20mm"};
const Option kDialect{"--dialect",
                      "",
                      "the published form, or what CC_Encode draws to the module",
                      {"standard", "korvex32"},
                      "standard"};

std::string numbers(const auto& values) {
  std::string text;
  for (const int value : values) text.append(text.empty() ? "" : " ").append(std::to_string(value));
  return text;
}

std::string_view name_of(composite::Component component) {
  constexpr std::array<std::string_view, 4> kNames = {"no 2D component", "CC-A", "CC-B", "CC-C"};
  return kNames[static_cast<std::size_t>(component)];
}

std::vector<std::string> notes(const composite::Symbol& symbol, const composite::Details& details) {
  std::vector<std::string> notes;
  notes.push_back(std::to_string(symbol.modules.columns()) + " modules wide, linear component " +
                  printable(details.linear_text));
  if (!details.method.empty()) notes.back() += ", encodation method " + details.method;
  if (!details.linear_values.empty()) notes.push_back("symbol characters " + numbers(details.linear_values));
  if (symbol.component == composite::Component::none) return notes;
  notes.push_back(std::string(name_of(symbol.component)) + " of " + std::to_string(symbol.component_columns) +
                  " columns and " + std::to_string(symbol.component_rows) + " rows, encodation method " +
                  details.component_method + ", " + std::to_string(details.component_bits) +
                  " bits before padding");
  notes.push_back("codewords " + numbers(details.codewords) + ", the last " +
                  std::to_string(details.check_codewords) + " for error correction");
  return notes;
}

/// The data with the 2D component's text behind a vertical bar.
std::string both_texts(const DrawRequest& request) {
  const std::optional<std::string> component = request.options.text(kComponent);
  if (!component) return request.data;
  if (request.data.find('|') != std::string::npos) {
    throw UsageError("The data has a | already, so --cc would be a second 2D component; give one of them.");
  }
  return request.data + '|' + *component;
}

Result<Drawing> draw(composite::Symbology symbology, const DrawRequest& request) {
  composite::Options options;
  options.symbology = symbology;
  options.dialect = request.options.text(kDialect) == "korvex32" ? Dialect::korvex32 : Dialect::standard;
  options.segments_per_row = request.options.number(kSegments, 1, kMostSegments).value_or(kMostSegments);
  options.gs1_checking = gs1_checking(request.options);
  const std::string data = both_texts(request);
  const Result<composite::Symbol> symbol = composite::encode(options, data);
  if (!symbol) return symbol.error();
  const Result<composite::Details> details = composite::explain(options, data);
  if (!details) return details.error();

  Picture picture;
  picture.modules = symbol->modules;
  picture.row_heights.assign(symbol->row_heights.begin(), symbol->row_heights.end());
  if (const auto height = request.options.text(kHeight)) {
    picture.row_heights.back() = length_in_modules(kHeight.name, *height, request.module);
  }
  const composite::QuietZones quiet = composite::quiet_zones(options);
  picture.quiet_zone = {static_cast<double>(quiet.left), 0, static_cast<double>(quiet.right), 0};
  return Drawing{{std::move(picture)}, notes(*symbol, *details), details->warnings};
}

Symbology symbology(composite::Symbology value, std::string_view name, std::string_view title,
                    std::string_view standard, std::string_view takes, Example example,
                    std::vector<Option> own_options = {}) {
  own_options.push_back(kComponent);
  own_options.push_back(gs1_checking_option());
  own_options.push_back(kDialect);
  return {name,
          title,
          standard,
          takes,
          std::move(example),
          std::move(own_options),
          [value](const DrawRequest& request) { return draw(value, request); }};
}

}  // namespace

std::vector<Symbology> composite() {
  using enum composite::Symbology;
  constexpr std::string_view kItem = "13 digits, or 14 with the check digit, also behind (01)";
  constexpr std::string_view kItemNumber = "(01)09501101530003";
  constexpr std::string_view kDataBar = "ISO/IEC 24724";
  constexpr std::string_view kComposite = "ISO/IEC 24723";
  constexpr std::string_view kDateAndBatch = "(17)261231(10)AB-123";
  return {
      symbology(databar, "databar", "GS1 DataBar Omnidirectional", kDataBar, kItem, {kItemNumber}),
      symbology(databar_truncated, "databar-truncated", "GS1 DataBar Truncated", kDataBar, kItem,
                {kItemNumber}),
      symbology(databar_stacked, "databar-stacked", "GS1 DataBar Stacked", kDataBar, kItem, {kItemNumber}),
      symbology(databar_stacked_omni, "databar-stacked-omni", "GS1 DataBar Stacked Omnidirectional", kDataBar,
                kItem, {kItemNumber}),
      symbology(databar_limited, "databar-limited", "GS1 DataBar Limited", kDataBar,
                "13 digits that begin with 0 or 1, or 14 with the check digit, also behind (01)",
                {kItemNumber}),
      symbology(databar_expanded, "databar-expanded", "GS1 DataBar Expanded", kDataBar, "element strings",
                {"(01)09501101530003(17)261231(10)AB-123"}, {kSegments}),
      symbology(ean13, "ean13-cc", "EAN-13 composite", kComposite,
                "12 digits, 13 with the check digit, or (01) and 14",
                {"400638133393", {"--cc", kDateAndBatch}}),
      symbology(upce, "upce-cc", "UPC-E composite", kComposite,
                "6 digits, 8 with 0 and check digit, or the UPC-A number they stand for",
                {"01234000005", {"--cc", kDateAndBatch}}),
      symbology(upca, "upca-cc", "UPC-A composite", kComposite,
                "11 digits, 12 with the check digit, or (01) and 14",
                {"03600029145", {"--cc", kDateAndBatch}}),
      symbology(ean8, "ean8-cc", "EAN-8 composite", kComposite,
                "7 digits, 8 with the check digit, or (01) and 14", {"9638507", {"--cc", kDateAndBatch}}),
      symbology(gs1_128, "gs1-128", "GS1-128", kComposite, "element strings of up to 48 characters",
                {"(01)09501101530003(10)AB-123"}, {kHeight}),
      symbology(gs1_128_cc_c, "gs1-128-cc", "GS1-128 composite with CC-C", kComposite,
                "element strings of up to 48 characters",
                {"(01)09501101530003", {"--cc", "(10)AB-123(21)0042(91)KORVEX"}}, {kHeight}),
  };
}

}  // namespace korvex::cli::families
