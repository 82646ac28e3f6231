// MSI: four bits a digit, most significant first; a 0 is drawn 100 and a 1 is drawn 110.
#include <array>
#include <cstddef>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr int kStart = 10;
constexpr std::array<Pattern, 12> kPatterns = [] {
  std::array<Pattern, 12> patterns;
  for (unsigned digit = 0; digit < 10; ++digit) {
    for (int bit = 3; bit >= 0; --bit) {
      patterns[digit].modules = patterns[digit].modules << 3 | ((digit >> bit & 1U) != 0 ? 0b110U : 0b100U);
    }
    patterns[digit].count = 12;
  }
  patterns[kStart] = modules("110");
  patterns[kStart + 1] = modules("1001");
  return patterns;
}();
static_assert(kPatterns[0].modules == 0b100'100'100'100 && kPatterns[9].modules == 0b110'100'100'110);

/// Luhn's check digit: every second digit from the right is doubled, and digits of the products are added.
int mod10_check_digit(const Values& digits) {
  int sum = 0;
  bool doubled = true;
  for (int i = digits.size(); i-- > 0; doubled = !doubled) {
    const int weighted = doubled ? 2 * digits[i] : digits[i];
    sum += weighted / 10 + weighted % 10;
  }
  return (10 - sum % 10) % 10;
}

/// Weights 2 to 7 from the right, again and again. 10 is no digit: such data has no check digit modulo 11.
int mod11_check_digit(const Values& digits) {
  int sum = 0;
  int weight = 2;
  for (int i = digits.size(); i-- > 0; weight = weight == 7 ? 2 : weight + 1) sum += weight * digits[i];
  return (11 - sum % 11) % 11;
}

Fault append_usual_check_digits(CheckCharacters check, Values& values) {
  using enum CheckCharacters;
  if (check == mod11 || check == mod11_mod10) {
    const int digit = mod11_check_digit(values);
    if (digit == 10) return {Reason::check_digit_is_ten};
    values.push(digit);
  }
  if (check == mod10 || check == mod10_mod10 || check == mod11_mod10) values.push(mod10_check_digit(values));
  if (check == mod10_mod10) values.push(mod10_check_digit(values));
  return {};
}

}  // namespace

Fault read_msi(const Request& request, Values& values) {
  if (const Fault fault = read_digits(request, values)) return fault;
  return append_usual_check_digits(request.check, values);
}

void construct_msi(const Request& request, Drawing& drawing) {
  append_check_characters(request.rules, drawing.values);
  draw_framed(request, kPatterns, drawing);
}

}  // namespace korvex::linear
