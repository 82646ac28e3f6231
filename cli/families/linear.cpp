// The linear symbologies: bars, and the human readable text that goes with them.
#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "encoding.hpp"
#include "failure.hpp"
#include "families/families.hpp"
#include "families/gs1_data.hpp"
#include "families/linear_text.hpp"
#include "korvex/linear.hpp"
#include "words.hpp"

namespace korvex::cli::families {
namespace {

using linear::CheckCharacters;
using linear::Ratio;

template <class Value>
using Choice = std::pair<std::string_view, Value>;

constexpr std::array kRatios = {
    Choice<Ratio>{"2:1", Ratio::two_to_one},
    Choice<Ratio>{"3:1", Ratio::three_to_one},
    Choice<Ratio>{"5:2", Ratio::five_to_two},
};

constexpr std::array kChecks = {
    Choice<CheckCharacters>{"none", CheckCharacters::none},
    Choice<CheckCharacters>{"mod10", CheckCharacters::mod10},
    Choice<CheckCharacters>{"mod10-mod10", CheckCharacters::mod10_mod10},
    Choice<CheckCharacters>{"mod11", CheckCharacters::mod11},
    Choice<CheckCharacters>{"mod11-mod10", CheckCharacters::mod11_mod10},
    Choice<CheckCharacters>{"mod43", CheckCharacters::mod43},
    Choice<CheckCharacters>{"mod16", CheckCharacters::mod16},
    Choice<CheckCharacters>{"c", CheckCharacters::one},
    Choice<CheckCharacters>{"ck", CheckCharacters::two},
};

constexpr std::array kDialects = {
    Choice<Dialect>{"standard", Dialect::standard},
    Choice<Dialect>{"korvex32", Dialect::korvex32},
};

const Option kRatio{"--ratio", "", "wide to narrow elements", {"2:1", "3:1", "5:2"}, "3:1"};
const Option kGap{"--ratio",
                  "",
                  "in the korvex32 dialect: 5:2 makes the gap between characters 2 modules",
                  {"2:1", "3:1", "5:2"},
                  "3:1"};
const Option kWidths{
    "--widths", "NS,NB,WS,WB",
    "modules of a narrow space, narrow bar, wide space and wide bar, 1 to 99 each, instead of "
    "--ratio"};
const Option kGs1 = gs1_option(
    "GS1-128: element strings such as (01)09501101530003(10)AB; lenient draws those that break the rules of "
    "GS1 with a warning");
const Option kSegments{"--segments", "N", "headers at the start of the data", {}, "1"};
const Option kDialect{"--dialect",
                      "",
                      "the published form, or what Korvex_Bit draws to the module",
                      {"standard", "korvex32"},
                      "standard"};
const Option kHeight{"--height", "LENGTH", "height of the bars in modules, or in millimetres as in 20mm"};
const Option kNoText{"--no-text", "", "leave the human readable text out"};

Option check_option(std::vector<std::string_view> choices) {
  choices.insert(choices.begin(), "none");
  return {"--check", "", "check characters to add", std::move(choices), "none"};
}

template <class Value, std::size_t Count>
Value chosen(const std::array<Choice<Value>, Count>& choices, const OptionValues& values,
             const Option& option, Value otherwise) {
  const std::optional<std::string> name = values.text(option);
  if (!name) return otherwise;
  return std::ranges::find(choices, std::string_view(*name), &Choice<Value>::first)->second;
}

std::optional<linear::ElementWidths> element_widths(const OptionValues& values) {
  const std::optional<std::string> text = values.text(kWidths);
  if (!text) return std::nullopt;
  std::vector<int> widths;
  std::string_view rest = *text;
  for (std::size_t comma = 0; comma != std::string_view::npos && widths.size() < 5;) {
    comma = rest.find(',');
    widths.push_back(whole_number(kWidths.name, rest.substr(0, comma), 1, 99));
    if (comma != std::string_view::npos) rest.remove_prefix(comma + 1);
  }
  if (widths.size() != 4)
    throw UsageError("--widths takes four numbers with commas between them, as in 1,1,3,3.");
  return linear::ElementWidths{widths[0], widths[1], widths[2], widths[3]};
}

/// What the table below says of a symbology, beside what every linear one has.
struct Row {
  linear::Symbology symbology;
  double height;                ///< of the bars in modules; 0: by the width
  std::vector<Option> options;  ///< its own
};

linear::Options options_of(const Row& row, const OptionValues& values) {
  const auto has = [&](const Option& option) {
    return std::ranges::find(row.options, option.name, &Option::name) != row.options.end();
  };
  linear::Options options;
  options.symbology = row.symbology;
  options.dialect = chosen(kDialects, values, kDialect, Dialect::standard);
  options.ratio = chosen(kRatios, values, kRatio, Ratio::three_to_one);
  options.widths = element_widths(values);
  options.check = chosen(kChecks, values, check_option({}), CheckCharacters::none);
  options.gs1 = has_gs1(values);
  options.gs1_checking = gs1_checking(values);
  if (has(kSegments)) options.segments = values.number(kSegments, 1, 99).value_or(1);
  return options;
}

/// Modules of the narrowest element: what heights and text go by.
int narrow_element(const linear::Options& options) {
  if (options.widths) return std::max(options.widths->narrow_bar, options.widths->narrow_space);
  return options.ratio == Ratio::five_to_two ? 2 : 1;
}

ModuleMatrix matrix_of(const linear::ModuleRow& row) {
  ModuleMatrix matrix(1, row.size());
  for (int module = 0; module < row.size(); ++module) matrix.set_dark(0, module, row.bar(module));
  return matrix;
}

/// Code 128 carries ISO/IEC 8859-1: text that has a place there goes in as that.
std::string data_of(const linear::Options& options, const DrawRequest& request) {
  if (options.symbology != linear::Symbology::code128 || request.is_bytes) return request.data;
  return latin_1_of(request.data).value_or(request.data);
}

/// Element strings: people read them with brackets around the identifiers. The korvex32 dialect knows neither
/// brackets nor rules.
Result<linear::Symbol> encode_gs1(const linear::Options& options, const std::string& data,
                                  std::vector<std::string>& warnings) {
  const bool is_bracketed = gs1::is_bracketed(data);
  if (options.dialect == Dialect::korvex32 && !is_bracketed) return linear::encode(options, data);
  Result<gs1::ElementString> parsed = gs1::parse(data, options.gs1_checking);
  if (!parsed) return parsed.error();
  Result<linear::Symbol> encoded = linear::encode(options, parsed->plain);
  if (!encoded) return encoded;
  linear::Symbol symbol = std::move(encoded).value();
  if (is_bracketed || parsed->warnings.empty()) symbol.text = gs1::bracketed(parsed->elements);
  warnings = std::move(parsed).value().warnings;
  return symbol;
}

Result<Drawing> draw(const Row& row, const DrawRequest& request) {
  const linear::Options options = options_of(row, request.options);
  std::vector<std::string> warnings;
  Result<linear::Symbol> encoded = options.gs1 ? encode_gs1(options, request.data, warnings)
                                               : linear::encode(options, data_of(options, request));
  if (!encoded) return encoded.error();
  const linear::Symbol symbol = std::move(encoded).value();

  const int narrow = narrow_element(options);
  const linear::QuietZones quiet = linear::quiet_zones(options);
  Picture picture;
  picture.modules = matrix_of(symbol.bars);
  picture.quiet_zone = {static_cast<double>(quiet.left), 0, static_cast<double>(quiet.right), 0};
  const double by_width = std::max(40.0 * narrow, 0.15 * symbol.bars.size());
  double height = row.height > 0 ? row.height : by_width;
  if (const auto given = request.options.text(kHeight)) {
    height = length_in_modules(kHeight.name, *given, request.module);
  }
  picture.row_heights = {height};
  if (!request.options.flag(kNoText)) place_linear_text(picture, row.symbology, symbol, narrow);

  std::string note = std::to_string(symbol.bars.size()) + " modules";
  if (!symbol.text.empty()) note += ", text " + symbol.text;
  note += ", bars " + decimal(height, 2) + " modules high";
  return Drawing{{std::move(picture)}, {std::move(note)}, std::move(warnings)};
}

Symbology symbology(std::string_view name, std::string_view title, std::string_view standard,
                    std::string_view takes, Example example, Row row) {
  std::vector<Option> options = row.options;
  std::ranges::copy(std::array{kDialect, kHeight, kNoText}, std::back_inserter(options));
  return {name,
          title,
          standard,
          takes,
          std::move(example),
          std::move(options),
          [row = std::move(row)](const DrawRequest& request) { return draw(row, request); }};
}

}  // namespace

std::vector<Symbology> linear() {
  using enum linear::Symbology;
  const std::vector<Option> two_widths = {kRatio, kWidths};
  const auto with = [&](const Option& option) {
    std::vector<Option> options = two_widths;
    options.push_back(option);
    return options;
  };
  // Heights are those of the nominal size, 0.33 mm a module: 22.85 mm, 18.23 mm and 21.9 mm.
  return {
      symbology("codabar", "Codabar", "EN 798",
                "digits and - $ : / . +, with start and stop letters A-D or without", {"A40156B"},
                {codabar, 0, with(check_option({"mod16"}))}),
      symbology("code39", "Code 39", "ISO/IEC 16388", "digits, capital letters, space and - . $ / + %",
                {"KORVEX-39"}, {code39, 0, with(check_option({"mod43"}))}),
      symbology("itf", "Interleaved 2 of 5", "ISO/IEC 16390", "digits; an odd number gets a 0 in front",
                {"00012345678905"}, {itf, 0, with(check_option({"mod10"}))}),
      symbology("ean13", "EAN-13", "ISO/IEC 15420", "12 digits, or 13 with their check digit",
                {"400638133393"}, {ean13, 69, {}}),
      symbology("upca", "UPC-A", "ISO/IEC 15420", "11 digits, or 12 with their check digit", {"03600029145"},
                {upca, 69, {}}),
      symbology("ean8", "EAN-8", "ISO/IEC 15420", "7 digits, or 8 with their check digit", {"9638507"},
                {ean8, 55, {}}),
      symbology("upce", "UPC-E", "ISO/IEC 15420",
                "6 digits, 7 with a 0 in front, or 8 with their check digit too", {"425261"}, {upce, 69, {}}),
      symbology("addon", "EAN/UPC add-on", "ISO/IEC 15420", "2 or 5 digits", {"52495"}, {addon, 66, {}}),
      symbology("industrial25", "Industrial 2 of 5", "five bars a digit", "digits", {"1234567"},
                {industrial25, 0, with(check_option({"mod10"}))}),
      symbology("code25-3bar", "Three-bar 2 of 5", "three bars a digit", "digits", {"1234567"},
                {code25_3bar, 0, with(check_option({"mod10"}))}),
      symbology("sscc18", "SSCC-18", "GS1-128 with AI 00", "17 digits, or 18 with their check digit",
                {"34012345000000001"}, {sscc18, 64, {}}),
      symbology("code128", "Code 128", "ISO/IEC 15417",
                "any bytes, text beyond ASCII as ISO/IEC 8859-1; the code sets are chosen by themselves",
                {"Korvex 128"}, {code128, 0, {kGs1}}),
      symbology("code128-inband", "Code 128, code sets in the data", "ISO/IEC 15417",
                "text with > escapes; >G >H >I in front start in code set A, B, C", {">I2024>DKorvex"},
                {code128_inband, 0, {}}),
      symbology("code128-segments", "Code 128, code sets in headers", "ISO/IEC 15417",
                "headers of a code set letter and two digits for the length, then the data",
                {"B06C04Korvex2024", {"--segments", "2"}}, {code128_segments, 0, {kSegments}}),
      symbology("msi", "MSI", "MSI Data", "digits", {"8052"},
                {msi, 0, {check_option({"mod10", "mod10-mod10", "mod11", "mod11-mod10"}), kGap}}),
      symbology("code11", "Code 11", "USD-8", "digits and -", {"123-4567"},
                {code11, 0, {check_option({"c", "ck"}), kGap}}),
      symbology("code93", "Code 93", "AIM USS Code 93", "bytes 0-127", {"Korvex 93"}, {code93, 0, {}}),
  };
}

}  // namespace korvex::cli::families
