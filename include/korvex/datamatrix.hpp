// Data Matrix ECC 200 (ISO/IEC 16022), square and rectangular.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::datamatrix {

enum class Shape : std::uint8_t { square, rectangle };

/// Which size. Both counts 0: the smallest of the shape. Rows of 8, 12 or 16 with `columns` 0: the narrower
/// of the two rectangles of that height if it holds the data, else the wider. Any other pair must be a size
/// of the standard: 10 x 10 to 144 x 144, or 8 x 18, 8 x 32, 12 x 26, 12 x 36, 16 x 36, 16 x 48.
struct Options {
  int rows = 0;                 ///< modules
  int columns = 0;              ///< modules
  Shape shape = Shape::square;  ///< looked at when both counts are 0
  bool gs1 = false;             ///< GS1 DataMatrix: FNC1 in first place, and byte 0x1D in the data is FNC1
  bool fnc1_escape = false;     ///< ESC (0x1B) and "1" in the data are FNC1, two ESC are one ESC
};

/// Encodation schemes.
enum class Scheme : std::uint8_t {
  ascii,    ///< bytes 0 to 127, two digits in one codeword
  c40,      ///< capitals, digits and space, three in two codewords
  text,     ///< small letters, digits and space, three in two codewords
  x12,      ///< ANSI X12: capitals, digits, space, CR * >, three in two codewords
  edifact,  ///< space to ^, four in three codewords
  base256,  ///< any byte
};

/// A stretch of characters in one scheme. One or two characters at the end of a C40, Text, X12 or EDIFACT
/// segment may stand in ASCII where the symbol ends.
struct Segment {
  Scheme scheme;
  int characters;  ///< an FNC1 counts as one

  friend bool operator==(const Segment&, const Segment&) = default;
};

struct Symbol {
  ModuleMatrix modules;  ///< without quiet zone
  int data_codewords = 0;
  int pad_codewords = 0;  ///< of the data codewords, those behind the message
  int check_codewords = 0;
  std::vector<Segment> segments;  ///< in order, none empty
};

/// Data bytes that the encoder takes at most.
inline constexpr int kMaxDataBytes = 4158;

/// Encodes `data` as one symbol.
///
/// Errors: bad_parameter for a size that does not exist; bad_data for an ESC that starts no escape; no_symbol
/// when the data does not fit the size, or the largest, or is longer than kMaxDataBytes. Both dialects are
/// the same here, and no data at all is a symbol of pads.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view data);

}  // namespace korvex::datamatrix
