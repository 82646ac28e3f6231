#include "core/gs1_checks.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>

#include "core/check_digit.hpp"
#include "core/iso_codes.hpp"
#include "core/shown.hpp"

namespace korvex::gs1 {
namespace {

using std::to_string;

// ---- characters ----

constexpr std::string_view kSet82 =
    "!\"%&'()*+,-./0123456789:;<=>?ABCDEFGHIJKLMNOPQRSTUVWXYZ_abcdefghijklmnopqrstuvwxyz";
constexpr std::string_view kSet39 = "#-/0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
static_assert(kSet82.size() == 82 && std::ranges::is_sorted(kSet82) && kSet39.size() == 39);

constexpr bool is_capital(char c) {
  return c >= 'A' && c <= 'Z';
}

/// Sets of characters by their letter in a format, a bit each.
constexpr std::string_view kSets = "NXYZ-";
constexpr auto kSetsOf = [] {
  std::array<std::uint8_t, 256> sets{};
  for (const char c : kSet82) {
    const auto byte = static_cast<unsigned char>(c);
    sets[byte] = static_cast<std::uint8_t>(sets[byte] | 2U);
    const bool base_64 = is_digit(c) || is_capital(c) || (c >= 'a' && c <= 'z') || c == '-' || c == '_';
    if (is_digit(c)) sets[byte] |= 1U;
    if (base_64 || c == '=') sets[byte] |= 8U;
  }
  for (const char c : kSet39) sets[static_cast<unsigned char>(c)] |= 4U;
  sets['-'] |= 16U;
  return sets;
}();

/// The place of the first character that is not in the set; the length when all are.
std::size_t first_outside(char set, std::string_view text) {
  const unsigned bit = 1U << kSets.find(set);
  std::size_t at = 0;
  while (at < text.size() && (kSetsOf[static_cast<std::uint8_t>(text[at])] & bit) != 0) ++at;
  return at;
}

// ---- formats ----

/// A part of the data: `least` to `most` characters of a set. Only the last one varies.
struct Component {
  char set = 0;
  std::uint8_t least = 0;
  std::uint8_t most = 0;
  bool optional = false;

  [[nodiscard]] bool has_length(std::size_t length) const {
    return (length >= least && length <= most) || (optional && length == 0);
  }
};

struct Format {
  std::array<Component, 3> components{};
  int count = 0;
  int before_last = 0;  ///< characters of all components but the last

