// The families' lists of symbologies, a function each.
#pragma once

#include <vector>

#include "symbologies.hpp"

namespace korvex::cli::families {

std::vector<Symbology> linear();
std::vector<Symbology> pdf417();

}  // namespace korvex::cli::families
