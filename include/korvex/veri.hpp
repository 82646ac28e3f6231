// VERI: a square matrix symbol with a solid border, a check value and Reed-Solomon blocks over GF(16).
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "korvex/module_matrix.hpp"
#include "korvex/result.hpp"

namespace korvex::veri {

/// Check bytes in every block of eight bytes.
enum class Correction : std::uint8_t {
  none = 0,  ///< the check value alone: errors are noticed, not corrected
  two = 2,   ///< corrects two wrong 4-bit symbols a block of sixteen
  four = 4,  ///< corrects four
};

/// Modules a side, border included: 3 are too few for any symbol, 92 is the largest.
inline constexpr int kMinSize = 3;
inline constexpr int kMaxSize = 92;

struct Options {
  int size = 0;  ///< modules a side, kMinSize to kMaxSize; 0: the smallest that holds the data
  Correction correction = Correction::four;
};

struct Symbol {
  ModuleMatrix modules;  ///< size x size, border included, without quiet zone
  Correction correction = Correction::none;
  int capacity_bytes =
      0;  ///< data bytes that this size holds; what the data leaves over is filled with zero bytes
};

/// Data bytes that a symbol of `size` modules a side holds; negative when it does not even hold the check
/// value, or there is no such size or correction.
[[nodiscard]] KORVEX_API int capacity_bytes(int size, Correction correction);

/// Encodes `data` as one symbol. A reader gets the data followed by the zero bytes that fill the symbol.
///
/// Errors: bad_parameter for a size or a correction that there is not; no_symbol when the data does not fit
/// into the size asked for, or into the largest.
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data);
[[nodiscard]] KORVEX_API Result<Symbol> encode(const Options& options, std::string_view data);

}  // namespace korvex::veri
