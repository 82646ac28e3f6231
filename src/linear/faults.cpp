// The sentences for what can be wrong with a request for a linear symbol.
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

#include "core/shown.hpp"
#include "linear/request.hpp"

namespace korvex::linear {
namespace {

struct Names {
  Symbology symbology;
  std::string_view name;          ///< as it stands in a sentence
  std::string_view takes;         ///< characters
  std::string_view lengths = {};  ///< of the published form, where they are fixed
  std::string_view korvex32_lengths = {};
};

constexpr std::string_view kDigitsOnly = "digits";
constexpr std::string_view kCode128Sets = "space to _ in code set A, space to DEL in B, and digits in C";
constexpr std::array<Names, 17> kNames = {{
    {Symbology::codabar, "Codabar", "0-9 - $ : / . + between start and stop letters A B C D"},
    {Symbology::code39, "Code 39", "0-9, A-Z, space and - . $ / + %"},
    {Symbology::itf, "Interleaved 2 of 5", kDigitsOnly},
    {Symbology::ean13, "EAN-13", kDigitsOnly, "12 digits, or 13 with the check digit", "11 to 13 digits"},
    {Symbology::upca, "UPC-A", kDigitsOnly, "11 digits, or 12 with the check digit", "11 or 12 digits"},
    {Symbology::ean8, "EAN-8", kDigitsOnly, "7 digits, or 8 with the check digit", "7 or 8 digits"},
    {Symbology::upce, "UPC-E", kDigitsOnly, "6 digits, 7 with the leading 0, or 8 with the check digit too",
     "6 digits"},
    {Symbology::addon, "The add-on", kDigitsOnly, "2 or 5 digits", "2 or 5 digits"},
    {Symbology::industrial25, "Industrial 2 of 5", kDigitsOnly},
    {Symbology::code25_3bar, "The three-bar 2 of 5 code", kDigitsOnly},
    {Symbology::sscc18, "SSCC-18", kDigitsOnly, "17 digits, or 18 with the check digit", "17 digits"},
    {Symbology::code128, "Code 128", "bytes 0-255, or 0-127 in GS1 data"},
    {Symbology::code128_inband, "Code 128", kCode128Sets},
    {Symbology::code128_segments, "Code 128", kCode128Sets},
    {Symbology::msi, "MSI", kDigitsOnly},
    {Symbology::code11, "Code 11", "digits and -"},
    {Symbology::code93, "Code 93", "bytes 0-127"},
}};
static_assert([] {
  for (std::size_t i = 0; i < kNames.size(); ++i) {
    if (static_cast<std::size_t>(kNames[i].symbology) != i) return false;
  }
  return true;
}());

std::string at(const Fault& fault) {
  return " at position " + std::to_string(fault.position);
}
std::string byte_at(const Fault& fault) {
  return "byte " + shown(fault.given) + at(fault);
}

std::string escapes_of(Symbology symbology) {
  if (symbology == Symbology::code128_segments) return "` takes a, b, c or d, and in code set C ? takes 1";
  return "> takes space to B, C, D, E, F or J, and in code set C only D, E or F";
}

std::string sentence(const Fault& fault, const Request& request) {
  const Names& names = kNames[static_cast<std::size_t>(request.symbology)];
  const std::string name(names.name);
  const std::string given = std::to_string(fault.given);
  switch (fault.reason) {
    case Reason::none:
      break;
    case Reason::nothing_to_encode:
      return "There is no data for " + name + " to hold; give at least one character.";
    case Reason::bad_character:
      return name + " has no character for " + byte_at(fault) + "; it takes " + std::string(names.takes) +
             ".";
    case Reason::misplaced_start_stop:
      return "The " + byte_at(fault) + " is a start or stop character, which " + name +
             " allows only as the first and last character.";
    case Reason::lone_start_stop:
      return "The " + byte_at(fault) + " is a start or stop letter without a partner at the other end; " +
             name + " takes one of A B C D at both ends, or at none.";
    case Reason::no_start_stop:
      return name + " data must bring a start and a stop character, so at least 2 characters; " + given +
             " given.";
    case Reason::bad_length:
      return name + " takes " +
             std::string(request.dialect == Dialect::standard ? names.lengths : names.korvex32_lengths) +
             "; " + given + " given.";
    case Reason::wrong_check_digit:
      return "The check digit " + given + at(fault) + " is wrong: these digits have the check digit " +
             std::to_string(fault.expected) + ".";
    case Reason::bad_number_system:
      return "UPC-E of 7 or 8 digits begins with its number system 0; " + given + " given.";
    case Reason::check_digit_is_ten:
      return "These digits have the modulo 11 check value 10, which is no digit; choose another check or "
             "other digits.";
    case Reason::bad_escape:
      return "The escape" + at(fault) + " is followed by " +
             (fault.given < 0 ? "nothing" : shown(fault.given)) + "; " + escapes_of(request.symbology) + ".";
    case Reason::odd_digits:
      return "The digit " + shown(fault.given) + at(fault) +
             " has no partner; code set C takes digits in pairs, so give an even number or change the code "
             "set before it.";
    case Reason::no_segments:
      return "Code 128 with segments needs at least one segment header; none was announced.";
    case Reason::bad_segment_header:
      return "A segment header is due" + at(fault) + "; it is one of A B C and two digits for the length.";
    case Reason::same_set_twice:
      return "The segment header" + at(fault) +
             " has the code set of the one before it; neighbours must differ.";
    case Reason::segments_too_long:
      return "The segment lengths add up to " + given + "; at most 30 are allowed.";
    case Reason::data_ends_in_segment:
      return "The data ends inside segment " + given + "; its header asks for more.";
    case Reason::data_after_segments:
      return "There is data" + at(fault) +
             " and after it that belongs to no segment; lengthen the last segment or leave it out.";
    case Reason::too_many_characters:
      return "The symbol would have " + given + " symbol characters; at most " +
             std::to_string(kMaxSymbolCharacters) + " are allowed.";
    case Reason::too_many_modules:
      return "The symbol would be too wide; at most " + std::to_string(kMaxModules) + " modules are allowed.";
    case Reason::widths_not_offered:
      return name +
             " has one fixed set of widths; element widths can be chosen for Codabar, Code 39 and the 2 of 5 "
             "codes.";
    case Reason::no_modules:
      return "With these widths the symbol has no modules; give widths of at least 1.";
  }
  return {};
}

}  // namespace

Code code_of(Reason reason) {
  const bool parameter = reason == Reason::widths_not_offered || reason == Reason::no_modules;
  return parameter ? Code::bad_parameter : Code::bad_data;
}

Error describe(const Fault& fault, const Request& request) {
  const bool too_long = fault.reason == Reason::too_many_characters ||
                        fault.reason == Reason::too_many_modules || fault.reason == Reason::segments_too_long;
  return {too_long ? Code::no_symbol : code_of(fault.reason), sentence(fault, request)};
}

}  // namespace korvex::linear
