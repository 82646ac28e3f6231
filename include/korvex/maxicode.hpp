// MaxiCode, ISO/IEC 16023: a fixed-size symbol of hexagonal modules around a bull's-eye.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::maxicode {

enum class Mode : std::uint8_t {
  carrier_numeric = 2,       ///< structured carrier message, postal code of up to nine digits
  carrier_alphanumeric = 3,  ///< structured carrier message, postal code of six characters
  standard = 4,              ///< any message
  reader_programming = 6,    ///< as `standard`; the message is for the reader itself
};

struct Options {
  Mode mode = Mode::standard;
  Dialect dialect = Dialect::standard;
  std::string_view postal_code{};  ///< carrier modes: 1 to 9 digits, or 6 capital letters, digits and spaces
  int country_code = 0;            ///< carrier modes: 1 to 999 (ISO 3166-1 numeric)
  int service_class = 0;           ///< carrier modes: 1 to 999
  int position = 1;                ///< structured append: of this symbol, 1 to `total`
  int total = 1;                   ///< structured append: symbols in the series, 1 to 8; 1: none
};

inline constexpr int kRows = 33;
inline constexpr int kColumns = 30;  ///< 29 in odd rows, which stand half a module to the right
inline constexpr int kPrimaryCodewords = 20;
inline constexpr int kCodewords = 144;

struct Symbol {
  /// kRows x kColumns hexagons, dark or light, without the bull's-eye, under which all is light.
  ModuleMatrix modules;
  /// Data and check codewords: 10 and 10 of the primary message, 84 and 40 of the secondary one.
  std::array<std::uint8_t, kCodewords> codewords{};
  /// The code set that each codeword of the message stands in, 'A' to 'E'; '#' for numeric compaction, '>'
  /// for codewords that shift or latch. Series header and pads are left out.
  std::string code_sets;
};

/// Encodes `message`, bytes 1 to 255. 93 codewords hold it in modes 4 and 6, 84 in the carrier modes; a
/// series header takes two of them.
///
/// Errors: bad_parameter for options out of range; bad_data for a postal code or a byte 0 that cannot be
/// encoded; no_symbol for a message that does not fit. Dialect::korvex32 draws what MAXI_Encode draws: "!" is
/// codeword 33 of code set B, which readers take for a pad, byte 31 stands as it is in every code set, where
/// it announces nine digits, postal codes are not looked at but for the six characters of mode 3 (in mode 2
/// the number at their start counts, modulo 2^30), and a position may be beyond `total`, up to 8.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> message);
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view message);

/// The symbol as pixels, 200 rows of 224, seven pixels from module to module: what MAXI_Encode paints,
/// bull's-eye included. Of a matrix of another size than Symbol::modules, what lies inside that size counts.
[[nodiscard]] KORVEX_API ModuleMatrix raster(const ModuleMatrix& modules);

}  // namespace korvex::maxicode
