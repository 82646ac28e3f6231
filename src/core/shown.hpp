// Bytes of data in sentences about errors.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace korvex {

/// Whether a byte shows as itself: printable ASCII.
constexpr bool is_printable(int byte) {
  return byte >= ' ' && byte < 0x7F;
}

/// "0x0A", for a byte 0 to 255.
inline std::string hexadecimal(int byte) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  return {'0', 'x', kDigits[static_cast<std::size_t>(byte >> 4 & 15)],
          kDigits[static_cast<std::size_t>(byte & 15)]};
}

/// 'x' (0x78), or 0x0A alone where there is nothing to show.
inline std::string shown(int byte) {
  if (!is_printable(byte)) return hexadecimal(byte);
  return std::string("'") + static_cast<char>(byte) + "' (" + hexadecimal(byte) + ")";
}

/// A piece of data in quotation marks, each byte that is no printable ASCII as \x0A. Of one longer than 32
/// bytes the first ones and the length: a sentence stays one whatever it is about.
inline std::string quoted(std::string_view text) {
  constexpr std::size_t kMostShown = 32;
  std::string quoted = "\"";
  for (const char character : text.substr(0, kMostShown)) {
    const int byte = static_cast<unsigned char>(character);
    quoted += is_printable(byte) ? std::string(1, character) : "\\" + hexadecimal(byte).substr(1);
  }
  if (text.size() <= kMostShown) return quoted + '"';
  return quoted + "...\" (" + std::to_string(text.size()) + " bytes)";
}

}  // namespace korvex
