#include "composite/item_number.hpp"

#include <algorithm>
#include <cstddef>

#include "composite/text.hpp"
#include "core/element_string.hpp"
#include "core/shown.hpp"

namespace korvex::composite {
namespace {

constexpr std::size_t kGtinDigits = 14;
constexpr std::string_view kGtin = "01";

/// Digits of the number, check digit included.
std::size_t number_digits(Symbology symbology) {
  switch (symbology) {
    case Symbology::ean13:
      return 13;
    case Symbology::upca:
    case Symbology::upce:
      return 12;
    case Symbology::ean8:
      return 8;
    default:
      return kGtinDigits;
  }
}

Error wrong(std::string message) {
  return {Code::bad_data, std::move(message)};
}

/// The same for a GTIN behind its identifier, of which the symbol has the last digits.
std::optional<Error> append_gtin(Symbology symbology, std::string_view text, std::string& plain) {
  std::string gtin;
  gtin.reserve(text.size());
  if (auto error = append_plain({text, "linear component's text"}, {}, gtin)) return error;
  if (gtin.size() != kGtin.size() + kGtinDigits || !gtin.starts_with(kGtin)) {
    return wrong(
        "The linear component's text is one item number, (01) and its 14 digits; other identifiers go into "
        "the 2D component.");
  }
  const std::string_view digits = std::string_view(gtin).substr(kGtin.size());
  const std::size_t zeros = kGtinDigits - number_digits(symbology);
  if (digits.find_first_not_of('0') < zeros) {
    return wrong(name_of(symbology) + " holds item numbers whose 14 digits begin with " +
                 std::to_string(zeros) + (zeros == 1 ? " zero; " : " zeros; ") + std::string(digits) +
                 " given.");
  }
  plain += digits.substr(zeros, digits.size() - zeros - 1);
  return std::nullopt;
}

/// The eleven digits of the UPC-A number for the six of UPC-E, d: zeros go in where the last one says
/// (ISO/IEC 15420).
std::string with_zeros(std::string_view d) {
  const std::string digits(d.substr(0, 5));
  switch (d[5]) {
    case '0':
    case '1':
    case '2':
      return "0" + digits.substr(0, 2) + d[5] + "0000" + digits.substr(2);
    case '3':
      return "0" + digits.substr(0, 3) + "00000" + digits.substr(3);
    case '4':
      return "0" + digits.substr(0, 4) + "00000" + digits.substr(4);
    default:
      return "0" + digits + "0000" + d[5];
  }
}

std::string lengths(Symbology symbology) {
  const std::size_t digits = number_digits(symbology);
  const std::string usual = std::to_string(digits - 1) + " digits, " + std::to_string(digits) +
                            " with the check digit, or (01) and 14 digits";
  return symbology == Symbology::upce ? "6 to 8 digits, or of the UPC-A number " + usual : usual;
}

}  // namespace

std::optional<Error> append_item_number(Symbology symbology, std::string_view text, std::string& plain) {
  if (gs1::is_bracketed(text) || (text.size() == kGtin.size() + kGtinDigits && text.starts_with(kGtin))) {
    return append_gtin(symbology, text, plain);
  }
  const std::size_t digits = number_digits(symbology);
  std::string_view number = text;
  std::string with_all_zeros;  // of a UPC-E number
  if (const auto bad = std::ranges::find_if_not(number, is_digit); bad != number.end()) {
    return wrong(name_of(symbology) + " has no character for byte " + shown(static_cast<std::uint8_t>(*bad)) +
                 " at position " + std::to_string(bad - number.begin() + 1) + "; it takes " +
                 lengths(symbology) + ".");
  }
  if (symbology == Symbology::upce && number.size() >= 6 && number.size() <= 8) {
    if (number.size() > 6 && number.front() != '0') {
      return wrong("UPC-E of 7 or 8 digits begins with its number system 0; " + std::string(number) +
                   " given.");
    }
    const std::size_t number_system = number.size() == 6 ? 0 : 1;
    with_all_zeros = with_zeros(number.substr(number_system));
    with_all_zeros += number.substr(number_system + 6);
    number = with_all_zeros;
  }
  if (number.size() != digits && number.size() != digits - 1) {
    return wrong(name_of(symbology) + " takes " + lengths(symbology) + "; " + std::to_string(text.size()) +
                 " characters given.");
  }
  const std::string_view without_check = number.substr(0, digits - 1);
  if (number.size() == digits) {
    const int expected = check_digit(without_check);
    if (number.back() - '0' != expected) {
      return wrong("The check digit " + std::string(number.substr(digits - 1)) + " of the item number " +
                   std::string(number) + " is wrong: these digits have the check digit " +
                   std::to_string(expected) + ".");
    }
  }
  plain += without_check;
  return std::nullopt;
}

}  // namespace korvex::composite
