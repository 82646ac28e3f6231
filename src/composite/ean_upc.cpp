// EAN-13, UPC-A, UPC-E and EAN-8 (ISO/IEC 15420) as linear components.
#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>

#include "composite/row.hpp"
#include "composite/stack.hpp"
#include "composite/symbologies.hpp"
#include "composite/text.hpp"

namespace korvex::composite {
namespace {

constexpr int kNumberDigits = 12;  // of an EAN-13 without its check digit; shorter numbers get zeros in front
constexpr int kHeight = 74;
constexpr int kEan8Height = 60;
constexpr int kQuietModules = 7;
constexpr int kDigitModules = 7;
constexpr int kSeparatorRows = 3;
constexpr int kSeparatorHeight = 2;
// Light modules left of the 2D component, and left of an EAN-8 below a CC-B, which is wider.
constexpr int kLeftPad = 3;
constexpr int kEan8LeftPad = 2;
constexpr int kEan8CcBLeftPad = 8;

// ISO/IEC 15420, number set A: seven modules, space first. C is its complement, B is C read backwards.
constexpr std::array<std::uint8_t, 10> kSetA = {
    0b0001101, 0b0011001, 0b0010011, 0b0111101, 0b0100011,
    0b0110001, 0b0101111, 0b0111011, 0b0110111, 0b0001011,
};
enum class NumberSet : std::uint8_t { a, b, c };

constexpr std::uint64_t digit_modules(NumberSet set, int digit) {
  const unsigned a = kSetA[static_cast<std::size_t>(digit)];
  const unsigned c = ~a & 0x7FU;
  if (set == NumberSet::a) return a;
  if (set == NumberSet::c) return c;
  unsigned b = 0;
  for (int i = 0; i < kDigitModules; ++i) b = b << 1 | (c >> i & 1U);
  return b;
}
static_assert(digit_modules(NumberSet::b, 0) == 0b0100111 && digit_modules(NumberSet::c, 0) == 0b1110010);

/// Which of six digits are from number set B, the first in the highest of six bits: by the first digit of an
/// EAN-13; UPC-E has the complement, by its check digit, but for the digit 0.
constexpr std::array<unsigned, 10> kSetBDigits = {
    0b000000, 0b001011, 0b001101, 0b001110, 0b010011, 0b011001, 0b011100, 0b010101, 0b010110, 0b011010,
};
constexpr unsigned upce_set_b_digits(int check) {
  return ~(check == 0 ? 0b000111U : kSetBDigits[static_cast<std::size_t>(check)]) & 0b111111U;
}

/// The number with its check digit, as values.
using Digits = std::array<int, kNumberDigits + 1>;

Fault read_digits(const Request& request, Digits& digits) {
  if (const Fault fault = check_digits(request.linear, kNumberDigits)) return fault;
  std::array<std::uint8_t, kNumberDigits> text;
  text.fill('0');
  std::ranges::copy(request.linear, text.end() - static_cast<std::ptrdiff_t>(request.linear.size()));
  std::ranges::transform(text, digits.begin(), [](std::uint8_t digit) { return digit - '0'; });
  digits.back() = check_digit(text);
  return {};
}

std::string shown(std::span<const int> digits) {
  std::string text;
  for (const int digit : digits) text.push_back(static_cast<char>('0' + digit));
  return text;
}

void put_quiet_and_guard(Row& row) {
  row.put_light(kQuietModules);
  row.put(0b101, 3);
}
void put_centre_guard(Row& row) {
  row.put(0b01010, 5);
}
void put_guard_and_quiet(Row& row) {
  row.put(0b101, 3);
  row.put_light(kQuietModules);
  row.finish();
}

/// Appends digits of which those with a bit in `set_b` are from number set B, the others from A.
void put_left(std::span<const int> digits, unsigned set_b, Row& row) {
  unsigned bit = 1U << (digits.size() - 1);
  for (const int digit : digits) {
    row.put(digit_modules((set_b & bit) != 0 ? NumberSet::b : NumberSet::a, digit), kDigitModules);
    bit >>= 1;
  }
}
void put_right(std::span<const int> digits, Row& row) {
  for (const int digit : digits) row.put(digit_modules(NumberSet::c, digit), kDigitModules);
}

/// Two lines of dark modules that go on from the outer guard bars: one module wider in the middle row.
Row separator(int width, bool middle) {
  const int outside = kQuietModules - (middle ? 1 : 0);
  Row row;
  row.put_light(outside);
  row.put(1, 1);
  row.put_light(width - 2 * outside - 2);
  row.put(1, 1);
  row.put_light(outside);
  row.finish();
  return row;
}

/// Lays a linear component, `linear_pad` light modules before it, below the 2D component.
void lay_rows(const Row& row, int height, int linear_pad, const Component2d& component, int component_pad,
              Symbol& symbol) {
  if (component.kind == Component::none) {
    Stack(symbol, component, 1, row.width()).add(row, 0, height);
    return;
  }
  Stack stack(symbol, component, kSeparatorRows + 1, linear_pad + row.width());
  stack.add_component(component_pad);
  for (int i = 0; i < kSeparatorRows; ++i) {
    stack.add(separator(row.width(), i == kSeparatorRows / 2), linear_pad, kSeparatorHeight);
  }
  stack.add(row, linear_pad, height);
}

/// The six digits of a UPC-E from the twelve of its UPC-A with a zero in front: 0, number system, five digits
/// of the manufacturer, five of the item.
std::optional<std::array<int, 6>> suppress_zeros(const Digits& d) {
  const auto zeros = [&d](std::size_t first, std::size_t last) {
    return std::all_of(d.begin() + static_cast<std::ptrdiff_t>(first),
                       d.begin() + static_cast<std::ptrdiff_t>(last) + 1,
                       [](int digit) { return digit == 0; });
  };
  if (d[4] <= 2 && zeros(5, 8)) return {{d[2], d[3], d[9], d[10], d[11], d[4]}};
  if (zeros(5, 9)) return {{d[2], d[3], d[4], d[10], d[11], 3}};
  if (zeros(6, 10)) return {{d[2], d[3], d[4], d[5], d[11], 4}};
  if (d[11] >= 5 && zeros(7, 10)) return {{d[2], d[3], d[4], d[5], d[6], d[11]}};
  return std::nullopt;
}

}  // namespace

Fault build_ean13(const Request& request, Symbol& symbol, Details* details) {
  Digits digits;
  if (const Fault fault = read_digits(request, digits)) return fault;
  Component2d component;
  if (const Fault fault = encode_cc_a_or_b(request, 4, component, details)) return fault;

  Row row;
  put_quiet_and_guard(row);
  put_left(std::span(digits).subspan(1, 6), kSetBDigits[static_cast<std::size_t>(digits[0])], row);
  put_centre_guard(row);
  put_right(std::span(digits).subspan(7), row);
  put_guard_and_quiet(row);
  if (details != nullptr) {
    details->linear_text = shown(std::span(digits).subspan(request.symbology == Symbology::upca ? 1 : 0));
  }
  lay_rows(row, kHeight, 0, component, kLeftPad, symbol);
  return {};
}

Fault build_upce(const Request& request, Symbol& symbol, Details* details) {
  Digits digits;
  if (const Fault fault = read_digits(request, digits)) return fault;
  if (request.standard() && (digits[0] != 0 || digits[1] != 0)) return {Reason::number_system_not_zero};
  const auto suppressed = suppress_zeros(digits);
  if (!suppressed) return {Reason::zeros_not_suppressible};
  Component2d component;
  if (const Fault fault = encode_cc_a_or_b(request, 2, component, details)) return fault;

  Row row;
  put_quiet_and_guard(row);
  put_left(*suppressed, upce_set_b_digits(digits.back()), row);
  row.put(0b010101, 6);
  row.put_light(kQuietModules);
  row.finish();
  if (details != nullptr) {
    details->linear_text = shown(std::array{0}) + shown(*suppressed) + shown(std::span(digits).last(1));
  }
  lay_rows(row, kHeight, 0, component, kLeftPad, symbol);
  return {};
}

Fault build_ean8(const Request& request, Symbol& symbol, Details* details) {
  constexpr std::size_t kFirst = 5;  // of the digits that are drawn
  Digits digits;
  if (const Fault fault = read_digits(request, digits)) return fault;
  Component2d component;
  if (const Fault fault = encode_cc_a_or_b(request, 3, component, details)) return fault;

  Row row;
  put_quiet_and_guard(row);
  put_left(std::span(digits).subspan(kFirst, 4), 0, row);
  put_centre_guard(row);
  put_right(std::span(digits).subspan(kFirst + 4), row);
  put_guard_and_quiet(row);
  if (details != nullptr) details->linear_text = shown(std::span(digits).subspan(kFirst));
  const bool wide = component.kind == Component::cc_b;
  lay_rows(row, kEan8Height, wide ? kEan8CcBLeftPad : 0, component, wide ? 0 : kEan8LeftPad, symbol);
  return {};
}

}  // namespace korvex::composite
