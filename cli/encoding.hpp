// Character encodings of the data.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korvex::cli {

/// UTF-8 as Shift JIS (with the extensions that Windows knows); nothing when a character has no place there,
/// or the text is no UTF-8.
std::optional<std::string> shift_jis_of(std::string_view utf8);
/// UTF-8 as ISO/IEC 8859-1; nothing likewise.
std::optional<std::string> latin_1_of(std::string_view utf8);

}  // namespace korvex::cli
