// The families' lists of symbologies, a function each.
#pragma once

#include <vector>

#include "symbologies.hpp"

namespace korvex::cli::families {

std::vector<Symbology> linear();

}  // namespace korvex::cli::families
