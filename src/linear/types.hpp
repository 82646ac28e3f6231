// The nineteen type codes of Korvex_Bit.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

#include "korvex/linear.hpp"
#include "linear/check_characters.hpp"

namespace korvex::linear {

struct Type {
  std::optional<Symbology> symbology;  ///< none: the type has no symbol
  CheckRules rules;                    ///< those that are off as well: the C++ interface can switch them on
};

inline constexpr int kTypeCount = 19;
inline constexpr int kCodabarWithoutSymbol = 7;  ///< checks its data as Codabar
inline constexpr int kBase36WithoutSymbol = 17;  ///< checks that its data are digits and capital letters

inline constexpr std::array<Type, kTypeCount> kTypes = [] {
  using enum CheckMethod;
  using enum Symbology;
  constexpr CheckRule kNone{};
  constexpr CheckRule kOffMod10{0, alternating, 10, 3};
  return std::array<Type, kTypeCount>{{
      /*  0 */ {codabar, {kOffMod10, kOffMod10}},
      /*  1 */ {code39, {{0, constant, 43, 1, 1}, kNone}},
      /*  2 */ {itf, {kOffMod10, kNone}},
      /*  3 */ {ean13, {kGs1CheckDigit, kNone}},
      /*  4 */ {ean8, {kGs1CheckDigit, kNone}},
      /*  5 */ {industrial25, {kOffMod10, kNone}},
      /*  6 */ {code25_3bar, {kOffMod10, kNone}},
      /*  7 */ {std::nullopt, {kOffMod10, kOffMod10}},
      /*  8 */ {sscc18, {kGs1CheckDigit, kCode128CheckCharacter}},
      /*  9 */ {code128_inband, {kCode128CheckCharacter, kNone}},
      /* 10 */ {msi, {{0, rising, 11, 2, 0, 0, 1}, kOffMod10}},
      /* 11 */ {code11, {{0, cyclic_right, 11, 10, 1, 0, 1}, {0, cyclic_right, 11, 9, 1}}},
      /* 12 */ {code93, {{1, cyclic_right, 47, 20, 1, 0, 1}, {1, cyclic_right, 47, 15, 1}}},
      /* 13 */ {code128_segments, {kCode128CheckCharacter, kNone}},
      /* 14 */ {upce, {kGs1CheckDigit, kNone}},
      /* 15 */ {addon, {kNone, kNone}},
      /* 16 */ {std::nullopt, {{1, alternating, 10, 1}, kNone}},
      /* 17 */ {std::nullopt, {kNone, kNone}},
      /* 18 */ {std::nullopt, {kNone, kNone}},
  }};
}();

/// The rules of the type that draws `symbology`, or its nearest relation where no type does.
constexpr const CheckRules& rules_of(Symbology symbology) {
  if (symbology == Symbology::upca) symbology = Symbology::ean13;
  if (symbology == Symbology::code128) symbology = Symbology::code128_inband;
  std::size_t type = 0;
  while (kTypes[type].symbology != symbology) ++type;
  return kTypes[type].rules;
}
static_assert([] {
  for (int symbology = 0; symbology <= static_cast<int>(Symbology::code93); ++symbology) {
    rules_of(static_cast<Symbology>(symbology));  // does not compile when a symbology has no row
  }
  return true;
}());

}  // namespace korvex::linear
