// PDF417, truncated PDF417 and MicroPDF417.
#include "korvex/pdf417.hpp"

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "families/families.hpp"

namespace korvex::cli::families {
namespace {

using pdf417::Kind;

const Option kColumns{"--columns", "N", "columns of data codewords, 1 to 30; chosen when not given"};
const Option kRows{"--rows", "N", "rows, 3 to 90; chosen when not given"};
const Option kLevel{"--level", "N", "error correction level, 0 to 8: 2 to 512 check codewords", {}, "2"};
const Option kMicroColumns{"--columns", "N", "columns of data codewords, 1 to 4; chosen when not given"};
const Option kMicroRows{"--rows", "N",
                        "rows, 4 to 44, not each with each number of columns; chosen when not given"};
const Option kByteOnly{"--byte-only", "", "everything in byte compaction, text and digits too"};
const Option kRowHeight{
    "--row-height", "LENGTH", "height of a row in modules, or in millimetres as in 1mm", {}, "3"};
const Option kMicroRowHeight{
    "--row-height", "LENGTH", "height of a row in modules, or in millimetres as in 1mm", {}, "2"};

const Option kDialect{"--dialect",
                      "",
                      "the published form, or what PDF_Encode draws to the module",
                      {"standard", "korvex32"},
                      "standard"};

constexpr int kAny = 9999;  // the library says what is out of range, and what would go with the other options

pdf417::Options options_of(Kind kind, const OptionValues& values) {
  pdf417::Options options;
  options.kind = kind;
  options.columns = values.number(kColumns, 0, kAny).value_or(0);
  options.rows = values.number(kRows, 0, kAny).value_or(0);
  if (kind != Kind::micro) {
    options.ecc_level = values.number(kLevel, 0, kAny).value_or(0);
  } else if (values.text(kDialect) == "korvex32") {
    options.dialect = Dialect::korvex32;
  }
  options.byte_only = values.flag(kByteOnly);
  return options;
}

std::string_view name_of(pdf417::Mode mode) {
  switch (mode) {
    case pdf417::Mode::text:
      return "text";
    case pdf417::Mode::byte:
      return "byte";
    case pdf417::Mode::numeric:
      break;
  }
  return "numeric";
}

std::string counted(int count, std::string_view what) {
  return std::to_string(count) + " " + std::string(what) + (count == 1 ? "" : "s");
}

std::string listed(const std::vector<std::uint16_t>& codewords, int first, int count) {
  std::string list;
  for (int i = first; i < first + count; ++i)
    list += " " + std::to_string(codewords[static_cast<std::size_t>(i)]);
  return list;
}

/// "bytes 1 to 6 in text compaction, 4 codewords: 453 178 121 239".
std::string note_of(const pdf417::Run& run, const pdf417::Codewords& codewords) {
  const int last = run.first_byte + run.byte_count;
  std::string note = run.byte_count == 1 ? "byte " : "bytes " + std::to_string(run.first_byte + 1) + " to ";
  note += std::to_string(last) + " in ";
  note += name_of(run.mode);
  note += " compaction, " + counted(run.codeword_count, "codeword") + ":";
  return note + listed(codewords.values, run.first_codeword, run.codeword_count);
}

std::string size_note(const pdf417::Symbol& symbol) {
  return counted(symbol.columns, "column") + ", " + counted(symbol.modules.rows(), "row") + ": " +
         counted(symbol.data_codewords, "codeword") + " of data, " + counted(symbol.pad_codewords, "pad") +
         ", " + counted(symbol.check_codewords, "check codeword");
}

/// What is in the symbol, codeword by codeword, in its order.
std::vector<std::string> notes_of(const pdf417::Symbol& symbol, const pdf417::Codewords& codewords,
                                  Kind kind) {
  std::vector<std::string> notes = {size_note(symbol)};
  if (kind != Kind::micro) notes.push_back("length descriptor:" + listed(codewords.values, 0, 1));
  for (const pdf417::Run& run : codewords.runs) notes.push_back(note_of(run, codewords));
  const int checks_at = static_cast<int>(codewords.values.size()) - codewords.check_codewords;
  if (codewords.pad_codewords > 0) {
    const int pads_at = checks_at - codewords.pad_codewords;
    notes.push_back("pads:" + listed(codewords.values, pads_at, codewords.pad_codewords));
  }
  notes.push_back("check codewords:" + listed(codewords.values, checks_at, codewords.check_codewords));
  return notes;
}

Result<Drawing> draw(Kind kind, const Option& row_height, const DrawRequest& request) {
  const pdf417::Options options = options_of(kind, request.options);
  Result<pdf417::Symbol> symbol = pdf417::encode(options, request.data);
  if (!symbol) return symbol.error();
  const Result<pdf417::Codewords> codewords = pdf417::codewords(options, request.data);
  if (!codewords) return codewords.error();

  Drawing drawing;
  drawing.notes = notes_of(*symbol, *codewords, kind);
  Picture picture;
  picture.modules = std::move(symbol).value().modules;
  const double height =
      length_in_modules(row_height.name, request.options.text(row_height).value_or(""), request.module);
  picture.row_heights.assign(static_cast<std::size_t>(picture.modules.rows()), height);
  const double quiet = pdf417::quiet_zone(kind);
  picture.quiet_zone = {quiet, quiet, quiet, quiet};
  drawing.pictures.push_back(std::move(picture));
  return drawing;
}

Symbology symbology(std::string_view name, std::string_view title, std::string_view standard, Kind kind) {
  const bool micro = kind == Kind::micro;
  const Option& row_height = micro ? kMicroRowHeight : kRowHeight;
  std::vector<Option> options =
      micro ? std::vector{kMicroColumns, kMicroRows, kDialect} : std::vector{kColumns, kRows, kLevel};
  options.insert(options.end(), {kByteOnly, row_height});
  return {name,
          title,
          standard,
          micro ? "any bytes, up to 366 digits, 250 letters or 150 others"
                : "any bytes, up to 2710 digits, 1850 letters or 1108 others",
          {"Korvex 0123456789"},
          std::move(options),
          [kind, &row_height](const DrawRequest& request) { return draw(kind, row_height, request); }};
}

}  // namespace

std::vector<Symbology> pdf417() {
  return {
      symbology("pdf417", "PDF417", "ISO/IEC 15438", Kind::normal),
      symbology("pdf417-truncated", "Truncated PDF417", "ISO/IEC 15438", Kind::truncated),
      symbology("micropdf417", "MicroPDF417", "ISO/IEC 24728", Kind::micro),
  };
}

}  // namespace korvex::cli::families
