#include "escapes.hpp"

#include <algorithm>
#include <array>

#include "failure.hpp"

namespace korvex::cli {
namespace {

// By code, 0 to 31 (ISO/IEC 646).
constexpr std::array<std::string_view, 32> kNames = {"NUL", "SOH", "STX", "ETX", "EOT", "ENQ", "ACK", "BEL",
                                                     "BS",  "HT",  "LF",  "VT",  "FF",  "CR",  "SO",  "SI",
                                                     "DLE", "DC1", "DC2", "DC3", "DC4", "NAK", "SYN", "ETB",
                                                     "CAN", "EM",  "SUB", "ESC", "FS",  "GS",  "RS",  "US"};
constexpr char kDelete = 0x7F;

}  // namespace

std::string with_escapes(std::string_view text) {
  std::string plain;
  for (std::size_t index = 0; index < text.size(); ++index) {
    if (text[index] != '{') {
      plain += text[index];
      continue;
    }
    if (text.substr(index, 2) == "{{") {
      plain += text[index++];
      continue;
    }
    const std::size_t end = std::min(text.find('}', index), text.size());
    const std::string_view name = text.substr(index + 1, end - index - 1);
    const auto* const found = std::ranges::find(kNames, name);
    if (end == text.size() || (found == kNames.end() && name != "DEL")) {
      throw Failure("The brace at position " + std::to_string(index + 1) +
                    " opens no name of a control character, such as {GS}, {RS} or {EOT}; {{ is a brace.");
    }
    plain += found == kNames.end() ? kDelete : static_cast<char>(found - kNames.begin());
    index = end;
  }
  return plain;
}

}  // namespace korvex::cli
