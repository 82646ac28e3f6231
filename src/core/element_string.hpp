// Element strings with bracketed application identifiers (GS1 General Specifications).
#pragma once

#include <string>
#include <string_view>

#include "korvex/result.hpp"

namespace korvex {

/// A bracketed text, and what to call it in a sentence.
struct BracketedText {
  std::string_view name;
  std::string_view text;
};

/// Turns a bracketed text into the plain form: identifiers and data one after another, `separator` behind a
/// field of variable length that another one follows. Identifiers must have the number of digits that their
/// first two digits ask for; lengths and check digits of fixed fields must be right, others not too long.
Result<std::string> plain_element_string(BracketedText part, char separator);

/// Turns a bracketed text that must be (01) and 14 digits into these, without the check digit, which is
/// verified.
Result<std::string> plain_item_number(BracketedText part);

}  // namespace korvex
