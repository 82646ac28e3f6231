// MaxiCode: hexagons around a bull's-eye.
#include "korvex/maxicode.hpp"

#include <algorithm>
#include <numbers>
#include <string>
#include <utility>
#include <vector>

#include "failure.hpp"
#include "families/families.hpp"

namespace korvex::cli::families {
namespace {

using maxicode::Mode;

// ISO/IEC 16023: the distance of two modules side by side, and the radii of the dark rings, in millimetres.
constexpr double kModule = 0.88;
constexpr double kRadii[][2] = {{0.51, 1.18}, {1.86, 2.53}, {3.20, 3.87}};
constexpr double kRowPitch = std::numbers::sqrt3 / 2;     // modules
constexpr double kTopToMiddle = std::numbers::inv_sqrt3;  // of a row
constexpr int kPixelsPerModule = 7;                       // of korvex::maxicode::raster()
constexpr double kQuietZone = 1;
constexpr int kMiddleRow = 16;
constexpr int kMiddleColumn = 14;

const Option kMode{
    "--mode",
    "",
    "2 and 3: structured carrier message; 4: any; 6: for the reader itself; auto: 2 or 3 with a "
    "postal code, else 4",
    {"auto", "2", "3", "4", "6"},
    "auto"};
const Option kPostalCode{"--postal-code", "TEXT",
                         "up to 9 digits (mode 2), or 6 capitals, digits and spaces (mode 3)"};
const Option kCountry{"--country", "N", "country of the postal code, 1 to 999 (ISO 3166-1)"};
const Option kService{"--service", "N", "the carrier's class of service, 1 to 999"};
const Option kPosition{"--position", "N", "of this symbol in a series", {}, "1"};
const Option kTotal{"--total", "N", "symbols in the series, 1 to 8", {}, "1"};
const Option kDialect{"--dialect",
                      "",
                      "the published form, or what MAXI_Encode draws to the module",
                      {"standard", "korvex32"},
                      "standard"};

Mode mode_of(const OptionValues& values, std::string_view postal_code) {
  const std::string mode = values.text(kMode).value_or("auto");
  if (mode != "auto") return static_cast<Mode>(mode.front() - '0');
  if (postal_code.empty()) return Mode::standard;
  const bool digits = std::ranges::all_of(postal_code, [](char c) { return c >= '0' && c <= '9'; });
  return digits ? Mode::carrier_numeric : Mode::carrier_alphanumeric;
}

Point middle_of(int row, int column) {
  return {column + (row % 2 != 0 ? 1.0 : 0.5), kTopToMiddle + row * kRowPitch};
}

Picture picture_of(const maxicode::Symbol& symbol) {
  Shapes shapes;
  shapes.width = maxicode::kColumns;
  shapes.height = 2 * kTopToMiddle + (maxicode::kRows - 1) * kRowPitch;
  for (int row = 0; row < maxicode::kRows; ++row) {
    for (int column = 0; column < maxicode::kColumns; ++column) {
      if (symbol.modules.dark(row, column)) shapes.hexagons.push_back(middle_of(row, column));
    }
  }
  for (const auto& [inner, outer] : kRadii) {
    shapes.rings.push_back({middle_of(kMiddleRow, kMiddleColumn), inner / kModule, outer / kModule});
  }
  shapes.pixels = maxicode::raster(symbol.modules);
  shapes.pixels_per_module = kPixelsPerModule;

  Picture picture;
  picture.modules = symbol.modules;
  picture.row_heights.assign(maxicode::kRows, 1);
  picture.shapes = std::move(shapes);
  picture.quiet_zone = {kQuietZone, kQuietZone, kQuietZone, kQuietZone};
  return picture;
}

std::vector<std::string> notes_of(Mode mode, const maxicode::Symbol& symbol) {
  std::string codewords;
  for (const std::uint8_t codeword : symbol.codewords) codewords += " " + std::to_string(codeword);
  return {"mode " + std::to_string(static_cast<int>(mode)) + ", code sets of the message's codewords " +
              (symbol.code_sets.empty() ? "none" : symbol.code_sets) + " (# digits, > shifts and latches)",
          "codewords" + codewords};
}

Result<Drawing> draw(const DrawRequest& request) {
  const std::string postal_code = request.options.text(kPostalCode).value_or("");
  maxicode::Options options;
  options.mode = mode_of(request.options, postal_code);
  options.dialect = request.options.text(kDialect) == "korvex32" ? Dialect::korvex32 : Dialect::standard;
  options.postal_code = postal_code;
  options.country_code = request.options.number(kCountry, 1, 999).value_or(0);
  options.service_class = request.options.number(kService, 1, 999).value_or(0);
  options.position = request.options.number(kPosition, 1, 8).value_or(1);
  options.total = request.options.number(kTotal, 1, 8).value_or(1);
  const bool is_carrier = options.mode == Mode::carrier_numeric || options.mode == Mode::carrier_alphanumeric;
  if (is_carrier && (postal_code.empty() || options.country_code == 0 || options.service_class == 0)) {
    throw UsageError("A structured carrier message takes --postal-code, --country and --service together.");
  }
  if (!is_carrier && (!postal_code.empty() || options.country_code != 0 || options.service_class != 0)) {
    throw UsageError(
        "--postal-code, --country and --service belong to a structured carrier message, mode 2 or 3.");
  }
  const Result<maxicode::Symbol> symbol = maxicode::encode(options, request.data);
  if (!symbol) return symbol.error();
  return Drawing{{picture_of(*symbol)}, notes_of(options.mode, *symbol)};
}

}  // namespace

std::vector<Symbology> maxicode() {
  return {{"maxicode",
           "MaxiCode",
           "ISO/IEC 16023",
           "any bytes, up to 138 digits or 93 capitals",
           {"[)>{RS}01{GS}96KORVEX{GS}1Z00004951{RS}{EOT}",
            {"--escapes", "--postal-code", "152382802", "--country", "840", "--service", "1"}},
           {kMode, kPostalCode, kCountry, kService, kPosition, kTotal, kDialect},
           draw,
           UsualModule{kPixelsPerModule, kModule}}};
}

}  // namespace korvex::cli::families
