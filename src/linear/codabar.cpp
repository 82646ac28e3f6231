// Codabar (ANSI/AIM BC3).
#include <array>
#include <cstdint>

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

/// The published form: A to D at both ends and nowhere else, no blanks. A ... A is put around data without
/// them.
Fault frame_standard(const Request& request, Values& values) {
  const Values given = values;
  const int last = given.size() - 1;
  const bool starts = last >= 0 && is_start_stop(given[0]);
  const bool stops = last >= 0 && is_start_stop(given[last]);
  if (starts != stops || (starts && last == 0)) {
    return {Reason::lone_start_stop, starts ? 1 : last + 1,
            request.data[starts ? 0U : static_cast<std::size_t>(last)]};
  }
  const int first = starts ? 1 : 0;
  const int end = starts ? last : last + 1;
  if (first == end) return {Reason::nothing_to_encode};
  for (int i = first; i < end; ++i) {
    const int byte = request.data[static_cast<std::size_t>(i)];
    if (is_start_stop(given[i])) return {Reason::misplaced_start_stop, i + 1, byte};
    if (given[i] == kBlank) return {Reason::bad_character, i + 1, byte};
  }
  if (starts) return {};
  values.clear();
  values.push(kA);
  for (int i = 0; i < given.size(); ++i) values.push(given[i]);
  values.push(kA);
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
  if (const Fault fault = append_values(kCodabarValues, request.data, values)) return fault;
  if (request.dialect == Dialect::standard) return frame_standard(request, values);
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
  with_pen(request, kCharacters, drawing.bars, [&](auto pen) { lay_out_discrete(values, pen); });
}

}  // namespace korvex::linear
