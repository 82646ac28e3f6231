// GS1-128 as symbol character values (ISO/IEC 15417).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "composite/request.hpp"

namespace korvex::composite::code128 {

inline constexpr int kStop = 106;
inline constexpr int kCharacterModules = 11;

/// FNC1 in a text; in Dialect::korvex32 a hash is FNC1 too.
inline constexpr std::uint8_t kFnc1 = 0x81;

/// Symbol characters of a text and its start character; what does not fit is left out. After them may come a
/// linkage character, the check character and the stop character.
inline constexpr int kMostTextCharacters = 43;
inline constexpr int kMostCharacters = kMostTextCharacters + 3;

/// Symbol character values in drawing order, start and stop included.
struct Values {
  int count = 0;
  std::array<std::uint8_t, kMostCharacters> values;  // not cleared: count says what is there

  void push(int value) { values[static_cast<std::size_t>(count++)] = static_cast<std::uint8_t>(value); }
  [[nodiscard]] std::span<const std::uint8_t> all() const {
    return {values.data(), static_cast<std::size_t>(count)};
  }
};

/// Encodes the request's linear text. `linked_to` says for which 2D component the linkage character stands.
Fault encode(const Request& request, Component linked_to, Values& values);

/// The eleven modules of each value.
extern const std::array<std::uint16_t, 107> kPatterns;

}  // namespace korvex::composite::code128
