#include "call/utf16.hpp"

#include <cstddef>
#include <utility>

namespace korvex::cli::call {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

void append_utf8(std::string& text, std::uint32_t code) {
  const auto byte = [&](std::uint32_t value) { text += static_cast<char>(value); };
  if (code < 0x80) return byte(code);
  if (code < 0x800) {
    byte(0xC0 | code >> 6);
  } else {
    if (code < 0x10000) {
      byte(0xE0 | code >> 12);
    } else {
      byte(0xF0 | code >> 18);
      byte(0x80 | (code >> 12 & 0x3F));
    }
    byte(0x80 | (code >> 6 & 0x3F));
  }
  byte(0x80 | (code & 0x3F));
}

bool is_first_half(std::uint32_t unit) {
  return unit >= 0xD800 && unit < 0xDC00;
}
bool is_second_half(std::uint32_t unit) {
  return unit >= 0xDC00 && unit < 0xE000;
}

}  // namespace

std::string_view ToUtf8::convert(std::string_view bytes, bool last) {
  if (encoding_ == Encoding::utf8) return bytes;
  held_ += bytes;
  text_.clear();
  std::size_t at = 0;
  if (encoding_ == Encoding::unknown) {
    if (held_.size() < 2 && !last) return {};
    encoding_ = held_.starts_with("\xFF\xFE")   ? Encoding::utf16_le
                : held_.starts_with("\xFE\xFF") ? Encoding::utf16_be
                                                : Encoding::utf8;
    if (encoding_ == Encoding::utf8) return text_ = std::exchange(held_, {});
    at = 2;
  }
  const std::size_t low = encoding_ == Encoding::utf16_le ? 0 : 1;
  const auto unit = [&](std::size_t place) {
    return std::uint32_t{static_cast<std::uint8_t>(held_[place + low])} |
           std::uint32_t{static_cast<std::uint8_t>(held_[place + 1 - low])} << 8;
  };
  for (; at + 2 <= held_.size(); at += 2) {
    std::uint32_t code = unit(at);
    if (is_first_half(code)) {
      if (at + 4 > held_.size() && !last) break;
      if (at + 4 <= held_.size() && is_second_half(unit(at + 2))) {
        code = 0x10000 + ((code & 0x3FF) << 10 | (unit(at + 2) & 0x3FF));
        at += 2;
      } else {
        code = kReplacement;
      }
    } else if (is_second_half(code)) {
      code = kReplacement;
    }
    append_utf8(text_, code);
  }
  held_.erase(0, at);
  if (last && !std::exchange(held_, {}).empty()) append_utf8(text_, kReplacement);  // half a unit
  return text_;
}

}  // namespace korvex::cli::call
