// Check codewords. ISO/IEC 16022:2006, 5.7 and Annex E.
#pragma once

#include <cstdint>
#include <span>

#include "datamatrix/tables.hpp"

namespace korvex::datamatrix {

/// Writes the check codewords behind the data codewords. `codewords` has size.codewords() places.
void add_check_codewords(const SymbolSize& size, std::span<std::uint8_t> codewords);

}  // namespace korvex::datamatrix
