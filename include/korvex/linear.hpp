// Linear symbols: Codabar, Code 39, the 2 of 5 codes, EAN/UPC, Code 128, MSI, Code 11, Code 93.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/result.hpp"

namespace korvex::linear {

/// What a symbol is made of, and what data it takes.
///
/// Code 128 with code sets chosen in the data:
/// - code128_inband: the data start in set A, B or C with ">G", ">H" or ">I" before all else, in B without.
///   Later ">C" ">D" ">E" change to set C, B, A, ">F" is FNC1 and ">J" the character ">". In sets A and B
///   ">" before space to B gives values 64 to 98: in A the control characters, then FNC3, FNC2 and Shift.
/// - code128_segments: as many headers as Options::segments says, each a letter A, B or C and two digits
///   for the characters of its segment, neighbours in different sets, at most 30 characters in all; then
///   the data. In sets A and B "`a" to "`d" are FNC1 to FNC4; in C "?1" is FNC1 and counts as two.
enum class Symbology : std::uint8_t {
  codabar,           ///< 0-9 - $ : / . + between letters A-D (or T N * E); data without letters gets A and A
  code39,            ///< ISO/IEC 16388; the start and stop characters * are added when the data lacks them
  itf,               ///< Interleaved 2 of 5, ISO/IEC 16390: digits; an odd number gets a leading 0
  ean13,             ///< ISO/IEC 15420: 12 digits, or 13 with their check digit
  upca,              ///< 11 digits, or 12 with their check digit
  ean8,              ///< 7 digits, or 8 with their check digit
  upce,              ///< number system 0: 6 digits; 7 with a leading 0 or 8 with the check digit too
  addon,             ///< EAN/UPC add-on: 2 or 5 digits
  industrial25,      ///< Industrial 2 of 5: digits
  code25_3bar,       ///< two-of-five code with three bars a digit: digits
  sscc18,            ///< GS1-128 with AI 00: 17 digits, or 18 with their check digit
  code128,           ///< ISO/IEC 15417: bytes 0-255 (ISO/IEC 8859-1 through FNC4), fewest symbol characters
  code128_inband,    ///< Code 128, code sets changed by escapes in the data
  code128_segments,  ///< Code 128, code sets and lengths in headers before the data
  msi,               ///< digits
  code11,            ///< digits and "-"
  code93,            ///< AIM USS Code 93, full ASCII: bytes 0-127
};

/// Widths in modules of the elements of Codabar, Code 39 and the 2 of 5 codes; others have one width.
enum class Ratio : std::uint8_t {
  two_to_one,    ///< narrow 1, wide 2
  three_to_one,  ///< narrow 1, wide 3
  five_to_two,   ///< narrow 2, wide 5
};

/// Widths in modules chosen one by one; `narrow_space` is also the gap between characters. Each is 1 to 99.
struct ElementWidths {
  int narrow_space = 1;
  int narrow_bar = 1;
  int wide_space = 3;
  int wide_bar = 3;
};

/// Check characters that a symbology offers but does not demand; those that it demands are always there.
enum class CheckCharacters : std::uint8_t {
  none,         ///< the data stands alone
  mod10,        ///< MSI: Luhn; 2 of 5 codes: weights 3 and 1
  mod10_mod10,  ///< MSI: two Luhn digits
  mod11,        ///< MSI: weights 2 to 7 (a remainder that needs a 10 is refused)
  mod11_mod10,  ///< MSI: mod11, then Luhn
  mod43,        ///< Code 39
  mod16,        ///< Codabar
  one,          ///< Code 11: C
  two,          ///< Code 11: C and K
};

struct Options {
  Symbology symbology = Symbology::code128;
  Dialect dialect = Dialect::standard;
  Ratio ratio = Ratio::three_to_one;
  std::optional<ElementWidths> widths = std::nullopt;  ///< in place of `ratio`
  CheckCharacters check = CheckCharacters::none;
  bool gs1 = false;  ///< code128: FNC1 first (GS1-128), byte 0x1D in the data is FNC1, no bytes above 127
  int segments = 0;  ///< code128_segments: headers at the start of the data
};

/// Modules of a linear symbol, from left to right; true is a bar. Made of 32-bit words, module 0 in the most
/// significant bit of the first; bits past the last module are 0.
class ModuleRow {
 public:
  ModuleRow() = default;
  ModuleRow(std::vector<std::uint32_t> words, int module_count)
      : words_(std::move(words)), module_count_(module_count) {}

  [[nodiscard]] int size() const { return module_count_; }
  /// Requires 0 <= module < size().
  [[nodiscard]] bool bar(int module) const {
    return (words_[static_cast<std::size_t>(module / 32)] >> (31 - module % 32) & 1U) != 0;
  }
  /// At least size() / 32 rounded up.
  [[nodiscard]] std::span<const std::uint32_t> words() const { return words_; }

 private:
  std::vector<std::uint32_t> words_;
  int module_count_ = 0;
};

struct Symbol {
  ModuleRow bars;
  ModuleRow guards;  ///< as long as `bars`, true where a guard bar of EAN-13, UPC-A, EAN-8 or UPC-E stands;
                     ///< else empty
  /// Human readable text in UTF-8, with the check characters that are part of the data; control characters
  /// are blanks, function characters are left out.
  std::string text;
  /// Sizes of the groups that `text` falls into beside and under the bars (EAN-13: 1, 6, 6;
  /// UPC-A: 1, 5, 5, 1; EAN-8: 0, 4, 4; UPC-E: 1, 6, 1; SSCC-18: 4, 1, 7, 9, 1); all 0: one group.
  std::array<std::uint16_t, 5> text_groups{};
};

/// Encodes `data`, at most 512 bytes, as one linear symbol of at most 501 symbol characters (start and check
/// characters included) and 5984 modules, without quiet zones.
///
/// Errors: bad_data for a character or a length that the symbology does not allow, no data at all, or a
/// supplied check digit that is wrong (EAN/UPC, SSCC-18); no_symbol for data too long to hold; bad_parameter
/// for options out of range or that the symbology does not offer.
///
/// Dialect::korvex32 draws what Korvex_Bit draws:
/// - MSI has a gap between its characters, and Code 11 one of two modules with the ratio 5:2;
/// - Codabar and Code 39 data bring their own start and stop characters; Codabar may hold blanks;
/// - EAN/UPC check digits that are supplied stand unverified, 11 digits for EAN-13 are a UPC-A number,
///   and the text of an EAN-13 symbol that begins with 0 is that of UPC-A;
/// - UPC-E takes 6 digits and SSCC-18 takes 17, without check digit;
/// - in Code 128 with chosen code sets a lone digit in set C becomes that digit and 0, and data after
///   the last segment is left out; the standard dialect refuses both;
/// - symbols without data are drawn where the symbology has them.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view data);

/// Light modules that the symbology's standard asks for left and right of the symbol. Widths that encode()
/// refuses count as the nearest that it takes.
struct QuietZones {
  int left = 10;
  int right = 10;
};
[[nodiscard]] KORVEX_API QuietZones quiet_zones(const Options& options);

}  // namespace korvex::linear
