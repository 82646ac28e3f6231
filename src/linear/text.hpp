// Human readable text of linear symbols.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "linear/request.hpp"

namespace korvex::linear {

/// Text in groups, the longest being that of SSCC-18: "(00)" and 18 digits.
struct GroupedText {
  std::array<char, 22> characters{};
  int length = 0;
  std::array<std::uint16_t, 5> groups{};
  int group_count = 0;

  [[nodiscard]] std::string_view view() const {
    return {characters.data(), static_cast<std::size_t>(length)};
  }
  void add(char character) { characters[static_cast<std::size_t>(length++)] = character; }
};

/// The text of a drawn EAN-13, UPC-A, EAN-8, UPC-E or SSCC-18 symbol, check digit included; empty for others.
/// In the korvex32 dialect an EAN-13 symbol that begins with 0 is written as the UPC-A symbol that it is.
GroupedText grouped_text(const Request& request, const Values& values);

/// The text of any other drawn symbol, in UTF-8: check characters that stand for data characters included,
/// function characters left out, control characters as blanks.
std::string plain_text(const Request& request, const Values& values);

}  // namespace korvex::linear
