// QR Code (ISO/IEC 18004): Model 1, Model 2, Micro QR, GS1 QR; rectangular Micro QR (ISO/IEC 23941).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/gs1.hpp"
#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::qr {

enum class SymbolType : std::uint8_t {
  model1,  ///< QR Code Model 1, versions 1 to 40
  model2,  ///< QR Code, versions 1 to 40
  micro,   ///< Micro QR Code, versions 1 to 4 for M1 to M4
  gs1,     ///< GS1 QR Code: Model 2 with FNC1 in first position, element strings in any form
  rmqr,    ///< rectangular Micro QR, versions 1 to 32 for R7x43 to R17x139
};

/// Error correction level. Micro QR M1 has `low` alone, M2 and M3 have `low` and `medium`, M4 all but `high`;
/// rMQR has `medium` and `high`.
enum class Level : std::uint8_t { low, medium, quartile, high };

/// How the characters of a segment are packed.
enum class Mode : std::uint8_t {
  numeric,       ///< digits, ten bits for three
  alphanumeric,  ///< digits, capitals, space and $ % * + - . / : in 11 bits for two
  byte,          ///< any byte, 8 bits
  kanji,         ///< Shift JIS double-byte characters, 13 bits each
};

/// The place of a symbol in a structured-append series.
struct StructuredAppend {
  int index = 1;            ///< 1 to `count`
  int count = 1;            ///< symbols in the series, 1 to 16
  std::uint8_t parity = 0;  ///< the exclusive or of all bytes of the series, see append_parity()
};

/// A second stream of data behind the public one, enciphered with the Data Encryption Standard. Readers that
/// do not know the key stop before it.
struct PrivateData {
  std::span<const std::uint8_t> data = {};  ///< at least one byte
  std::array<std::uint8_t, 8> key = {};     ///< parity bits are not looked at
};

struct Options {
  SymbolType type = SymbolType::model2;
  Level level = Level::medium;
  int version = 0;  ///< 0: the smallest that holds the data; else that version
  std::optional<Mode> mode =
      {};             ///< all data in one segment of this mode; without it the encoder splits the data
  int rmqr_rows = 0;  ///< rMQR: 7, 9, 11, 13, 15 or 17 module rows; 0: the symbol of the fewest modules
  std::optional<StructuredAppend> append = {};   ///< Model 1 and Model 2
  std::optional<PrivateData> private_data = {};  ///< Model 1, Model 2 and GS1
  Dialect dialect = Dialect::standard;
  gs1::Checking gs1_checking = gs1::Checking::strict;  ///< SymbolType::gs1 in Dialect::standard
};

/// Bytes of the data that are packed in one mode.
struct Segment {
  Mode mode;
  int offset;  ///< first byte
  int length;  ///< bytes; a Kanji character has two

  friend bool operator==(const Segment&, const Segment&) = default;
};

struct Symbol {
  ModuleMatrix modules;
  SymbolType type = SymbolType::model2;
  Level level = Level::medium;
  int version = 0;  ///< see version_name()
  int mask = 0;     ///< number of the data mask pattern in the format information; rMQR: always 4
  std::vector<Segment> segments;  ///< of the public data; of GS1 data, of their plain form
};

/// Encodes `data` as one symbol.
///
/// Errors: bad_parameter for options out of range or that do not go together; gs1_fixed_mode for a fixed mode
/// with SymbolType::gs1; bad_data for no data at all, data that a fixed mode cannot pack and GS1 data that
/// gs1::parse() refuses; no_symbol when no version, or not the one asked for, holds the data, or it is more
/// than the encoder takes (7366 characters, 200 segments).
///
/// Dialect::standard chooses the mask of Model 1 and Model 2 by ISO/IEC 18004:2015, 7.8.3.1, all eight
/// counted in full. Dialect::korvex32 draws what QR_Encode draws:
/// - only the three masks with the fewest 2 x 2 squares of one colour are judged further, finder-like
///   patterns are counted in units of any size and not at the left and the top edge, the share of dark
///   modules is rounded;
/// - a pad codeword of four bits, the last data codeword of Micro QR M1 and M3, is cut from 0xEC or 0x11
///   instead of being 0000;
/// - in alphanumeric segments of GS1 QR a "%" of the data stands single, where readers take it for a
///   separator, and the separator 0x1D is left to byte mode;
/// - GS1 data come without brackets, byte 0x1D for FNC1, and are not checked;
/// - data that a fixed mode cannot pack is packed all the same, small letters of alphanumeric mode as
/// capitals.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view data);

/// Encodes `data` as a structured-append series of Model 1 or Model 2 symbols of one version: `symbols` of
/// them (2 to 16), or with 0 as few as hold the data. One symbol that holds everything comes without a
/// structured-append header. The parts are of about equal length and never split a double-byte character.
/// `options.append` must be empty.
///
/// Errors: as encode(); no_symbol also when 16 symbols are too few.
[[nodiscard]] KORVEX_API Result<std::vector<Symbol>> encode_series(const Options& options,
                                                                   std::span<const std::uint8_t> data,
                                                                   int symbols = 0);

/// The parity of a structured-append series: the exclusive or of all its bytes (ISO/IEC 18004:2015, 8.3).
[[nodiscard]] KORVEX_API std::uint8_t append_parity(std::span<const std::uint8_t> data);

/// The name of a version: "7", "M3", "R11x59"; empty for one that the type does not have.
[[nodiscard]] KORVEX_API std::string version_name(SymbolType type, int version);

}  // namespace korvex::qr
