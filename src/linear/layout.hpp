// Steps that several linear symbologies share: bytes to values, check characters, characters in a row.
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "linear/patterns.hpp"
#include "linear/request.hpp"

namespace korvex::linear {

inline constexpr std::string_view kDigits = "0123456789";
inline constexpr ValueTable kDigitValues = value_table(kDigits);

/// Appends the value of every byte of `data`, whose first byte stands at `position` of the caller's data.
inline Fault append_values(const ValueTable& table, std::span<const std::uint8_t> data, Values& values,
                           int position = 1) {
  Value* end = values.extend(data.size());
  for (const std::uint8_t byte : data) {
    const std::uint8_t value = table[byte];
    if (value == kNoValue) return {Reason::bad_character, position, byte};
    *end++ = value;
    ++position;
  }
  return {};
}

/// Appends the check characters of the values from index `first` on.
inline void append_check_characters(const CheckRules& rules, Values& values, std::size_t first = 0) {
  if (!rules.first.on()) return;
  values.push(check_character(rules.first, values.all().subspan(first)));
  if (!rules.second.on()) return;
  values.push(check_character(rules.second, values.all().subspan(first)));
}

/// Draws characters as a table of patterns has them.
class PatternPen {
 public:
  /// `gap` is 0 to 2 modules.
  PatternPen(BarWriter& writer, std::span<const Pattern> patterns, int gap)
      : writer_(writer), patterns_(patterns), gap_(gap) {}

  void character(int value) { writer_.put(patterns_[static_cast<std::size_t>(value)]); }
  void character_and_gap(int value) {
    const Pattern& pattern = patterns_[static_cast<std::size_t>(value)];
    writer_.put(pattern.modules << gap_, pattern.count + gap_);
  }

 private:
  BarWriter& writer_;
  std::span<const Pattern> patterns_;
  int gap_;
};

/// Draws characters element by element with widths chosen one by one.
class ElementPen {
 public:
  ElementPen(BarWriter& writer, std::span<const Elements> characters, const ExplicitWidths& widths, int gap)
      : writer_(writer), characters_(characters), widths_(widths), gap_(gap) {}

  void character(int value) {
    const Elements& elements = characters_[static_cast<std::size_t>(value)];
    for (int i = 0; i < elements.count; ++i) {
      const bool bar = elements.bar(i);
      writer_.put_run(bar, widths_.of(bar, elements.wide(i)));
    }
  }
  void character_and_gap(int value) {
    character(value);
    writer_.put_run(false, gap_);
  }

 private:
  BarWriter& writer_;
  std::span<const Elements> characters_;
  const ExplicitWidths& widths_;
  int gap_;
};

/// Draws `bars` with the pen that the request's widths ask for.
template <std::size_t Count, class LayOut>
void draw_with_pen(const Request& request, const TwoWidthTable<Count>& table, Bars& bars, LayOut lay_out) {
  BarWriter writer(bars);
  if (request.widths != nullptr) {
    lay_out(ElementPen(writer, table.elements, *request.widths, request.gap));
  } else {
    lay_out(PatternPen(writer, table.drawn_by_ratio[static_cast<std::size_t>(request.ratio)], request.gap));
  }
  writer.finish();
}

/// Character, gap, character ... character: the first and the last value are start and stop character.
template <class Pen>
void lay_out_discrete(const Values& values, Pen pen) {
  const int last = values.size() - 1;
  for (int i = 0; i < last; ++i) pen.character_and_gap(values[i]);
  pen.character(values[last]);
}

/// Start, gap, character, gap ... stop: the start pattern and after it the stop pattern stand at `start` of
/// the pen's table.
template <class Pen>
void lay_out_framed(const Values& values, int start, Pen pen) {
  pen.character_and_gap(start);
  for (int i = 0; i < values.size(); ++i) pen.character_and_gap(values[i]);
  pen.character(start + 1);
}

/// Draws a symbology of one width, whose start and stop pattern are the last two of `patterns`.
inline void draw_framed(const Request& request, std::span<const Pattern> patterns, Drawing& drawing) {
  BarWriter writer(drawing.bars);
  lay_out_framed(drawing.values, static_cast<int>(patterns.size()) - 2,
                 PatternPen(writer, patterns, request.gap));
  writer.finish();
}

}  // namespace korvex::linear
