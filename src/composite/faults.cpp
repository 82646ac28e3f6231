// The sentences for what can be wrong with a request for a DataBar or composite symbol.
#include <string>

#include "composite/code128.hpp"
#include "composite/expanded_encodation.hpp"
#include "composite/request.hpp"
#include "core/shown.hpp"

namespace korvex::composite {
namespace {

constexpr const char* kElementCharacters =
    "digits, letters, space, !\"%&'()*+,-./:;<=>?_ and # for FNC1 are allowed";

std::string sentence(const Fault& fault, const Request& request) {
  const std::string name = name_of(request.symbology);
  const std::string given = std::to_string(fault.given);
  const std::string expected = std::to_string(fault.expected);
  const std::string byte_at = "byte " + shown(fault.given) + " at position " + std::to_string(fault.position);
  const std::string position = std::to_string(fault.position);
  switch (fault.reason) {
    case Reason::none:
      break;
    case Reason::bad_segments:
      return given + " segments a row are out of range; at least 1 must be.";
    case Reason::bad_linear_height:
      return "A linear component of " + given + " modules in height is out of range; at least 1 must be.";
    case Reason::few_segments_for_2d:
      return "A 2D component is as wide as four segments; " + given + " segments a row are too few for it.";
    case Reason::odd_segments:
      return "Rows of " + given + " segments would cut finder patterns off; an even number is allowed, or " +
             expected + " for one row.";
    case Reason::linear_too_long:
      return name + " takes at most " + expected + " characters; " + given + " given.";
    case Reason::not_a_digit:
      return name + " has no character for " + byte_at + "; it takes digits.";
    case Reason::limited_value_too_large:
      return "GS1 DataBar Limited holds numbers up to 1999999999999; this one is greater.";
    case Reason::number_system_not_zero:
      return "UPC-E holds UPC-A numbers that begin with 0 (number system 0); this one does not.";
    case Reason::zeros_not_suppressible:
      return "This number has no zeros where UPC-E leaves them out; draw it as UPC-A.";
    case Reason::not_a_gtin:
      return "GS1 DataBar Expanded begins with 01 and the 14 digits of an item number.";
    case Reason::wrong_check_digit:
      return "The check digit " + given + " at position " + position +
             " is wrong: the item number has the check digit " + expected + ".";
    case Reason::bad_linear_character:
      return name + " cannot hold the " + byte_at + "; " +
             (request.symbology == Symbology::databar_expanded
                  ? kElementCharacters
                  : "bytes 1 to 127 are allowed, # or 0x81 for FNC1, 0x80 for NUL and 0x82 to 0x84 for FNC2 "
                    "to FNC4") +
             ".";
    case Reason::expanded_too_long:
      return "GS1 DataBar Expanded takes at most 74 digits, or 41 characters when not all are digits; " +
             given + " given.";
    case Reason::expanded_too_many_bits:
      return "The element string needs more than the " + std::to_string(kMostDataCharacters) +
             " data characters of GS1 DataBar Expanded.";
    case Reason::impossible_date_in_linear:
      return "The date at position " + position +
             " does not exist; months 01 to 12 and days 00 to 31 are allowed.";
    case Reason::gs1_128_too_long:
      return "The text needs more than " + std::to_string(code128::kMostTextCharacters) +
             " symbol characters, which is all that this GS1-128 has.";
    case Reason::linear_too_narrow:
      return "A 2D component stands on at least " + expected +
             " symbol characters of GS1-128; the text has " + given + ".";
    case Reason::bad_component_character:
      return "The 2D component cannot hold the " + byte_at + " of its text; " + kElementCharacters + ".";
    case Reason::date_not_digits:
      return "The 2D component's text begins with a date, of which the " + byte_at + " is no digit.";
    case Reason::impossible_date:
      return "The date at position " + position +
             " of the 2D component's text does not exist; months 01 to 12 and days 00 to 31 are allowed.";
    case Reason::component_too_long:
      return "The text is too long for the largest 2D component that goes with " + name + ".";
  }
  return {};
}

/// CC_Encode has one code for all of them.
Code code_of(Reason reason) {
  switch (reason) {
    case Reason::bad_segments:
    case Reason::bad_linear_height:
    case Reason::few_segments_for_2d:
    case Reason::odd_segments:
      return Code::bad_parameter;
    case Reason::expanded_too_many_bits:
    case Reason::gs1_128_too_long:
    case Reason::linear_too_narrow:
    case Reason::component_too_long:
      return Code::no_symbol;
    default:
      return Code::bad_data;
  }
}

}  // namespace

std::string name_of(Symbology symbology) {
  switch (symbology) {
    case Symbology::databar:
      return "GS1 DataBar Omnidirectional";
    case Symbology::databar_truncated:
      return "GS1 DataBar Truncated";
    case Symbology::databar_stacked:
      return "GS1 DataBar Stacked";
    case Symbology::databar_stacked_omni:
      return "GS1 DataBar Stacked Omnidirectional";
    case Symbology::databar_limited:
      return "GS1 DataBar Limited";
    case Symbology::databar_expanded:
      return "GS1 DataBar Expanded";
    case Symbology::ean13:
      return "EAN-13";
    case Symbology::upce:
      return "UPC-E";
    case Symbology::upca:
      return "UPC-A";
    case Symbology::ean8:
      return "EAN-8";
    case Symbology::gs1_128:
    case Symbology::gs1_128_cc_c:
      return "GS1-128";
  }
  return {};
}

Error describe(const Fault& fault, const Request& request) {
  return {code_of(fault.reason), sentence(fault, request)};
}

}  // namespace korvex::composite
