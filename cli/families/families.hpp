// The families' lists of symbologies, a function each.
#pragma once

#include <vector>

#include "symbologies.hpp"

namespace korvex::cli::families {

std::vector<Symbology> composite();
std::vector<Symbology> datamatrix();
std::vector<Symbology> linear();
std::vector<Symbology> maxicode();
std::vector<Symbology> pdf417();
std::vector<Symbology> qr();
std::vector<Symbology> veri();

}  // namespace korvex::cli::families
