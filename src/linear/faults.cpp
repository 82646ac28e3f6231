// The sentences for what can be wrong with a request for a linear symbol.
#include <cstdio>
#include <string>
#include <string_view>

#include "linear/request.hpp"

namespace korvex::linear {
namespace {

struct Names {
  std::string_view name;           ///< as it stands in a sentence
  std::string_view takes;          ///< characters
  std::string_view lengths;        ///< of the published form
  std::string_view exact_lengths;  ///< of the korvex32 dialect
};

Names names_of(Symbology symbology) {
  switch (symbology) {
    case Symbology::codabar:
      return {"Codabar", "0-9 - $ : / . + between start and stop letters A B C D", "", ""};
    case Symbology::code39:
      return {"Code 39", "0-9, A-Z, space and - . $ / + %", "", ""};
    case Symbology::itf:
      return {"Interleaved 2 of 5", "digits", "", ""};
    case Symbology::ean13:
      return {"EAN-13", "digits", "12 digits, or 13 with the check digit", "11 to 13 digits"};
    case Symbology::upca:
      return {"UPC-A", "digits", "11 digits, or 12 with the check digit", "11 or 12 digits"};
    case Symbology::ean8:
      return {"EAN-8", "digits", "7 digits, or 8 with the check digit", "7 or 8 digits"};
    case Symbology::upce:
      return {"UPC-E", "digits", "6 digits, 7 with the leading 0, or 8 with the check digit too", "6 digits"};
    case Symbology::addon:
      return {"The add-on", "digits", "2 or 5 digits", "2 or 5 digits"};
    case Symbology::industrial25:
      return {"Industrial 2 of 5", "digits", "", ""};
    case Symbology::code25_3bar:
      return {"The three-bar 2 of 5 code", "digits", "", ""};
    case Symbology::sscc18:
      return {"SSCC-18", "digits", "17 digits, or 18 with the check digit", "17 digits"};
    case Symbology::code128:
      return {"Code 128", "bytes 0-255, or 0-127 in GS1 data", "", ""};
    case Symbology::code128_inband:
    case Symbology::code128_segments:
      return {"Code 128", "space to _ in code set A, space to DEL in B, and digits in C", "", ""};
    case Symbology::msi:
      return {"MSI", "digits", "", ""};
    case Symbology::code11:
      return {"Code 11", "digits and -", "", ""};
    case Symbology::code93:
      return {"Code 93", "bytes 0-127", "", ""};
  }
  return {};
}

/// 'x' (0x78), or 0x00 alone where there is nothing to show.
std::string shown(int byte) {
  char text[16];
  if (byte >= ' ' && byte < 0x7F) {
    std::snprintf(text, sizeof text, "'%c' (0x%02X)", byte, static_cast<unsigned>(byte));
  } else {
    std::snprintf(text, sizeof text, "0x%02X", static_cast<unsigned>(byte));
  }
  return text;
}

std::string at(const Fault& fault) {
  return " at position " + std::to_string(fault.position);
}
std::string byte_at(const Fault& fault) {
  return "byte " + shown(fault.given) + at(fault);
}

std::string sentence(const Fault& fault, const Request& request) {
  const Names names = names_of(request.symbology);
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
             std::string(request.dialect == Dialect::standard ? names.lengths : names.exact_lengths) + "; " +
             given + " given.";
    case Reason::wrong_check_digit:
      return "The check digit " + given + at(fault) + " is wrong: these digits have the check digit " +
             std::to_string(fault.expected) + ".";
    case Reason::bad_number_system:
      return "UPC-E of 7 or 8 digits begins with its number system 0; " + given + " given.";
    case Reason::check_digit_is_ten:
      return "These digits have the modulo 11 check value 10, which is no digit; choose another check or "
             "other digits.";
    case Reason::bad_escape:
      if (fault.given < 0) return "The escape" + at(fault) + " lacks the byte that tells what it stands for.";
      return "The escape" + at(fault) + " is followed by " + shown(fault.given) +
             ", which stands for nothing in the code set in force.";
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
  return {code_of(fault.reason), sentence(fault, request)};
}

}  // namespace korvex::linear