  [[nodiscard]] constexpr std::span<const Component> all() const {
    return std::span(components).first(static_cast<std::size_t>(count));
  }
  [[nodiscard]] constexpr const Component& last() const {
    return components[static_cast<std::size_t>(count - 1)];
  }
};

/// "N3[+X..9]": a letter, then a number of characters or the most of them; a lone hyphen is one.
constexpr Format format_of(std::string_view text) {
  Format format;
  for (std::size_t at = 0; at < text.size();) {
    if (kSets.find(text[at]) == std::string_view::npos) {
      ++at;
      continue;
    }
    if (format.count > 0) format.before_last += format.last().most;
    Component& component = format.components[static_cast<std::size_t>(format.count++)];
    component.set = text[at];
    component.optional = at > 0 && text[text.find_last_not_of('+', at - 1)] == '[';
    const bool varies = text.substr(++at).starts_with("..");
    if (varies) at += 2;
    int number = 0;
    for (; at < text.size() && is_digit(text[at]); ++at) number = number * 10 + text[at] - '0';
    component.most = static_cast<std::uint8_t>(number == 0 ? 1 : number);
    component.least = varies ? 1 : component.most;
  }
  return format;
}

constexpr auto kFormats = [] {
  std::array<Format, kIdentifiers.size()> formats;
  for (std::size_t i = 0; i < formats.size(); ++i) formats[i] = format_of(kIdentifiers[i].format);
  return formats;
}();
static_assert(std::ranges::all_of(kFormats, [](const Format& format) {
  for (const Component& component : format.all().first(format.all().size() - 1)) {
    if (component.least != component.most || component.optional) return false;
  }
  return true;
}));
// What needs no separator is as long as its first two digits say, and nothing else.
static_assert([] {
  for (std::size_t i = 0; i < kFormats.size(); ++i) {
    const IdentifierRow& row = kIdentifiers[i];
    const int predefined = find_prefix(row.identifier)->predefined;
    if (predefined == 0) continue;
    const Component& last = kFormats[i].last();
    const int length = static_cast<int>(row.identifier.size()) + kFormats[i].before_last + last.most;
    if (length != predefined || last.least != last.most || last.optional) return false;
  }
  return true;
}());

std::string counted(const Component& component, std::string_view least) {
  const std::string most = to_string(component.most);
  const std::string thing = component.set == 'N' ? "digit" : component.set == '-' ? "hyphen" : "character";
  const std::string number = component.least == component.most ? most : std::string(least) + most;
  return number + " " + thing + (component.most == 1 ? "" : "s");
}

/// "exactly 6 digits", "1 to 20 characters", "3 digits and 1 to 9 characters".
std::string described(const Format& format) {
  if (format.count == 1) {
    const Component& only = format.last();
    return (only.least == only.most ? "exactly " : "") + counted(only, "1 to ");
  }
  std::string text;
  for (const Component& component : format.all()) {
    if (!text.empty()) text += &component == &format.last() ? " and " : ", ";
    text += component.optional ? "perhaps " + counted(component, "up to ") : counted(component, "1 to ");
  }
  return text;
}

std::string wrong_length(const Format& format, std::string_view data) {
  return " takes " + described(format) + "; " + to_string(data.size()) + " given.";
}

std::string_view allowed(char set) {
  switch (set) {
    case 'N':
      return "digits";
    case 'X':
      return "letters, digits and !\"%&'()*+,-./:;<=>?_";
    case 'Y':
      return "capitals, digits and # - /";
    case 'Z':
      return "letters, digits, - and _, and = at the end";
    default:
      return "only a hyphen";
  }
}

std::string bad_character(const Component& component, char character, std::size_t position) {
  return " cannot hold the byte " + shown(static_cast<std::uint8_t>(character)) + " at position " +
         to_string(position) + "; there it takes " + std::string(allowed(component.set)) + ".";
}

/// Lengths and characters.
std::string format_fault(const Format& format, std::string_view data, std::size_t position) {
  const auto before_last = static_cast<std::size_t>(format.before_last);
  if (data.size() < before_last || !format.last().has_length(data.size() - before_last)) {
    return wrong_length(format, data);
  }
  std::size_t at = 0;
  for (const Component& component : format.all()) {
    const std::size_t end = std::min(at + component.most, data.size());
    at += first_outside(component.set, data.substr(at, end - at));
    if (at < end) return bad_character(component, data[at], position + at);
  }
  if (format.last().set == 'Z' && data.find_first_not_of('=', data.find('=')) != std::string_view::npos) {
    return bad_character(format.last(), '=', position + data.find('='));
  }
  return {};
}

// ---- check digits and characters ----

std::string check_digit_fault(std::string_view digits) {
  const int expected = check_digit(digits.substr(0, digits.size() - 1));
  const int given = digits.back() - '0';
  if (given == expected) return {};
  return " has the check digit " + to_string(given) + ", which is wrong: these digits have the check digit " +
         to_string(expected) + ".";
}

/// The check character pair of a model number (GS1 General Specifications, section 7.9): characters by their
/// places in set 82, weighted with the primes from the right, modulo 1021.
std::string pair_fault(std::string_view data) {
  constexpr std::array<int, 23> kPrimes = {2,  3,  5,  7,  11, 13, 17, 19, 23, 29, 31, 37,
                                           41, 43, 47, 53, 59, 61, 67, 71, 73, 79, 83};
  constexpr std::string_view kPairs = "23456789ABCDEFGHJKLMNPQRSTUVWXYZ";
  const std::string_view number = data.substr(0, data.size() - 2);
  int sum = 0;
  for (std::size_t i = 0; i < number.size(); ++i) {
    sum += static_cast<int>(kSet82.find(number[number.size() - 1 - i])) * kPrimes[i];
  }
  sum %= 1021;
  const std::string expected = {kPairs[static_cast<std::size_t>(sum / 32)],
                                kPairs[static_cast<std::size_t>(sum % 32)]};
  if (data.ends_with(expected)) return {};
  return " ends with the check characters " + quoted(data.substr(number.size())) +
         ", which are wrong: these characters have " + quoted(expected) + ".";
}

/// Letters count as 10 to 35 (ISO/IEC 7064, MOD 97-10).
int remainder_97(std::string_view characters, int remainder = 0) {
  for (const char c : characters) {
    remainder = is_digit(c) ? remainder * 10 + c - '0' : remainder * 100 + c - 'A' + 10;
    remainder %= 97;
  }
  return remainder;
}

std::string iban_fault(std::string_view data) {
  const auto is_right = [](char c) { return is_digit(c) || is_capital(c); };
  if (data.size() < 5 || !is_capital(data[0]) || !is_capital(data[1]) || !is_digit(data[2]) ||
      !is_digit(data[3]) || !std::ranges::all_of(data, is_right)) {
    return " takes an IBAN: two capitals, two check digits, then capitals and digits; " + excerpt(data) +
           " given.";
  }
  const int remainder = remainder_97("00", remainder_97(data.substr(0, 2), remainder_97(data.substr(4))));
  const std::string expected = to_string(198 - remainder).substr(1);
  if (data.substr(2, 2) == expected) return {};
  return " has the check digits " + std::string(data.substr(2, 2)) +
         ", which are wrong: this IBAN has the check digits " + expected + ".";
}

std::string piece_fault(std::string_view data) {
  if (std::string fault = check_digit_fault(data.substr(0, 14)); !fault.empty()) return fault;
  const std::string_view piece = data.substr(14, 2);
  const std::string_view total = data.substr(16);
  if (piece > "00" && piece <= total) return {};
  return " ends with piece " + std::string(piece) + " of " + std::string(total) +
         "; pieces are counted from 01 to their total.";
}

std::string company_prefix_fault(std::string_view data) {
  constexpr std::size_t kLeast = 4;  // digits
  if (data.size() >= kLeast && std::ranges::all_of(data.substr(0, kLeast), is_digit)) return {};
  return " begins with a GS1 Company Prefix, which has at least 4 digits; " + excerpt(data) + " given.";
}

// ---- dates and times ----

int days_of(int year, bool century_known, int month) {
  constexpr std::array<int, 13> kDays = {0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = year % 4 == 0 && (!century_known || year % 100 != 0 || year % 400 == 0);
  return month == 2 && leap ? 29 : kDays[static_cast<std::size_t>(month)];
}

/// A year of `year_digits`, month and day, then hour, minute and second as far as there are digits.
std::string moment_fault(std::string_view data, std::size_t year_digits, bool day_00 = false) {
  const auto two = [&](std::size_t at) { return number_of(data.substr(year_digits + at, 2)); };
  const int month = two(0);
  const int day = two(2);
  const int days = month >= 1 && month <= 12
                       ? days_of(number_of(data.substr(0, year_digits)), year_digits == 4, month)
                       : 0;
  if (day > days || days == 0 || (day == 0 && !day_00)) {
    return " has the date " + quoted(data.substr(0, year_digits + 4)) + ", which does not exist; it is " +
           (year_digits == 4 ? "YYYYMMDD" : "YYMMDD") + (day_00 ? ", with day 00 for the month." : ".");
  }
  constexpr std::array<int, 3> kMost = {23, 59, 59};
  for (std::size_t i = 0; year_digits + 6 + 2 * i <= data.size(); ++i) {
    if (i < kMost.size() && two(4 + 2 * i) <= kMost[i]) continue;
    return " has the time " + quoted(data.substr(year_digits + 4)) +
           ", which does not exist; hours go to 23, minutes and seconds to 59.";
  }
  return {};
}

std::string dates_fault(std::string_view data) {
  std::string fault = moment_fault(data.substr(0, 6), 2);
  return fault.empty() && data.size() > 6 ? moment_fault(data.substr(6), 2) : fault;
}

// ---- codes ----

std::string country_fault(std::string_view code, bool takes_999 = false) {
  if (iso::is_listed(iso::kCountryNumbers, code) || (takes_999 && code == "999")) return {};
  return " has the country " + quoted(code) + "; it takes numbers of ISO 3166-1, such as 276" +
         (takes_999 ? ", or 999." : ".");
}

std::string countries_fault(std::string_view data) {
  if (data.size() % 3 != 0) {
    return " takes 1 to 5 countries of 3 digits; " + to_string(data.size()) + " digits given.";
  }
  for (; !data.empty(); data.remove_prefix(3)) {
    if (std::string fault = country_fault(data.substr(0, 3)); !fault.empty()) return fault;
  }
  return {};
}

std::string percent_fault(std::string_view data, std::size_t position) {
  const auto is_hexadecimal = [](char c) {
    return is_digit(c) || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
  };
  for (std::size_t at = data.find('%'); at != std::string_view::npos; at = data.find('%', at + 1)) {
    const std::string_view digits = data.substr(at + 1, 2);
    if (digits.size() == 2 && std::ranges::all_of(digits, is_hexadecimal)) continue;
    return " has a % at position " + to_string(position + at) +
           " without two hexadecimal digits behind it; %25 is the character itself.";
  }
  return {};
}

std::string only(std::string_view values, std::string_view data) {
  return " is " + std::string(values) + "; " + excerpt(data) + " given.";
}

/// What is beyond characters and lengths, which are right.
std::string content_fault(Content content, const Format& format, std::string_view data,
                          std::size_t position) {
  switch (content) {
    case Content::any:
      return {};
    case Content::check_digit:
      return check_digit_fault(data.substr(0, format.components[0].most));
    case Content::asset:
      if (data[0] != '0') return " begins with 0; " + excerpt(data) + " given.";
      return check_digit_fault(data.substr(0, format.components[0].most));
    case Content::piece:
      return piece_fault(data);
    case Content::company_prefix:
      return company_prefix_fault(data);
    case Content::model: {
      std::string fault = company_prefix_fault(data.substr(0, std::max<std::size_t>(data.size(), 2) - 2));
      return fault.empty() ? pair_fault(data) : fault;
    }
    case Content::iban:
      return iban_fault(data);
    case Content::date:
      return moment_fault(data, 2);
    case Content::dates:
      return dates_fault(data);
    case Content::date_or_month:
    case Content::date_time_or_month:
      return moment_fault(data, 2, true);
    case Content::date_time:
      if (data.size() % 2 != 0)
        return " takes two digits each for hour, minute and second; an odd number of digits given.";
      return moment_fault(data, 2);
    case Content::birth_time:
      return moment_fault(data, 4);
    case Content::country:
      return country_fault(data.substr(0, 3));
    case Content::country_or_999:
      return country_fault(data.substr(0, 3), true);
    case Content::countries:
      return countries_fault(data);
    case Content::country_letters:
      if (iso::is_listed(iso::kCountryLetters, data)) return {};
      return " has the country " + quoted(data) + "; it takes two capitals of ISO 3166-1, such as DE.";
    case Content::currency:
      if (iso::is_listed(iso::kCurrencyNumbers, data.substr(0, 3))) return {};
      return " has the currency " + quoted(data.substr(0, 3)) +
             "; it takes numbers of ISO 4217, such as 978.";
    case Content::percent:
      return percent_fault(data, position);
    case Content::coordinates:
      if (data.substr(0, 10) <= "1800000000" && data.substr(10) <= "3600000000") return {};
      return only("a latitude up to 1800000000 and a longitude up to 3600000000", data);
    case Content::zero_or_one:
      return data <= "1" ? "" : only("0 or 1", data);
    case Content::media_type:
      return (data >= "01" && data <= "10") || data >= "80" ? "" : only("01 to 10 or 80 to 99", data);
    case Content::sex:
      return data <= "2" || data == "9" ? "" : only("0, 1, 2 or 9", data);
    case Content::sequence:
      if (data[1] == '/' && data[0] > '0' && data[0] <= data[2]) return {};
      return only("a position from 1, a / and the total, such as 1/2", data);
    case Content::roll:
      if (data[12] <= '1' || data[12] == '9') return {};
      return " has the winding direction " + shown(static_cast<std::uint8_t>(data[12])) + " at position " +
             to_string(position + 12) + "; 0, 1 and 9 are allowed.";
    case Content::serial_number:
      if (data[0] != '0' || data.size() == 1) return {};
      return " has no zero in front; " + excerpt(data) + " given.";
  }
  return {};
}

}  // namespace

std::string excerpt(std::string_view text) {
  constexpr std::size_t kMost = 24;
  return text.size() <= kMost ? quoted(text) : quoted(text.substr(0, kMost)) + "...";
}

std::string fault_of(const IdentifierRow& row, std::string_view data, std::size_t position) {
  const Format& format = kFormats[static_cast<std::size_t>(&row - kIdentifiers.data())];
  std::string fault = format_fault(format, data, position);
  return fault.empty() ? content_fault(row.content, format, data, position) : fault;
}

}  // namespace korvex::gs1
