// Codabar (ANSI/AIM BC3).
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr int kA = kCodabarValues['A'];  // A B C D, the start and stop characters
constexpr int kD = kCodabarValues['D'];
constexpr int kBlank = 20;

constexpr TwoWidthTable<21> kCharacters([] {
  std::array<Elements, 21> characters = {
      "nnnnnww", "nnnnwwn", "nnnwnnw", "wwnnnnn", "nnwnnwn",  // 0 1 2 3 4
      "wnnnnwn", "nwnnnnw", "nwnnwnn", "nwwnnnn", "wnnwnnn",  // 5 6 7 8 9
      "nnwwnwn", "nwnwnnw", "nnnwnww", "nnnwwwn",             // A B C D
      "wnwnwnn", "nnwnwnw", "wnnnwnw", "wnwnnnw",             // . + : /
      "nnwwnnn", "nnnwwnn",                                   // $ -
      "nnnnnww",                                              // the blank: as wide as a digit, no bars
  };
  characters[kBlank].blank = true;
  return characters;
}());
static_assert(kCharacters.all_take(0, 10, {9, 11, 20}));
static_assert(kCharacters.all_take(10, 18, {10, 13, 23}));
static_assert(kCharacters.all_take(18, 21, {9, 11, 20}));

bool is_start_stop(int value) {
  return value >= kA && value <= kD;
}

/// The published form: A to D at both ends and nowhere else, and no blanks. Data without them gets A and A.
Fault read_standard(const Request& request, Values& values) {
  std::span<const std::uint8_t> data = request.data;
  if (data.empty()) return {Reason::nothing_to_encode};
  const int first = kCodabarValues[data.front()];
  const int last = kCodabarValues[data.back()];
  const bool framed = is_start_stop(first) && is_start_stop(last) && data.size() > 1;
  if (!framed && is_start_stop(first)) return {Reason::lone_start_stop, 1, data.front()};
  if (!framed && is_start_stop(last)) {
    return {Reason::lone_start_stop, static_cast<int>(data.size()), data.back()};
  }
  if (framed) data = data.subspan(1, data.size() - 2);
  if (data.empty()) return {Reason::nothing_to_encode};

  const int first_position = framed ? 2 : 1;
  values.push(framed ? first : kA);
  if (const Fault fault = append_values(kCodabarValues, data, values, first_position)) return fault;
  for (std::size_t i = 0; i < data.size(); ++i) {
    const int value = kCodabarValues[data[i]];
    const int position = static_cast<int>(i) + first_position;
    if (is_start_stop(value)) return {Reason::misplaced_start_stop, position, data[i]};
    if (value == kBlank) return {Reason::bad_character, position, data[i]};
  }
  values.push(framed ? last : kA);
  return {};
}

/// The modulo 16 check character counts the start and stop characters too, by values of its own.
int mod16_check_character(const Values& values) {
  constexpr ValueTable kOrder = value_table("0123456789-$:/.+ABCD");
  int sum = 0;
  for (int i = 0; i < values.size(); ++i) {
    sum += kOrder[static_cast<std::uint8_t>(kCodabarCharacters[static_cast<std::size_t>(values[i])])];
  }
  const int missing = (16 - sum % 16) % 16;
  return kCodabarValues[static_cast<std::uint8_t>("0123456789-$:/.+"[missing])];
}

}  // namespace

Fault read_codabar(const Request& request, Values& values) {
  if (request.dialect == Dialect::standard) return read_standard(request, values);
  if (const Fault fault = append_values(kCodabarValues, request.data, values)) return fault;
  if (values.size() < 2) return {Reason::no_start_stop, 0, values.size()};
  return {};
}

void construct_codabar(const Request& request, Drawing& drawing) {
  Values& values = drawing.values;
  const bool mod16 = request.check == CheckCharacters::mod16;
  const int mod16_character = mod16 ? mod16_check_character(values) : 0;
  const int stop = values.pop();
  if (mod16) values.push(mod16_character);
  append_check_characters(request.rules, values, 1);
  values.push(stop);
  draw_with_pen(request, kCharacters, drawing.bars, [&](auto pen) { lay_out_discrete(values, pen); });
}

}  // namespace korvex::linear
