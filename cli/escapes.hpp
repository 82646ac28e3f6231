// Control characters by name in typed data.
#pragma once

#include <string>
#include <string_view>

namespace korvex::cli {

/// Replaces names of control characters in braces, {GS} or {EOT}, by the characters; {{ is a brace. Throws
/// Failure where a brace opens no name.
std::string with_escapes(std::string_view text);

}  // namespace korvex::cli
