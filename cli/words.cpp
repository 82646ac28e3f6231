#include "words.hpp"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace korvex::cli {
namespace {

/// Typing errors between two words, the optimal string alignment distance.
std::size_t typing_errors(std::string_view a, std::string_view b) {
  std::vector<std::vector<std::size_t>> errors(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        errors[i][j] = i + j;
        continue;
      }
      const std::size_t wrong = a[i - 1] == b[j - 1] ? 0 : 1;
      errors[i][j] = std::min({errors[i - 1][j] + 1, errors[i][j - 1] + 1, errors[i - 1][j - 1] + wrong});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        errors[i][j] = std::min(errors[i][j], errors[i - 2][j - 2] + 1);
      }
    }
  }
  return errors[a.size()][b.size()];
}

/// Bytes of the UTF-8 character that `text` begins with; 0 when it begins with none, or with a control
/// character.
std::size_t character_length(std::string_view text) {
  const auto byte = [&](std::size_t index) { return static_cast<std::uint8_t>(text[index]); };
  const std::uint8_t first = byte(0);
  if (first < 0x80) return first >= 0x20 && first != 0x7F ? 1 : 0;
  const std::size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
  if (first < 0xC2 || first > 0xF4 || text.size() < length) return 0;
  std::uint32_t code = first & (0x7FU >> length);
  for (std::size_t index = 1; index < length; ++index) {
    if ((byte(index) & 0xC0U) != 0x80) return 0;
    code = code << 6 | (byte(index) & 0x3FU);
  }
  constexpr std::uint32_t kLeast[] = {0, 0, 0xA0, 0x800, 0x10000};  // below 0xA0 there are control characters
  const bool is_character = code >= kLeast[length] && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF) &&
                            (code & 0xFFFE) != 0xFFFE;
  return is_character ? length : 0;
}

}  // namespace

std::string joined(const std::vector<std::string_view>& words, std::string_view conjunction) {
  std::string text;
  for (std::size_t index = 0; index < words.size(); ++index) {
    if (index > 0 && index + 1 == words.size()) {
      text.append(" ").append(conjunction).append(" ");
    } else if (index > 0) {
      text += ", ";
    }
    text += words[index];
  }
  return text;
}

std::string_view nearest(std::string_view word, const std::vector<std::string_view>& words) {
  std::string_view best;
  std::size_t fewest = std::max<std::size_t>(word.size() / 3, 1) + 1;
  if (word.size() > 100) return best;
  for (const std::string_view candidate : words) {
    const std::size_t errors = typing_errors(word, candidate);
    if (errors < fewest) {
      fewest = errors;
      best = candidate;
    }
  }
  return best;
}

int hexadecimal_value(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  return -1;
}

std::string decimal(double number, int decimals) {
  char text[64];
  const int length = std::snprintf(text, sizeof text, "%.*f", decimals, number);
  std::string result(text, static_cast<std::size_t>(std::clamp<int>(length, 0, sizeof text - 1)));
  if (result.find('.') != std::string::npos) {
    result.erase(result.find_last_not_of('0') + 1);
    if (result.back() == '.') result.pop_back();
  }
  return result == "-0" ? "0" : result;
}

std::string printable(std::string_view bytes) {
  std::string text;
  while (!bytes.empty()) {
    const std::size_t length = character_length(bytes);
    if (length > 0) {
      text += bytes.substr(0, length);
    } else {
      char escape[5];
      std::snprintf(escape, sizeof escape, "\\x%02x", static_cast<std::uint8_t>(bytes[0]));
      text += escape;
    }
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

std::string json_reason(std::string_view what) {
  // "[…] parse error at line 1, column 9: syntax error while …"
  const std::size_t place = what.find(": ");
  return printable(place == std::string_view::npos ? what : what.substr(place + 2));
}

}  // namespace korvex::cli
