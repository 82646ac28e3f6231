// Data masks, format information and the choice among them.
#pragma once

#include "korvex/module_matrix.hpp"
#include "qr/construction.hpp"

namespace korvex::qr {

struct MaskedSymbol {
  ModuleMatrix modules;
  int mask;  // as the format information has it; rMQR has one pattern, number 4 of Model 2
};

/// Masks the data area with the pattern that scores best by the rule of the dialect and writes the format
/// information that names it.
MaskedSymbol best_masked(const Canvas& canvas, Level level, Dialect dialect);

}  // namespace korvex::qr
