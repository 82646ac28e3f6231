// The EAN/UPC family (ISO/IEC 15420): EAN-13, UPC-A, EAN-8, UPC-E and the add-ons.
#include <array>
#include <cstddef>
#include <cstdint>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr int kDigitModules = 7;
constexpr int kUpceDigits = 6;  // that are drawn
constexpr Pattern kNormalGuard = modules("101");
constexpr Pattern kCentreGuard = modules("01010");
constexpr Pattern kUpceEndGuard = modules("010101");
constexpr Pattern kAddonStart = modules("1011");
constexpr Pattern kAddonSeparator = modules("01");

// ISO/IEC 15420, number set A; the others follow from it.
constexpr std::array<std::uint8_t, 10> kSetA = {
    0b0001101, 0b0011001, 0b0010011, 0b0111101, 0b0100011,
    0b0110001, 0b0101111, 0b0111011, 0b0110111, 0b0001011,
};
/// Number set C is the complement of A, B is C read backwards. By set (0 A, 1 B, 2 C) and digit.
constexpr auto kDigitPatterns = [] {
  std::array<std::array<std::uint8_t, 10>, 3> sets{kSetA};
  for (std::size_t digit = 0; digit < 10; ++digit) {
    const unsigned c = ~unsigned{kSetA[digit]} & 0x7F;
    unsigned b = 0;
    for (int i = 0; i < kDigitModules; ++i) b = b << 1 | (c >> i & 1U);
    sets[1][digit] = static_cast<std::uint8_t>(b);
    sets[2][digit] = static_cast<std::uint8_t>(c);
  }
  return sets;
}();
static_assert(kDigitPatterns[1][0] == 0b0100111 && kDigitPatterns[2][0] == 0b1110010);

/// Number sets of digits from left to right; the row is chosen by what is not drawn itself.
using SetRows = std::array<const char*, 10>;
// ISO/IEC 15420, EAN-13: by the first of 13 digits.
constexpr SetRows kEan13Sets = {"AAAAAA", "AABABB", "AABBAB", "AABBBA", "ABAABB",
                                "ABBAAB", "ABBBAA", "ABABAB", "ABABBA", "ABBABA"};
// UPC-E, number system 0: by the check digit.
constexpr SetRows kUpceSets = {"BBBAAA", "BBABAA", "BBAABA", "BBAAAB", "BABBAA",
                               "BAABBA", "BAAABB", "BABABA", "BABAAB", "BAABAB"};
// Five-digit add-on: by the weighted sum of the digits modulo 10.
constexpr SetRows kAddon5Sets = {"BBAAA", "BABAA", "BAABA", "BAAAB", "ABBAA",
                                 "AABBA", "AAABB", "ABABA", "ABAAB", "AABAB"};
// Two-digit add-on: by the number modulo 4.
constexpr std::array<const char*, 4> kAddon2Sets = {"AA", "AB", "BA", "BB"};

/// Every row has this many Bs; the first of the EAN-13 rows, for UPC-A, has none.
constexpr bool rows_have(const SetRows& rows, std::size_t first, int b_count) {
  for (std::size_t i = first; i < rows.size(); ++i) {
    int count = 0;
    for (const char* set = rows[i]; *set != '\0'; ++set) count += *set == 'B' ? 1 : 0;
    if (count != b_count) return false;
  }
  return true;
}
static_assert(rows_have(kEan13Sets, 1, 3) && rows_have(kUpceSets, 0, 3) && rows_have(kAddon5Sets, 0, 2));

std::uint32_t digit_modules(char set, int digit) {
  return kDigitPatterns[static_cast<std::size_t>(set - 'A')][static_cast<std::size_t>(digit)];
}

/// Draws `count` digits, at most six, from the value at `first` on, each in its set.
void put_digits(BarWriter& bars, const Values& values, int first, int count, const char* sets) {
  std::uint64_t run = 0;
  for (int i = 0; i < count; ++i) run = run << kDigitModules | digit_modules(sets[i], values[first + i]);
  // The writer takes up to 32 modules at once.
  const int right = count * kDigitModules / 2;
  bars.put(static_cast<std::uint32_t>(run >> right), count * kDigitModules - right);
  bars.put(static_cast<std::uint32_t>(run & ((1U << right) - 1)), right);
}

/// Draws two halves between guards: `half` digits from `first` on in the sets given, and `half` in set C.
void draw_halves(const Request& request, Drawing& drawing, int first, int half, const char* left_sets) {
  BarWriter bars(drawing.bars);
  bars.put(kNormalGuard);
  put_digits(bars, drawing.values, first, half, left_sets);
  bars.put(kCentreGuard);
  put_digits(bars, drawing.values, first + half, half, "CCCCCC");
  bars.put(kNormalGuard);
  bars.finish();
  if (!request.guards) return;

  BarWriter guards(drawing.guards);
  guards.put(kNormalGuard);
  guards.put_run(false, half * kDigitModules);
  guards.put(kCentreGuard);
  guards.put_run(false, half * kDigitModules);
  guards.put(kNormalGuard);
  guards.finish();
}

