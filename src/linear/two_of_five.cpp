// The 2 of 5 codes: Interleaved (ISO/IEC 16390), Industrial, and the one with three bars a digit.
#include <array>
#include <cstddef>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

// ISO/IEC 16390, Table 1: weights 1, 2, 4, 7 and parity.
constexpr std::array<const char*, 10> kDigitElements = {
    "nnwwn", "wnnnw", "nwnnw", "wwnnn", "nnwnw", "wnwnn", "nwwnn", "nnnww", "wnnwn", "nwnwn",
};

/// Bars of the first and spaces of the second digit of a pair, alternating.
constexpr Elements interleaved(const char* bars, const char* spaces) {
  Elements elements;
  for (std::size_t i = 0; i < 5; ++i) {
    elements.widths[2 * i] = bars[i];
    elements.widths[2 * i + 1] = spaces[i];
  }
  elements.count = 10;
  return elements;
}

constexpr int kItfStart = 100;
constexpr TwoWidthTable<102> kItfPairs([] {
  std::array<Elements, 102> pairs;
  for (std::size_t pair = 0; pair < 100; ++pair) {
    pairs[pair] = interleaved(kDigitElements[pair / 10], kDigitElements[pair % 10]);
  }
  pairs[kItfStart] = "nnnn";
  pairs[kItfStart + 1] = "wnn";
  return pairs;
}());
static_assert(kItfPairs.all_take(0, 100, {14, 18, 32}));
static_assert(kItfPairs.all_take(100, 101, {4, 4, 8}) && kItfPairs.all_take(101, 102, {4, 5, 9}));

/// Bars of these widths with narrow spaces between them.
constexpr Elements bars_only(const char* bars) {
  Elements elements;
  for (; *bars != '\0'; ++bars) {
    if (elements.count > 0) elements.widths[static_cast<std::size_t>(elements.count++)] = 'n';
    elements.widths[static_cast<std::size_t>(elements.count++)] = *bars;
  }
  return elements;
}

constexpr int kStart = 10;
constexpr TwoWidthTable<12> kIndustrial([] {
  std::array<Elements, 12> digits;
  for (std::size_t digit = 0; digit < 10; ++digit) digits[digit] = bars_only(kDigitElements[digit]);
  digits[kStart] = bars_only("wwn");
  digits[kStart + 1] = bars_only("wnw");
  return digits;
}());
static_assert(kIndustrial.all_take(0, 10, {11, 13, 24}) && kIndustrial.all_take(10, 12, {7, 9, 16}));

// Weights 7, 4, 2, 1 and 0 from the left; 0 is 7 + 4.
constexpr TwoWidthTable<12> kThreeBar(std::array<Elements, 12>{
    "wwnnn", "nnnww", "nnwnw", "nnwwn", "nwnnw",  // 0 1 2 3 4
    "nwnwn", "nwwnn", "wnnnw", "wnnwn", "wnwnn",  // 5 6 7 8 9
    "wnw", "nww",                                 // start, stop
});
static_assert(kThreeBar.all_take(0, 10, {7, 9, 16}) && kThreeBar.all_take(10, 12, {5, 7, 12}));

}  // namespace

Fault read_digits(const Request& request, Values& values) {
  if (request.data.empty() && request.dialect == Dialect::standard) return {Reason::nothing_to_encode};
  return append_values(kDigitValues, request.data, values);
}

Fault read_itf(const Request& request, Values& values) {
  // Data and check characters together must come in pairs.
  const CheckRules& rules = request.rules;
  const bool one_check_character = rules.first.on() && !rules.second.on();
  const bool odd = request.data.size() % 2 != 0;
  if (odd != one_check_character) values.push(0);
  return read_digits(request, values);
}

void construct_itf(const Request& request, Drawing& drawing) {
  Values& values = drawing.values;
  append_check_characters(request.rules, values);
  draw_with_pen(request, kItfPairs, drawing.bars, [&](auto pen) {
    pen.character(kItfStart);
    for (int i = 0; i < values.size(); i += 2) pen.character(10 * values[i] + values[i + 1]);
    pen.character(kItfStart + 1);
  });
}

void construct_industrial25(const Request& request, Drawing& drawing) {
  append_check_characters(request.rules, drawing.values);
  draw_with_pen(request, kIndustrial, drawing.bars,
                [&](auto pen) { lay_out_framed(drawing.values, kStart, pen); });
}

void construct_code25_3bar(const Request& request, Drawing& drawing) {
  append_check_characters(request.rules, drawing.values);
  draw_with_pen(request, kThreeBar, drawing.bars,
                [&](auto pen) { lay_out_framed(drawing.values, kStart, pen); });
}

}  // namespace korvex::linear
