// From codewords to modules. ISO/IEC 16022:2006, 5.8 and Annex F.
#pragma once

#include <cstdint>
#include <span>

#include "datamatrix/tables.hpp"
#include "korvex/module_matrix.hpp"

namespace korvex::datamatrix {

/// The symbol of all its codewords, finder and timing patterns included. `size` is one of kSizes.
ModuleMatrix place_modules(const SymbolSize& size, std::span<const std::uint8_t> codewords);

}  // namespace korvex::datamatrix