// ---- reading ----

/// The data are `shortest` digits, to which the check digit is added, or one more with it.
Fault read_checked_digits(const Request& request, int shortest, Values& values) {
  if (const Fault fault = append_values(kDigitValues, request.data, values)) return fault;
  const int count = static_cast<int>(request.data.size());
  if (count == shortest) {
    append_check_characters(request.rules, values);
    return {};
  }
  if (count != shortest + 1) return {Reason::bad_length, 0, count};
  if (request.dialect == Dialect::standard) {
    const int computed = check_character(request.rules.first, values.all().first(values.all().size() - 1));
    const int supplied = values[values.size() - 1];
    if (supplied != computed) return {Reason::wrong_check_digit, count, supplied, computed};
  }
  return {};
}

/// The ten digits of manufacturer and item number that six UPC-E digits stand for: the last one tells where
/// the zeros were.
std::array<Value, 10> upce_expanded(std::span<const Value> d) {
  switch (d[5]) {
    case 0:
    case 1:
    case 2:
      return {d[0], d[1], d[5], 0, 0, 0, 0, d[2], d[3], d[4]};
    case 3:
      return {d[0], d[1], d[2], 0, 0, 0, 0, 0, d[3], d[4]};
    case 4:
      return {d[0], d[1], d[2], d[3], 0, 0, 0, 0, 0, d[4]};
    default:
      return {d[0], d[1], d[2], d[3], d[4], 0, 0, 0, 0, d[5]};
  }
}

}  // namespace

Fault read_ean13(const Request& request, Values& values) {
  // Eleven digits are a UPC-A number without its check digit; the published form wants to be asked for upca.
  if (request.dialect == Dialect::korvex32 && request.data.size() == 11) return read_upca(request, values);
  return read_checked_digits(request, 12, values);
}

Fault read_upca(const Request& request, Values& values) {
  values.push(0);
  return read_checked_digits(request, 11, values);
}

Fault read_ean8(const Request& request, Values& values) {
  return read_checked_digits(request, 7, values);
}

Fault read_upce(const Request& request, Values& values) {
  Values digits;
  if (const Fault fault = append_values(kDigitValues, request.data, digits)) return fault;
  const int count = digits.size();
  const bool longer =
      request.dialect == Dialect::standard && (count == kUpceDigits + 1 || count == kUpceDigits + 2);
  if (count != kUpceDigits && !longer) return {Reason::bad_length, 0, count};
  if (longer && digits[0] != 0) return {Reason::bad_number_system, 1, digits[0]};

  for (int i = longer ? 1 : 0; values.size() < kUpceDigits; ++i) values.push(digits[i]);
  const int computed = upce_check_digit(values.all());
  if (count == kUpceDigits + 2 && digits[count - 1] != computed) {
    return {Reason::wrong_check_digit, count, digits[count - 1], computed};
  }
  return {};
}

Fault read_addon(const Request& request, Values& values) {
  if (const Fault fault = append_values(kDigitValues, request.data, values)) return fault;
  if (values.size() != 2 && values.size() != 5) return {Reason::bad_length, 0, values.size()};
  return {};
}

int upce_check_digit(std::span<const Value> six_digits) {
  return check_character(kGs1CheckDigit, upce_expanded(six_digits));
}

// ---- drawing ----

void construct_ean13(const Request& request, Drawing& drawing) {
  draw_halves(request, drawing, 1, 6, kEan13Sets[static_cast<std::size_t>(drawing.values[0])]);
}

void construct_ean8(const Request& request, Drawing& drawing) {
  draw_halves(request, drawing, 0, 4, "AAAA");
}

void construct_upce(const Request& request, Drawing& drawing) {
  const int check_digit = upce_check_digit(drawing.values.all());
  BarWriter bars(drawing.bars);
  bars.put(kNormalGuard);
  put_digits(bars, drawing.values, 0, kUpceDigits, kUpceSets[static_cast<std::size_t>(check_digit)]);
  bars.put(kUpceEndGuard);
  bars.finish();
  if (!request.guards) return;

  BarWriter guards(drawing.guards);
  guards.put(kNormalGuard);
  guards.put_run(false, kUpceDigits * kDigitModules);
  guards.put(kUpceEndGuard);
  guards.finish();
}

void construct_addon(const Request&, Drawing& drawing) {
  const Values& d = drawing.values;
  const int two_key = (10 * d[0] + d[1]) % 4;
  const char* sets = kAddon2Sets[static_cast<std::size_t>(two_key)];
  if (d.size() == 5) {
    const int five_key = (3 * (d[0] + d[2] + d[4]) + 9 * (d[1] + d[3])) % 10;
    sets = kAddon5Sets[static_cast<std::size_t>(five_key)];
  }
  BarWriter bars(drawing.bars);
  bars.put(kAddonStart);
  for (int i = 0; i < d.size(); ++i) {
    if (i > 0) bars.put(kAddonSeparator);
    bars.put(digit_modules(sets[i], d[i]), kDigitModules);
  }
  bars.finish();
}

}  // namespace korvex::linear
