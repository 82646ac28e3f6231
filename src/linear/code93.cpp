// Code 93, full ASCII (AIM USS Code 93, ANSI/AIM BC5).
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr std::array<Pattern, 49> kPatterns = [] {
  // ANSI/AIM BC5: nine modules a character, values 0 to 46 and the start character.
  constexpr std::array<std::uint32_t, 48> kModules = {
      0b100010100, 0b101001000, 0b101000100, 0b101000010, 0b100101000, 0b100100100, 0b100100010, 0b101010000,
      0b100010010, 0b100001010, 0b110101000, 0b110100100, 0b110100010, 0b110010100, 0b110010010, 0b110001010,
      0b101101000, 0b101100100, 0b101100010, 0b100110100, 0b100011010, 0b101011000, 0b101001100, 0b101000110,
      0b100101100, 0b100010110, 0b110110100, 0b110110010, 0b110101100, 0b110100110, 0b110010110, 0b110011010,
      0b101101100, 0b101100110, 0b100110110, 0b100111010, 0b100101110, 0b111010100, 0b111010010, 0b111001010,
      0b101101110, 0b101110110, 0b110101110, 0b100100110, 0b111011010, 0b111010110, 0b100110010, 0b101011110,
  };
  std::array<Pattern, 49> patterns;
  for (std::size_t i = 0; i < kModules.size(); ++i) patterns[i] = {kModules[i], 9};
  patterns[48] = modules("1010111101");  // the stop character and its termination bar
  return patterns;
}();

constexpr bool every_character_has_three_bars() {
  for (const Pattern& pattern : std::span(kPatterns).first<48>()) {
    const std::uint32_t edges = (pattern.modules ^ pattern.modules >> 1) & 0x1FF;
    int count = 0;
    for (std::uint32_t rest = edges; rest != 0; rest &= rest - 1) ++count;
    if (count != 6) return false;
  }
  return true;
}
static_assert(every_character_has_three_bars());

constexpr std::string_view kCharacters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ-. $/+%";  // by value
constexpr int kA = 10;
// The shift characters, after which a letter stands for a byte of full ASCII.
constexpr int kDollar = 43;
constexpr int kPercent = 44;
constexpr int kSlash = 45;
constexpr int kPlus = 46;

struct FullAscii {
  int first = -1;
  int second = -1;  // -1: the first character is all
};
/// Each byte 0 to 127 as one or two values.
constexpr std::array<FullAscii, 128> kFullAscii = [] {
  std::array<FullAscii, 128> bytes;
  // Bytes from `byte` on are the shift character and the letters from `letter` on.
  const auto set = [&bytes](unsigned byte, int count, int shift, char letter) {
    for (int i = 0; i < count; ++i, ++byte) bytes.at(byte) = {shift, kA + letter - 'A' + i};
  };
  // ANSI/AIM BC5, full ASCII.
  set(1, 26, kDollar, 'A');
  set('!', 15, kSlash, 'A');
  set(':', 1, kSlash, 'Z');
  set('a', 26, kPlus, 'A');
  set(27, 5, kPercent, 'A');
  set(';', 5, kPercent, 'F');
  set('[', 5, kPercent, 'K');
  set('{', 5, kPercent, 'P');
  set(0, 1, kPercent, 'U');
  set('@', 1, kPercent, 'V');
  set('`', 1, kPercent, 'W');
  // What has a character of its own is never shifted, $ / + % included.
  for (std::size_t value = 0; value < kCharacters.size(); ++value) {
    bytes[static_cast<std::uint8_t>(kCharacters[value])] = {static_cast<int>(value), -1};
  }
  return bytes;
}();
static_assert(std::ranges::none_of(kFullAscii, [](const FullAscii& byte) { return byte.first < 0; }));

}  // namespace

Fault read_code93(const Request& request, Values& values) {
  if (request.data.empty() && request.dialect == Dialect::standard) return {Reason::nothing_to_encode};
  for (std::size_t i = 0; i < request.data.size(); ++i) {
    const std::uint8_t byte = request.data[i];
    if (byte >= kFullAscii.size()) return {Reason::bad_character, static_cast<int>(i) + 1, byte};
    values.push(kFullAscii[byte].first);
    if (kFullAscii[byte].second >= 0) values.push(kFullAscii[byte].second);
  }
  return {};
}

void construct_code93(const Request& request, Drawing& drawing) {
  append_check_characters(request.rules, drawing.values);
  draw_framed(request, kPatterns, drawing);
}

}  // namespace korvex::linear
