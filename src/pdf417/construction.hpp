// Codewords to rows of bars and spaces.
#pragma once

#include <string>

#include "korvex/module_matrix.hpp"
#include "pdf417/request.hpp"

namespace korvex::pdf417 {

/// The rows of the symbol, each as wide as width_modules() says.
ModuleMatrix draw_rows(const Layout& layout);

/// The same rows as widths in digits, each line ended by CR LF.
std::string write_rows(const Layout& layout);

}  // namespace korvex::pdf417
