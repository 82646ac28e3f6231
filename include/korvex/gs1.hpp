// Element strings as people write them, for symbols that carry GS1 data (GS1 General Specifications).
#pragma once

#include <string>
#include <string_view>

#include "korvex/result.hpp"

namespace korvex::gs1 {

/// The byte between element strings, behind a field of variable length (ASCII GS): what readers hand out for
/// FNC1, and what the encoders of GS1 symbols take for it.
inline constexpr char kSeparator = '\x1D';

/// Whether the text begins with a bracket, as "(01)09501101530003(10)AB-123" does.
[[nodiscard]] KORVEX_API bool is_bracketed(std::string_view text);

/// Turns a text with bracketed application identifiers into the plain form: identifiers and data one after
/// another, kSeparator behind a field of variable length that another one follows.
///
/// Errors: bad_data when an identifier is unknown, or a field's length, characters or check digit are wrong.
[[nodiscard]] KORVEX_API Result<std::string> element_string(std::string_view bracketed);

}  // namespace korvex::gs1
