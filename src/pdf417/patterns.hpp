// The bar and space patterns that PDF417, MicroPDF417 and the components of composite symbols are made of.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvex::pdf417 {

/// Alternating bars and spaces, a bar first.
struct Pattern {
  std::uint32_t widths = 0;   ///< in modules, four bits each, the last element lowest; zeros in front
  std::uint32_t modules = 0;  ///< the last module lowest, 1 a bar
};

/// The pattern of at most eight elements and 32 modules with the given `widths`.
constexpr Pattern pattern_of(std::uint32_t widths) {
  Pattern pattern{.widths = widths};
  bool bar = true;
  for (int shift = 28; shift >= 0; shift -= 4) {
    const std::uint32_t width = widths >> shift & 0xF;
    if (width == 0) continue;
    pattern.modules = pattern.modules << width | (bar ? (1U << width) - 1 : 0);
    bar = !bar;
  }
  return pattern;
}

inline constexpr std::size_t kCodewords = 929;
inline constexpr std::size_t kClusters = 3;
inline constexpr int kSymbolCharacterModules = 17;
inline constexpr std::size_t kRowAddresses = 52;
inline constexpr int kRowAddressModules = 10;

/// By cluster number / 3, then by codeword. Four bars and four spaces.
extern const std::array<std::array<Pattern, kCodewords>, kClusters> kSymbolCharacters;

/// Row address patterns, numbered from 0. Three bars and three spaces.
extern const std::array<Pattern, kRowAddresses> kSideRowAddresses;  ///< left and right
extern const std::array<Pattern, kRowAddresses> kCentreRowAddresses;

}  // namespace korvex::pdf417
