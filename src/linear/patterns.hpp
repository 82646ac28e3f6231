// From the element widths that the standards print to runs of modules.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "linear/bar_writer.hpp"

namespace korvex::linear {

/// A character of a two-width symbology: bar, space, bar ... from the left, each 'n'arrow or 'w'ide.
struct Elements {
  std::array<char, 10> widths{};
  int count = 0;
  bool blank = false;  ///< all of it is space

  constexpr Elements() = default;
  constexpr Elements(const char* text) {  // NOLINT(google-explicit-constructor): tables are lists of strings
    while (text[count] != '\0') {
      widths[static_cast<std::size_t>(count)] = text[count];
      ++count;
    }
  }

  [[nodiscard]] constexpr bool bar(int element) const { return element % 2 == 0 && !blank; }
  [[nodiscard]] constexpr bool wide(int element) const {
    return widths[static_cast<std::size_t>(element)] == 'w';
  }
  [[nodiscard]] constexpr int wide_count() const {
    int wides = 0;
    for (int i = 0; i < count; ++i) wides += wide(i) ? 1 : 0;
    return wides;
  }
};

/// The elements drawn with the widths given, in modules; at most 32 in all.
constexpr Pattern drawn(const Elements& elements, int narrow, int wide) {
  Pattern pattern;
  for (int i = 0; i < elements.count; ++i) {
    const int width = elements.wide(i) ? wide : narrow;
    for (int module = 0; module < width; ++module) {
      pattern.modules = pattern.modules << 1 | (elements.bar(i) ? 1U : 0U);
    }
    pattern.count += width;
  }
  return pattern;
}

/// The characters of a two-width symbology by value, as elements and drawn with each Ratio.
template <std::size_t Count>
struct TwoWidthTable {
  std::array<Elements, Count> elements;
  std::array<std::array<Pattern, Count>, 3> drawn_by_ratio{};

  constexpr explicit TwoWidthTable(const std::array<Elements, Count>& characters) : elements(characters) {
    constexpr std::array<std::array<int, 2>, 3> kWidths{{{1, 2}, {1, 3}, {2, 5}}};  // narrow, wide
    for (std::size_t ratio = 0; ratio < kWidths.size(); ++ratio) {
      for (std::size_t i = 0; i < Count; ++i) {
        drawn_by_ratio[ratio][i] = drawn(elements[i], kWidths[ratio][0], kWidths[ratio][1]);
      }
    }
  }

  /// Every character from `first` to before `end` has these module counts (2:1, 3:1, 5:2).
  [[nodiscard]] constexpr bool all_take(std::size_t first, std::size_t end,
                                        std::array<int, 3> modules) const {
    for (std::size_t ratio = 0; ratio < modules.size(); ++ratio) {
      for (std::size_t i = first; i < end; ++i) {
        if (drawn_by_ratio[ratio][i].count != modules[ratio]) return false;
      }
    }
    return true;
  }
};

/// A run of modules as text, one character a module, 1 for a bar.
constexpr Pattern modules(std::string_view text) {
  Pattern pattern;
  for (const char module : text) pattern.modules = pattern.modules << 1 | (module == '1' ? 1U : 0U);
  pattern.count = static_cast<int>(text.size());
  return pattern;
}

/// The value of each byte in a symbology's character set; kNoValue for the others.
using ValueTable = std::array<std::uint8_t, 256>;
inline constexpr std::uint8_t kNoValue = 0xFF;

/// The characters in the order of their values.
constexpr ValueTable value_table(std::string_view characters) {
  ValueTable table{};
  table.fill(kNoValue);
  std::uint8_t value = 0;
  for (const char character : characters) table[static_cast<std::uint8_t>(character)] = value++;
  return table;
}

}  // namespace korvex::linear
