// Format and version information with their check bits.
#pragma once

#include <bit>
#include <cstdint>

#include "qr/tables.hpp"

namespace korvex::qr {

/// `data` followed by the remainder of data * x^n by `generator`, n its degree.
constexpr std::uint32_t with_bch(std::uint32_t data, std::uint32_t generator) {
  const int degree = static_cast<int>(std::bit_width(generator)) - 1;
  std::uint32_t remainder = data << degree;
  for (int bit = 31; bit >= degree; --bit) {
    if ((remainder >> bit & 1U) != 0) remainder ^= generator << (bit - degree);
  }
  return data << degree | remainder;
}

inline constexpr std::uint32_t kFormatGenerator = 0x537;    // ISO/IEC 18004:2015, Annex C
inline constexpr std::uint32_t kVersionGenerator = 0x1F25;  // ISO/IEC 18004:2015, Annex D

/// 18 bits. Requires 7 <= version <= 40.
constexpr std::uint32_t version_information(int version) {
  return with_bch(static_cast<std::uint32_t>(version), kVersionGenerator);
}

/// 15 bits, for Model 1, Model 2 and GS1. `mask` is 0 to 7.
constexpr std::uint32_t format_information(SymbolType type, Level level, int mask) {
  constexpr std::uint32_t kModel1Mask = 0x2825;
  constexpr std::uint32_t kModel2Mask = 0x5412;
  const std::uint32_t level_indicator = static_cast<std::uint32_t>(level) ^ 1U;  // L 01, M 00, Q 11, H 10
  return with_bch(level_indicator << 3 | static_cast<std::uint32_t>(mask), kFormatGenerator) ^
         (type == SymbolType::model1 ? kModel1Mask : kModel2Mask);
}

/// 15 bits. `mask` is 0 to 3.
constexpr std::uint32_t micro_format_information(int version, Level level, int mask) {
  constexpr std::uint32_t kMicroMask = 0x4445;
  // M1, M2-L, M2-M, M3-L, M3-M, M4-L, M4-M, M4-Q
  const int symbol_number = version == 1 ? 0 : 2 * version - 3 + static_cast<int>(level);
  return with_bch(static_cast<std::uint32_t>(symbol_number * 4 + mask), kFormatGenerator) ^ kMicroMask;
}

/// 18 bits; the copy beside the sub-pattern has another mask than the one beside the finder pattern.
constexpr std::uint32_t rmqr_format_information(int version, Level level, bool beside_sub_pattern) {
  constexpr std::uint32_t kFinderMask = 0x1FAB2;
  constexpr std::uint32_t kSubPatternMask = 0x20A7B;
  const std::uint32_t level_bit = level == Level::high ? 1 : 0;
  return with_bch(level_bit << 5 | static_cast<std::uint32_t>(version - 1), kVersionGenerator) ^
         (beside_sub_pattern ? kSubPatternMask : kFinderMask);
}

}  // namespace korvex::qr
