// GS1 DataBar, and EAN/UPC or GS1-128, alone or as the linear component of a GS1 composite symbol.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/gs1.hpp"
#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::composite {

/// The linear component, and with it the two-dimensional component that can stand above it.
enum class Symbology : std::uint8_t {
  databar,               ///< GS1 DataBar Omnidirectional: 13 digits; CC-A or CC-B of 4 columns
  databar_truncated,     ///< the same, 13 modules high
  databar_stacked,       ///< in two rows; CC-A or CC-B of 2 columns
  databar_stacked_omni,  ///< in two rows for omnidirectional scanning; CC-A or CC-B of 2 columns
  databar_limited,       ///< 13 digits, at most 1999999999999; CC-A or CC-B of 3 columns
  databar_expanded,      ///< an element string; CC-A or CC-B of 4 columns
  ean13,                 ///< 12 digits; CC-A or CC-B of 4 columns
  upce,                  ///< 6 digits, or the UPC-A number of 11 if zeros can be left out; CC-A or CC-B of 2
  upca,                  ///< 11 digits; CC-A or CC-B of 4 columns
  ean8,                  ///< 7 digits; CC-A or CC-B of 3 columns
  gs1_128,               ///< up to 48 bytes of element strings; CC-A or CC-B of 4 columns
  gs1_128_cc_c,          ///< the same with a CC-C as wide as the linear component
};

struct Options {
  Symbology symbology = Symbology::databar;
  Dialect dialect = Dialect::standard;
  int segments_per_row =
      22;                  ///< DataBar Expanded: symbol characters a row, at least 1; with a 2D component 4
  int linear_height = 50;  ///< GS1-128: modules, 1 to 32767
  gs1::Checking gs1_checking = gs1::Checking::strict;  ///< of element strings, in Dialect::standard
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
/// Element strings are read and checked as gs1::parse() says, with Options::gs1_checking; item numbers come
/// with or without their check digit, or as (01) and 14 digits in any of the forms of element strings, and
/// UPC-E also as the 7 digits with the number system 0 in front and the 8 with the check digit behind. A
/// check digit that is given must be right, whatever Options::gs1_checking says: the symbol has no other.
///
/// Errors: bad_parameter for options out of range, bad_data for what is wrong with the data, no_symbol for
/// data that no symbol of the kind holds.
///
/// Dialect::standard draws what ISO/IEC 24724 and 24723 say and refuses what no reader would give back: UPC-E
/// numbers of another number system than 0, impossible dates where the symbol implies them, GS1-128 text that
/// would be cut at 43 symbol characters, an odd number of segments a row unless one row holds them all.
///
/// Dialect::korvex32 draws what CC_Encode draws:
/// - element strings come without brackets, `#` for FNC1 where one is needed, and are not checked; item
/// numbers
///   are up to as many digits as the symbol has without the check digit, and get zeros in front;
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
  std::vector<std::string> warnings;     ///< gs1::Checking::lenient: what is wrong with the element strings
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
