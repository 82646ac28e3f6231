// PDF417 and truncated PDF417 (ISO/IEC 15438), MicroPDF417 (ISO/IEC 24728).
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::pdf417 {

enum class Kind : std::uint8_t {
  normal,
  truncated,  ///< without right row indicator and stop pattern: for places where no damage is expected
  micro,      ///< MicroPDF417: 34 sizes, each with its own error correction
};

struct Options {
  Kind kind = Kind::normal;
  int columns = 0;         ///< of data codewords, 1 to 30 (micro 1 to 4); 0: chosen
  int rows = 0;            ///< 3 to 90 (micro: see MicroSize); 0: chosen
  int ecc_level = 2;       ///< 0 to 8: 2^(level + 1) check codewords; not read for micro
  bool byte_only = false;  ///< everything in byte compaction, text and digits too
  Dialect dialect = Dialect::standard;
};

struct Symbol {
  /// A row of the matrix is a row of the symbol, to be painted several modules high: see row_height().
  ModuleMatrix modules;
  int columns = 0;         ///< of data codewords; rows are those of `modules`
  int data_codewords = 0;  ///< length descriptor (not in micro) and message
  int pad_codewords = 0;
  int check_codewords = 0;
};

/// Encodes `data` as one symbol, without quiet zone.
///
/// Both counts left to 0: PDF417 takes the shape whose height, with rows of 3 modules, is nearest to half its
/// width; micro takes the size of the smallest area. One of them given: the other follows from the data.
/// Errors: bad_parameter for options out of range, more than 928 codewords (columns x rows) and pairs that
/// MicroPDF417 does not have; no_symbol when the check codewords leave no room for data, or the data does not
/// fit. Any bytes are allowed, and none at all.
///
/// Dialect::korvex32 draws what PDF_Encode draws: the pads of MicroPDF417 are a cycle of eight codewords, 900
/// and pairs of sub-mode latches, where the standard dialect has 900 alone. Nothing else differs.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view data);

/// The same symbol as text, from which its rows can be drawn: a line a row, the widths in modules of bars and
/// spaces in turn, a bar first, one digit each. Lines end with CR LF. Errors as those of encode().
[[nodiscard]] KORVEX_API Result<std::string> row_pattern_text(const Options& options,
                                                              std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<std::string> row_pattern_text(const Options& options, std::string_view data);

enum class Mode : std::uint8_t { text, byte, numeric };

/// A stretch of the data and the codewords that it became, its latch or shift included.
struct Run {
  Mode mode = Mode::text;
  int first_byte = 0;  ///< counted from 0
  int byte_count = 0;
  int first_codeword = 0;  ///< in Codewords::values
  int codeword_count = 0;
};

struct Codewords {
  /// In the symbol's order: length descriptor (not in micro), the runs one behind the other, pads, checks.
  std::vector<std::uint16_t> values;
  std::vector<Run> runs;
  int pad_codewords = 0;
  int check_codewords = 0;
};

/// The codewords of the same symbol by mode. Errors as those of encode().
[[nodiscard]] KORVEX_API Result<Codewords> codewords(const Options& options,
                                                     std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<Codewords> codewords(const Options& options, std::string_view data);

/// A size of MicroPDF417; it holds columns x rows - check_codewords data codewords.
struct MicroSize {
  int columns = 0;
  int rows = 0;
  int check_codewords = 0;
};
/// All 34, by columns, then by rows.
[[nodiscard]] KORVEX_API std::span<const MicroSize> micro_sizes();

/// Modules that a row should be high, and that the quiet zone should be wide on every side.
[[nodiscard]] KORVEX_API int row_height(Kind kind);
[[nodiscard]] KORVEX_API int quiet_zone(Kind kind);

}  // namespace korvex::pdf417
