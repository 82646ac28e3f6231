// Code 93, full ASCII (AIM USS Code 93, ANSI/AIM BC5).
#include <array>
#include <cstddef>
#include <cstdint>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr int kStart = 47;
constexpr std::array<Pattern, 49> kPatterns = [] {
  // ANSI/AIM BC5, Table 1: nine modules a character, values 0 to 46 and the start character.
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
  patterns[kStart + 1] = modules("1010111101");  // the stop character and its termination bar
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

struct FullAscii {
  std::int8_t first;
  std::int8_t second;  // -1: none
};
// ANSI/AIM BC5, full ASCII: each byte 0 to 127 as one value, or as a shift character (43 to 46) and a letter.
constexpr std::array<FullAscii, 128> kFullAscii = {{
    {44, 30}, {43, 10}, {43, 11}, {43, 12}, {43, 13}, {43, 14}, {43, 15}, {43, 16}, {43, 17}, {43, 18},
    {43, 19}, {43, 20}, {43, 21}, {43, 22}, {43, 23}, {43, 24}, {43, 25}, {43, 26}, {43, 27}, {43, 28},
    {43, 29}, {43, 30}, {43, 31}, {43, 32}, {43, 33}, {43, 34}, {43, 35}, {44, 10}, {44, 11}, {44, 12},
    {44, 13}, {44, 14}, {38, -1}, {45, 10}, {45, 11}, {45, 12}, {39, -1}, {42, -1}, {45, 15}, {45, 16},
    {45, 17}, {45, 18}, {45, 19}, {41, -1}, {45, 21}, {36, -1}, {37, -1}, {40, -1}, {0, -1},  {1, -1},
    {2, -1},  {3, -1},  {4, -1},  {5, -1},  {6, -1},  {7, -1},  {8, -1},  {9, -1},  {45, 35}, {44, 15},
    {44, 16}, {44, 17}, {44, 18}, {44, 19}, {44, 31}, {10, -1}, {11, -1}, {12, -1}, {13, -1}, {14, -1},
    {15, -1}, {16, -1}, {17, -1}, {18, -1}, {19, -1}, {20, -1}, {21, -1}, {22, -1}, {23, -1}, {24, -1},
    {25, -1}, {26, -1}, {27, -1}, {28, -1}, {29, -1}, {30, -1}, {31, -1}, {32, -1}, {33, -1}, {34, -1},
    {35, -1}, {44, 20}, {44, 21}, {44, 22}, {44, 23}, {44, 24}, {44, 32}, {46, 10}, {46, 11}, {46, 12},
    {46, 13}, {46, 14}, {46, 15}, {46, 16}, {46, 17}, {46, 18}, {46, 19}, {46, 20}, {46, 21}, {46, 22},
    {46, 23}, {46, 24}, {46, 25}, {46, 26}, {46, 27}, {46, 28}, {46, 29}, {46, 30}, {46, 31}, {46, 32},
    {46, 33}, {46, 34}, {46, 35}, {44, 25}, {44, 26}, {44, 27}, {44, 28}, {44, 29},
}};

constexpr bool pairs_are_shift_and_letter() {
  int pairs = 0;
  for (const FullAscii& byte : kFullAscii) {
    if (byte.second < 0) continue;
    ++pairs;
    if (byte.first < 43 || byte.first > 46 || byte.second < 10 || byte.second > 35) return false;
  }
  return pairs == 128 - 43;
}
static_assert(pairs_are_shift_and_letter());

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
  lay_out_framed(drawing.values, kStart, PatternPen(drawing.bars, kPatterns, request.gap));
}

}  // namespace korvex::linear
