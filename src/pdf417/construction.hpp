// Codewords to rows of bars and spaces.
#pragma once

#include <string>
#include <string_view>

#include "korvex/module_matrix.hpp"
#include "pdf417/request.hpp"

namespace korvex::pdf417 {

/// The symbol's rows as row pattern text: a line a row, the widths in modules of bars and spaces in turn, a
/// bar first, one digit each, CR LF at its end. This is how the engine hands symbols over.
std::string row_pattern_text(const Layout& layout);

/// The rows that such text describes.
ModuleMatrix read_rows(std::string_view row_pattern_text, int rows, int columns);

/// The same rows without the text in between.
ModuleMatrix draw_rows(const Layout& layout);

}  // namespace korvex::pdf417
