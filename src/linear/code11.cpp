// Code 11: digits and the dash.
#include <array>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

// Seven modules each: a lone wide element has three, a pair of them two each.
constexpr std::array<Pattern, 13> kPatterns = {
    modules("1010111"), modules("1101011"), modules("1001011"), modules("1100101"),  // 0 1 2 3
    modules("1011011"), modules("1101101"), modules("1001101"), modules("1010011"),  // 4 5 6 7
    modules("1101001"), modules("1110101"), modules("1011101"),                      // 8 9 -
    modules("1011001"), modules("1011001"),                                          // start, stop
};

constexpr ValueTable kValues = value_table(kCode11Characters);

}  // namespace

Fault read_code11(const Request& request, Values& values) {
  if (request.data.empty() && request.dialect == Dialect::standard) return {Reason::nothing_to_encode};
  return append_values(kValues, request.data, values);
}

void construct_code11(const Request& request, Drawing& drawing) {
  append_check_characters(request.rules, drawing.values);
  draw_framed(request, kPatterns, drawing);
}

}  // namespace korvex::linear
