// The EAN/UPC family (ISO/IEC 15420): EAN-13, UPC-A, EAN-8, UPC-E and the add-ons.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

constexpr int kDigitModules = 7;
constexpr Pattern kNormalGuard = modules("101");
constexpr Pattern kCentreGuard = modules("01010");
constexpr Pattern kUpceEndGuard = modules("010101");
constexpr Pattern kAddonStart = modules("1011");
constexpr Pattern kAddonSeparator = modules("01");

// ISO/IEC 15420, Table 1, number set A; the others follow from it.
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
// ISO/IEC 15420, Table 2: by the first of 13 digits.
constexpr SetRows kEan13Sets = {"AAAAAA", "AABABB", "AABBAB", "AABBBA", "ABAABB",
                                "ABBAAB", "ABBBAA", "ABABAB", "ABABBA", "ABBABA"};
// Table 4, number system 0: by the check digit.
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

/// Draws values first to before end, each in its set; three to a run keep the writer quick.
void put_digits(BarWriter& bars, const Values& values, int first, int end, const char* sets) {
  while (first < end) {
    Pattern run;
    for (const int run_end = std::min(first + 3, end); first < run_end; ++first) {
      run.modules = run.modules << kDigitModules | digit_modules(*sets++, values[first]);
      run.count += kDigitModules;
    }
    bars.put(run);
  }
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
std::array<std::uint8_t, 10> upce_expanded(std::span<const std::uint8_t> d) {
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
  constexpr int kDrawn = 6;
  Values digits;
  if (const Fault fault = append_values(kDigitValues, request.data, digits)) return fault;
  const int count = digits.size();
  const bool longer = request.dialect == Dialect::standard && (count == kDrawn + 1 || count == kDrawn + 2);
  if (count != kDrawn && !longer) return {Reason::bad_length, 0, count};
  if (longer && digits[0] != 0) return {Reason::bad_number_system, 1, digits[0]};

  for (int i = longer ? 1 : 0; values.size() < kDrawn; ++i) values.push(digits[i]);
  const int computed = upce_check_digit(values.all());
  if (count == kDrawn + 2 && digits[count - 1] != computed) {
    return {Reason::wrong_check_digit, count, digits[count - 1], computed};
  }
  return {};
}

Fault read_addon(const Request& request, Values& values) {
  if (const Fault fault = append_values(kDigitValues, request.data, values)) return fault;
  if (values.size() != 2 && values.size() != 5) return {Reason::bad_length, 0, values.size()};
  return {};
}

int upce_check_digit(std::span<const std::uint8_t> six_digits) {
  return check_character(kGs1CheckDigit, upce_expanded(six_digits));
}

// ---- drawing ----

void construct_ean13(const Request& request, Drawing& drawing) {
  const Values& digits = drawing.values;
  drawing.bars.put(kNormalGuard);
  put_digits(drawing.bars, digits, 1, 7, kEan13Sets[static_cast<std::size_t>(digits[0])]);
  drawing.bars.put(kCentreGuard);
  put_digits(drawing.bars, digits, 7, 13, "CCCCCC");
  drawing.bars.put(kNormalGuard);
  if (request.guards) {
    drawing.guards.put(kNormalGuard);
    drawing.guards.put_run(false, 6 * kDigitModules);
    drawing.guards.put(kCentreGuard);
    drawing.guards.put_run(false, 6 * kDigitModules);
    drawing.guards.put(kNormalGuard);
  }
}

void construct_ean8(const Request& request, Drawing& drawing) {
  const Values& digits = drawing.values;
  drawing.bars.put(kNormalGuard);
  put_digits(drawing.bars, digits, 0, 4, "AAAA");
  drawing.bars.put(kCentreGuard);
  put_digits(drawing.bars, digits, 4, 8, "CCCC");
  drawing.bars.put(kNormalGuard);
  if (request.guards) {
    drawing.guards.put(kNormalGuard);
    drawing.guards.put_run(false, 4 * kDigitModules);
    drawing.guards.put(kCentreGuard);
    drawing.guards.put_run(false, 4 * kDigitModules);
    drawing.guards.put(kNormalGuard);
  }
}

void construct_upce(const Request& request, Drawing& drawing) {
  const Values& digits = drawing.values;
  const int check_digit = upce_check_digit(digits.all());
  drawing.bars.put(kNormalGuard);
  put_digits(drawing.bars, digits, 0, 6, kUpceSets[static_cast<std::size_t>(check_digit)]);
  drawing.bars.put(kUpceEndGuard);
  if (request.guards) {
    drawing.guards.put(kNormalGuard);
    drawing.guards.put_run(false, 6 * kDigitModules);
    drawing.guards.put(kUpceEndGuard);
  }
}

void construct_addon(const Request&, Drawing& drawing) {
  const Values& d = drawing.values;
  const int key =
      d.size() == 2 ? (10 * d[0] + d[1]) % 4 : (3 * (d[0] + d[2] + d[4]) + 9 * (d[1] + d[3])) % 10;
  const char* sets =
      d.size() == 2 ? kAddon2Sets[static_cast<std::size_t>(key)] : kAddon5Sets[static_cast<std::size_t>(key)];
  drawing.bars.put(kAddonStart);
  for (int i = 0; i < d.size(); ++i) {
    if (i > 0) drawing.bars.put(kAddonSeparator);
    drawing.bars.put(digit_modules(sets[i], d[i]), kDigitModules);
  }
}

}  // namespace korvex::linear
