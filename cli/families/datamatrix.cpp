// Data Matrix ECC 200.
#include "korvex/datamatrix.hpp"

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "failure.hpp"
#include "families/families.hpp"
#include "families/gs1_data.hpp"
#include "words.hpp"

namespace korvex::cli::families {
namespace {

constexpr double kQuietZone = 1;  // modules (ISO/IEC 16022)

const Option kSize{"--size", "ROWSxCOLUMNS",
                   "such as 26x26 or 12x36; the smallest that holds the data when not given"};
const Option kRectangle{"--rect", "", "the smallest rectangle instead of the smallest square"};
const Option kGs1 = gs1_option(
    "GS1 DataMatrix: element strings such as (01)09501101530003(10)AB; lenient draws those that break the "
    "rules of GS1 with a warning");

/// "26x26" in rows and columns.
void read_size(const std::string& text, datamatrix::Options& options) {
  constexpr int kMost = 999;  // the library says which sizes there are
  const std::size_t cross = text.find_first_of("xX");
  if (cross == std::string::npos) {
    throw UsageError("--size takes rows and columns, such as 26x26; " + printable(text) + " was given.");
  }
  options.rows = whole_number(kSize.name, std::string_view(text).substr(0, cross), 1, kMost);
  options.columns = whole_number(kSize.name, std::string_view(text).substr(cross + 1), 1, kMost);
}

std::string_view name_of(datamatrix::Scheme scheme) {
  constexpr std::array<std::string_view, 6> kNames = {"ASCII", "C40", "Text", "X12", "EDIFACT", "Base 256"};
  return kNames[static_cast<std::size_t>(scheme)];
}

std::vector<std::string> notes_of(const datamatrix::Symbol& symbol) {
  std::vector<std::string> notes = {std::to_string(symbol.modules.rows()) + " rows x " +
                                    std::to_string(symbol.modules.columns()) + " columns, " +
                                    std::to_string(symbol.data_codewords) + " data codewords with " +
                                    std::to_string(symbol.pad_codewords) + " pads, " +
                                    std::to_string(symbol.check_codewords) + " check codewords"};
  std::string schemes;
  for (const auto& [scheme, characters] : symbol.segments) {
    schemes +=
        (schemes.empty() ? "" : ", ") + std::string(name_of(scheme)) + " " + std::to_string(characters);
  }
  notes.push_back("characters by encodation scheme: " + (schemes.empty() ? "none" : schemes));
  return notes;
}

Result<Drawing> draw(const DrawRequest& request) {
  datamatrix::Options options;
  if (const auto size = request.options.text(kSize)) read_size(*size, options);
  if (request.options.flag(kRectangle)) {
    if (options.rows != 0) throw UsageError("--size says what the shape is; --rect does not go with it.");
    options.shape = datamatrix::Shape::rectangle;
  }
  options.gs1 = has_gs1(request.options);
  options.gs1_checking = gs1_checking(request.options);
  const Result<datamatrix::Symbol> symbol = datamatrix::encode(options, request.data);
  if (!symbol) return symbol.error();

  Picture picture;
  picture.modules = symbol->modules;
  picture.row_heights.assign(static_cast<std::size_t>(symbol->modules.rows()), 1);
  picture.quiet_zone = {kQuietZone, kQuietZone, kQuietZone, kQuietZone};
  return Drawing{{std::move(picture)},
                 notes_of(*symbol),
                 options.gs1 ? gs1_warnings(request.data, options.gs1_checking) : std::vector<std::string>()};
}

}  // namespace

std::vector<Symbology> datamatrix() {
  return {{"datamatrix",
           "Data Matrix",
           "ISO/IEC 16022",
           "any bytes, up to 3116 digits, 2335 letters or 1556 others",
           {"KORVEX Data Matrix 0123456789"},
           {kSize, kRectangle, kGs1},
           draw}};
}

}  // namespace korvex::cli::families
