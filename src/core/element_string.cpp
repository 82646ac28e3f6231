#include "core/element_string.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

#include "core/shown.hpp"
#include "korvex/gs1.hpp"

namespace korvex {
namespace {

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

/// The characters of element strings, and the space, which GS1 DataBar Expanded has as well.
bool is_allowed(char character) {
  constexpr std::string_view kOthers = "!\"%&'()*+,-./:;<=>?_ ";
  return is_digit(character) || (character >= 'A' && character <= 'Z') ||
         (character >= 'a' && character <= 'z') || kOthers.find(character) != std::string_view::npos;
}

/// The check digit of `digits`, the last of which has the weight 3.
char check_digit(std::string_view digits) {
  int sum = 0;
  int weight = digits.size() % 2 == 0 ? 1 : 3;
  for (const char digit : digits) {
    sum += (digit - '0') * weight;
    weight = 4 - weight;
  }
  return static_cast<char>('0' + (10 - sum % 10) % 10);
}

enum class Kind : std::uint8_t {
  fixed_digits,
  check_digit,  ///< fixed digits, the last of which is the check digit of the others
  variable,
};

/// Application identifiers by their first two digits.
struct Identifiers {
  int first;
  int last;
  int digits;
  Kind kind;
  int most;  ///< characters of data
};

// GS1 General Specifications, section 3: number of digits and longest field; fields of fixed length are those
// of the list in section 7 that never need FNC1.
constexpr auto kIdentifiers = std::to_array<Identifiers>({
    {0, 0, 2, Kind::check_digit, 18},   {1, 3, 2, Kind::check_digit, 14},
    {4, 4, 2, Kind::fixed_digits, 16},  {10, 10, 2, Kind::variable, 20},
    {11, 19, 2, Kind::fixed_digits, 6}, {20, 20, 2, Kind::fixed_digits, 2},
    {21, 22, 2, Kind::variable, 20},    {23, 25, 3, Kind::variable, 30},
    {30, 30, 2, Kind::variable, 8},     {31, 36, 4, Kind::fixed_digits, 6},
    {37, 37, 2, Kind::variable, 8},     {39, 39, 4, Kind::variable, 18},
    {40, 40, 3, Kind::variable, 30},    {41, 41, 3, Kind::check_digit, 13},
    {42, 42, 3, Kind::variable, 20},    {43, 43, 4, Kind::variable, 70},
    {70, 70, 4, Kind::variable, 30},    {71, 71, 3, Kind::variable, 20},
    {72, 72, 4, Kind::variable, 30},    {80, 82, 4, Kind::variable, 90},
    {90, 90, 2, Kind::variable, 30},    {91, 99, 2, Kind::variable, 90},
});

const Identifiers* find_identifiers(std::string_view identifier) {
  const int number = (identifier[0] - '0') * 10 + identifier[1] - '0';
  const auto found = std::ranges::find_if(
      kIdentifiers, [number](const Identifiers& row) { return row.first <= number && number <= row.last; });
  return found == kIdentifiers.end() ? nullptr : &*found;
}

struct Element {
  std::string_view identifier;
  std::string_view data;
  std::size_t position;  ///< of the data, from 1
  const Identifiers* rules;
};

Error wrong(std::string message) {
  return {Code::bad_data, std::move(message)};
}

std::string bracketed(std::string_view identifier) {
  return std::string(1, '(').append(identifier) + ')';
}

/// Digits of the bracketed identifier at `index`, 0 when none stands there. It has 2 to 4 digits; any other
/// bracket is data.
std::size_t identifier_digits(std::string_view text, std::size_t index) {
  if (text[index] != '(') return 0;
  std::size_t digits = 0;
  while (index + 1 + digits < text.size() && is_digit(text[index + 1 + digits])) ++digits;
  const bool closed = index + 1 + digits < text.size() && text[index + 1 + digits] == ')';
  return closed && digits >= 2 && digits <= 4 ? digits : 0;
}

std::optional<Error> check_data(const Element& element) {
  const Identifiers& rules = *element.rules;
  const std::string name = bracketed(element.identifier);
  const auto size = static_cast<int>(element.data.size());
  if (rules.kind == Kind::variable) {
    if (size < 1 || size > rules.most) {
      return wrong(name + " takes 1 to " + std::to_string(rules.most) + " characters; " +
                   std::to_string(size) + " given.");
    }
    const auto bad = std::ranges::find_if_not(element.data, is_allowed);
    if (bad != element.data.end()) {
      const auto position = element.position + static_cast<std::size_t>(bad - element.data.begin());
      return wrong(name + " cannot hold the character at position " + std::to_string(position) +
                   "; letters, digits, space and !\"%&'()*+,-./:;<=>?_ are allowed.");
    }
    return std::nullopt;
  }
  if (size != rules.most || !std::ranges::all_of(element.data, is_digit)) {
    return wrong(name + " takes exactly " + std::to_string(rules.most) + " digits; " + quoted(element.data) +
                 " given.");
  }
  if (rules.kind == Kind::check_digit) {
    const char expected = check_digit(element.data.substr(0, element.data.size() - 1));
    if (element.data.back() != expected) {
      return wrong("The check digit " + std::string(1, element.data.back()) + " of " + name +
                   " is wrong: these digits have the check digit " + std::string(1, expected) + ".");
    }
  }
  return std::nullopt;
}

Result<std::vector<Element>> parse(BracketedText part) {
  const std::string_view text = part.text;
  std::vector<Element> elements;
  for (std::size_t index = 0; index < text.size();) {
    const std::size_t digits = identifier_digits(text, index);
    if (digits == 0) {
      return wrong("An application identifier of 2 to 4 digits in brackets is due at position " +
                   std::to_string(index + 1) + " of the " + std::string(part.name) + ".");
    }
    Element element;
    element.identifier = text.substr(index + 1, digits);
    element.rules = find_identifiers(element.identifier);
    if (element.rules == nullptr || static_cast<std::size_t>(element.rules->digits) != digits) {
      return wrong(bracketed(element.identifier) + " at position " + std::to_string(index + 1) + " of the " +
                   std::string(part.name) + " is no application identifier.");
    }
    index += digits + 2;
    std::size_t end = index;
    while (end < text.size() && identifier_digits(text, end) == 0) ++end;
    element.data = text.substr(index, end - index);
    element.position = index + 1;
    if (std::optional<Error> error = check_data(element)) return *std::move(error);
    elements.push_back(element);
    index = end;
  }
  return elements;
}

}  // namespace

Result<std::string> plain_element_string(BracketedText part, char separator) {
  const Result<std::vector<Element>> elements = parse(part);
  if (!elements) return elements.error();
  std::string plain;
  bool separate = false;
  for (const Element& element : *elements) {
    if (separate) plain.push_back(separator);
    plain.append(element.identifier).append(element.data);
    separate = element.rules->kind == Kind::variable;
  }
  return plain;
}

Result<std::string> plain_item_number(BracketedText part) {
  const Result<std::vector<Element>> elements = parse(part);
  if (!elements) return elements.error();
  if (elements->size() != 1 || elements->front().identifier != "01") {
    return wrong("The " + std::string(part.name) + " is one item number, (01) and its 14 digits; other " +
                 "identifiers go into the 2D component.");
  }
  return std::string(elements->front().data.substr(0, elements->front().data.size() - 1));
}

bool gs1::is_bracketed(std::string_view text) {
  return text.starts_with('(');
}

Result<std::string> gs1::element_string(std::string_view bracketed) {
  return plain_element_string({"data", bracketed}, gs1::kSeparator);
}

}  // namespace korvex
