// The picture in a terminal, in half blocks.
#pragma once

#include <string>

#include "picture.hpp"
#include "style.hpp"

namespace korvex::cli {

struct Terminal {
  int columns = 0;          ///< 0: nobody knows, or it is no terminal; then anything fits
  bool has_colors = false;  ///< else dark modules are blocks on whatever background there is
};

/// The one that standard output leads to.
Terminal standard_terminal();

/// Lines of UTF-8, two modules high. A linear symbol is cut to a handy height, and takes half as many columns
/// where it would not fit otherwise. Throws Failure when the picture does not fit.
std::string terminal_lines(const Picture& picture, const Style& style, const Terminal& terminal);

}  // namespace korvex::cli
