// GS1 DataBar, and EAN/UPC or GS1-128, alone or as the linear component of a GS1 composite symbol.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::composite {

/// The linear component, and with it the two-dimensional component that can stand above it.
enum class Symbology : std::uint8_t {
  databar,               ///< GS1 DataBar Omnidirectional: up to 13 digits; CC-A or CC-B of 4 columns
  databar_truncated,     ///< the same, 13 modules high
  databar_stacked,       ///< in two rows; CC-A or CC-B of 2 columns
  databar_stacked_omni,  ///< in two rows for omnidirectional scanning; CC-A or CC-B of 2 columns
  databar_limited,       ///< up to 13 digits, at most 1999999999999; CC-A or CC-B of 3 columns
  databar_expanded,      ///< an element string; CC-A or CC-B of 4 columns
  ean13,                 ///< up to 12 digits; CC-A or CC-B of 4 columns
  upce,                  ///< the UPC-A number, up to 11 digits, if zeros can be suppressed; CC-A or CC-B of 2
  upca,                  ///< up to 11 digits; CC-A or CC-B of 4 columns
  ean8,                  ///< up to 7 digits; CC-A or CC-B of 3 columns
  gs1_128,               ///< up to 48 bytes of element strings; CC-A or CC-B of 4 columns
  gs1_128_cc_c,          ///< the same with a CC-C as wide as the linear component
};

struct Options {
  Symbology symbology = Symbology::databar;
  Dialect dialect = Dialect::standard;
  int segments_per_row =
      22;                  ///< DataBar Expanded: symbol characters a row, at least 1; with a 2D component 4
  int linear_height = 50;  ///< GS1-128: modules, 1 to 32767
};

/// The two-dimensional component above the linear one (ISO/IEC 24723).
enum class Component : std::uint8_t { none, cc_a, cc_b, cc_c };

struct Symbol {
  ModuleMatrix modules;  ///< one row of modules for each row of the symbol, the top one first
  std::vector<std::uint16_t> row_heights;  ///< of these rows, in modules
  Component component = Component::none;
  int component_columns = 0;  ///< data columns of the 2D component
  int component_rows = 0;     ///< the first this many rows are the 2D component
  /// DataBar Expanded in Dialect::korvex32 with an odd number of segments a row: when not 0, the last column
  /// of `modules` belongs to this many rows at the bottom alone and does not count for the symbol's width.
  int overhanging_rows = 0;
};

/// Encodes `data` as one symbol. There is a 2D component when `data` has a vertical bar: what stands before
/// the bar is the linear component's text, what follows it the 2D component's.
///
/// Element strings come in one of two forms. Plain: application identifiers and data without parentheses, `#`
/// for FNC1 after a field of variable length that another one follows; item numbers of DataBar and EAN/UPC
/// are digits without their check digit, zeros in front may be left out. Bracketed, as in
/// (01)09501101530003(17)261231(10)AB-123: item numbers bring their check digit, which is verified like the
/// lengths of fields of fixed length, and FNC1 is put where it belongs.
///
/// Errors: bad_parameter for options out of range, bad_data for characters, lengths and numbers that are not
/// allowed, no_symbol for data that no symbol of the kind holds.
///
/// Dialect::standard draws what ISO/IEC 24724 and 24723 say and refuses what no reader would give back: EAN-8
/// numbers beyond seven digits, UPC-E numbers of another number system than 0, wrong check digits and
/// impossible dates where the symbol implies them, GS1-128 text that would be cut at 43 symbol characters, an
/// odd number of segments a row unless one row holds them all.
///
/// Dialect::korvex32 takes the plain form only and draws what CC_Encode draws:
/// - separator rows alternate over any three neighbouring elements of 13 modules, finder pattern or not;
/// - DataBar Expanded holds AI 01 and at most 74 digits, or 41 characters when not all are digits;
/// - a 2D component whose text begins with AI 10 is encoded by the general method, and one that begins with
///   AI 90 and a number with a zero in front loses the zero;
/// - a CC-C leaves one module of its linear component's width free; it has fewer columns when it would be
///   flat, and keeps them when it grows again;
/// - a zero byte ends the data.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view data);

/// What was chosen on the way to a symbol.
struct Details {
  std::string linear_text;  ///< what the linear component says, check digit included, `#` for FNC1
  std::vector<int>
      linear_values;             ///< symbol character values of DataBar and GS1-128, check and start included
  std::string method;            ///< encodation method of DataBar Expanded, in words; else empty
  std::string component_method;  ///< that of the 2D component, in words; empty without one
  int component_bits = 0;        ///< before padding
  std::vector<std::uint16_t> codewords;  ///< of the 2D component, check codewords included
  int check_codewords = 0;               ///< at the end of `codewords`
};

/// The details of what encode() draws, or its error.
[[nodiscard]] KORVEX_API Result<Details> explain(const Options& options, std::string_view data);

/// Light modules that the symbology's standard asks for left and right of the symbol as encode() returns it:
/// EAN/UPC and GS1-128 bring some of their own.
struct QuietZones {
  int left = 0;
  int right = 0;
};
[[nodiscard]] KORVEX_API QuietZones quiet_zones(const Options& options);

}  // namespace korvex::composite
