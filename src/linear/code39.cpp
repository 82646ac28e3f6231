// Code 39 (ISO/IEC 16388).
#include <array>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr int kStartStop = 43;

// ISO/IEC 16388, Table 1, in the order of kCode39Characters.
constexpr TwoWidthTable<44> kCharacters(std::array<Elements, 44>{
    "nnnwwnwnn", "wnnwnnnnw", "nnwwnnnnw", "wnwwnnnnn", "nnnwwnnnw",  // 0 1 2 3 4
    "wnnwwnnnn", "nnwwwnnnn", "nnnwnnwnw", "wnnwnnwnn", "nnwwnnwnn",  // 5 6 7 8 9
    "wnnnnwnnw", "nnwnnwnnw", "wnwnnwnnn", "nnnnwwnnw", "wnnnwwnnn",  // A B C D E
    "nnwnwwnnn", "nnnnnwwnw", "wnnnnwwnn", "nnwnnwwnn", "nnnnwwwnn",  // F G H I J
    "wnnnnnnww", "nnwnnnnww", "wnwnnnnwn", "nnnnwnnww", "wnnnwnnwn",  // K L M N O
    "nnwnwnnwn", "nnnnnnwww", "wnnnnnwwn", "nnwnnnwwn", "nnnnwnwwn",  // P Q R S T
    "wwnnnnnnw", "nwwnnnnnw", "wwwnnnnnn", "nwnnwnnnw", "wwnnwnnnn",  // U V W X Y
    "nwwnwnnnn", "nwnnnnwnw", "wwnnnnwnn", "nwwnnnwnn", "nwnwnwnnn",  // Z - . space $
    "nwnwnnnwn", "nwnnnwnwn", "nnnwnwnwn", "nwnnwnwnn",               // / + % *
});
static_assert(kCharacters.all_take(0, 44, {12, 15, 27}));
// Four rows of ten have the same ten pairs of wide bars, and each row one wide space of its own.
static_assert([] {
  constexpr std::array<std::string_view, 4> kRows = {"UVWXYZ-. *", "1234567890", "ABCDEFGHIJ", "KLMNOPQRST"};
  for (std::size_t row = 0; row < 4; ++row) {
    for (std::size_t column = 0; column < 10; ++column) {
      const Elements& first = kCharacters.elements[kCode39Characters.find(kRows[0][column])];
      const Elements& other = kCharacters.elements[kCode39Characters.find(kRows[row][column])];
      for (int i = 0; i < 9; ++i) {
        const bool wide = i % 2 == 0 ? first.wide(i) : i / 2 == static_cast<int>(row);
        if (other.wide(i) != wide) return false;
      }
    }
  }
  return true;
}());
static_assert(kCode39Characters.size() == 44 && kCode39Characters[kStartStop] == '*');

constexpr ValueTable kValues = value_table(kCode39Characters);

/// The published form: * at both ends and nowhere else; put there when the data has none.
Fault read_standard(const Request& request, Values& values) {
  std::span<const std::uint8_t> data = request.data;
  const bool framed = data.size() >= 2 && data.front() == '*' && data.back() == '*';
  if (framed) data = data.subspan(1, data.size() - 2);
  if (data.empty()) return {Reason::nothing_to_encode};

  values.push(kStartStop);
  const int first_position = framed ? 2 : 1;
  if (const Fault fault = append_values(kValues, data, values, first_position)) return fault;
  for (int i = 1; i < values.size(); ++i) {
    if (values[i] == kStartStop) return {Reason::misplaced_start_stop, i - 1 + first_position, '*'};
  }
  values.push(kStartStop);
  return {};
}

}  // namespace

Fault read_code39(const Request& request, Values& values) {
  if (request.dialect == Dialect::standard) return read_standard(request, values);
  if (const Fault fault = append_values(kValues, request.data, values)) return fault;
  if (values.size() < 2) return {Reason::no_start_stop, 0, values.size()};
  return {};
}

void construct_code39(const Request& request, Drawing& drawing) {
  Values& values = drawing.values;
  const int stop = values.pop();
  append_check_characters(request.rules, values, 1);
  values.push(stop);
  draw_with_pen(request, kCharacters, drawing.bars, [&](auto pen) { lay_out_discrete(values, pen); });
}

}  // namespace korvex::linear
