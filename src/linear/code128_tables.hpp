// Code 128 (ISO/IEC 15417): symbol character patterns, and the values with a name.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "linear/bar_writer.hpp"

namespace korvex::linear::code128 {

enum class Set : std::uint8_t { a, b, c };

inline constexpr int kFnc3 = 96;
inline constexpr int kFnc2 = 97;
inline constexpr int kShift = 98;
inline constexpr int kCodeC = 99;
inline constexpr int kCodeB = 100;
inline constexpr int kCodeA = 101;
inline constexpr int kFnc1 = 102;
inline constexpr int kStartA = 103;
inline constexpr int kStartB = 104;
inline constexpr int kStartC = 105;
inline constexpr int kStop = 106;

inline constexpr int start_value(Set set) {
  return kStartA + static_cast<int>(set);
}
inline constexpr int latch_value(Set set) {
  return kCodeA - static_cast<int>(set);
}
/// In sets A and B the value that would change to the own set is FNC4.
inline constexpr int fnc4_value(Set set) {
  return latch_value(set);
}

inline constexpr std::uint8_t kGroupSeparator = 0x1D;  // stands for FNC1 in GS1 data

inline constexpr int kModulesPerCharacter = 11;
inline constexpr Pattern kStopPattern{0b1100011101011, 13};  // value 106 and its termination bar

// ISO/IEC 15417, Table 1: widths of bar, space, bar, space, bar, space as six decimal digits.
inline constexpr std::array<int, 107> kWidths = {
    212222, 222122, 222221, 121223, 121322, 131222, 122213, 122312, 132212, 221213, 221312, 231212,
    112232, 122132, 122231, 113222, 123122, 123221, 223211, 221132, 221231, 213212, 223112, 312131,
    311222, 321122, 321221, 312212, 322112, 322211, 212123, 212321, 232121, 111323, 131123, 131321,
    112313, 132113, 132311, 211313, 231113, 231311, 112133, 112331, 132131, 113123, 113321, 133121,
    313121, 211331, 231131, 213113, 213311, 213131, 311123, 311321, 331121, 312113, 312311, 332111,
    314111, 221411, 431111, 111224, 111422, 121124, 121421, 141122, 141221, 112214, 112412, 122114,
    122411, 142112, 142211, 241211, 221114, 413111, 241112, 134111, 111242, 121142, 121241, 114212,
    124112, 124211, 411212, 421112, 421211, 212141, 214121, 412121, 111143, 111341, 131141, 114113,
    114311, 411113, 411311, 113141, 114131, 311141, 411131, 211412, 211214, 211232, 233111,
};

/// The eleven modules of each value.
inline constexpr std::array<std::uint16_t, 107> kModules = [] {
  std::array<std::uint16_t, 107> all{};
  for (std::size_t value = 0; value < all.size(); ++value) {
    unsigned modules = 0;
    bool bar = true;
    for (int place = 100000; place > 0; place /= 10, bar = !bar) {
      for (int width = kWidths[value] / place % 10; width > 0; --width)
        modules = modules << 1 | (bar ? 1U : 0U);
    }
    all[value] = static_cast<std::uint16_t>(modules);
  }
  return all;
}();

// Every character has eleven modules, begins with a bar, ends with a space, and its bars are even in sum.
static_assert([] {
  for (const unsigned modules : kModules) {
    if (modules >> 10 != 1 || modules % 2 != 0) return false;
    bool odd = false;
    for (unsigned rest = modules; rest != 0; rest &= rest - 1) odd = !odd;
    if (odd) return false;
  }
  return kModules[kStop] == kStopPattern.modules >> 2;
}());

}  // namespace korvex::linear::code128
