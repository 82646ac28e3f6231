// Element strings as people write them, for symbols that carry GS1 data (GS1 General Specifications).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/result.hpp"

namespace korvex::gs1 {

/// The byte between element strings, behind a field of variable length (ASCII GS): what readers hand out for
/// FNC1, and what the encoders of GS1 symbols take for it.
inline constexpr char kSeparator = '\x1D';

/// What becomes of data that break the rules of the GS1 General Specifications.
enum class Checking : std::uint8_t {
  strict,   ///< they are refused
  lenient,  ///< they are drawn as far as a symbol has the characters
};

/// An application identifier and its data, "17" and "261231".
struct Element {
  std::string identifier;
  std::string data;
  std::string_view title;  ///< of the data, "USE BY OR EXPIRY"; empty where there is none
};

struct ElementString {
  std::string plain;  ///< identifiers and data one after another, kSeparator where one is needed
  std::vector<Element> elements;
  std::vector<std::string> warnings;  ///< Checking::lenient: what is wrong, a sentence each
};

/// Reads element strings in any of three forms.
///
/// Round brackets, (01)09501101530003(10)AB-123: an identifier is 2 to 4 digits in brackets; any other
/// bracket is data. Square brackets, [01]09501101530003[10]AB-123: no data has these, so round brackets are
/// data whatever stands in them. Plain, 0109501101530003 and so on: a separator stands behind a field of
/// variable length that another one follows, and may stand behind others; it is the byte kSeparator, the text
/// {GS}, or #, which is a character in the data of AI 8010 alone. A separator in front is passed over.
///
/// Checked are identifiers, lengths and characters, check digits and check characters, dates, times,
/// countries, currencies and whatever else the General Specifications say of one field; not which identifiers
/// belong together.
///
/// Errors: bad_data for the first thing that is wrong. Checking::lenient has none: what it cannot take apart
/// becomes the plain form as it stands.
[[nodiscard]] KORVEX_API Result<ElementString> parse(std::string_view text,
                                                     Checking checking = Checking::strict);

/// The plain form alone, by Checking::strict.
[[nodiscard]] KORVEX_API Result<std::string> element_string(std::string_view text);

/// Elements with their identifiers in round brackets, as people read them below a symbol.
[[nodiscard]] KORVEX_API std::string bracketed(const std::vector<Element>& elements);

/// Whether the text begins with a bracket, as "(01)09501101530003(10)AB-123" does.
[[nodiscard]] KORVEX_API bool is_bracketed(std::string_view text);

}  // namespace korvex::gs1
