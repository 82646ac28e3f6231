// Code 11 (USD-8): digits and the dash.
#include <array>
#include <cstddef>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

// USD-8: three bars and two spaces, of which one or two are wide.
constexpr std::array<Elements, 13> kCharacters = {
    "nnnnw", "wnnnw", "nwnnw", "wwnnn",  // 0 1 2 3
    "nnwnw", "wnwnn", "nwwnn", "nnnww",  // 4 5 6 7
    "wnnwn", "wnnnn", "nnwnn",           // 8 9 -
    "nnwwn", "nnwwn",                    // start, stop
};
static_assert([] {
  for (const Elements& character : kCharacters) {
    if (character.count != 5 || character.wide_count() < 1 || character.wide_count() > 2) return false;
  }
  return true;
}());

using Patterns = std::array<Pattern, kCharacters.size()>;

/// Drawn with narrow elements of one module and wide ones of two, a lone wide one of `lone_wide`.
constexpr Patterns patterns(int lone_wide) {
  Patterns drawn_characters;
  for (std::size_t i = 0; i < kCharacters.size(); ++i) {
    drawn_characters[i] = drawn(kCharacters[i], 1, kCharacters[i].wide_count() == 1 ? lone_wide : 2);
  }
  return drawn_characters;
}
constexpr Patterns kStandard = patterns(2);
constexpr Patterns kKorvex32 = patterns(3);  // seven modules every character

constexpr ValueTable kValues = value_table(kCode11Characters);

}  // namespace

Fault read_code11(const Request& request, Values& values) {
  if (request.data.empty() && request.dialect == Dialect::standard) return {Reason::nothing_to_encode};
  return append_values(kValues, request.data, values);
}

void construct_code11(const Request& request, Drawing& drawing) {
  append_check_characters(request.rules, drawing.values);
  draw_framed(request, request.dialect == Dialect::standard ? kStandard : kKorvex32, drawing);
}

}  // namespace korvex::linear
