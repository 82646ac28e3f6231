// From codewords to modules, before masking.
#pragma once

#include "qr/encodation.hpp"
#include "qr/layer.hpp"

namespace korvex::qr {

/// A symbol with its function patterns and, once placed, its codewords. Rows from `rows` up to the next
/// multiple of 12 are light and no data area.
struct Canvas {
  SymbolType type;
  int version;
  int rows;     // modules
  int columns;  // modules
  int words;    // of a row
  Layer dark;
  Layer data_area;          // modules that codewords may take, and that are masked
  Layer rmqr_data_columns;  // rMQR: the same with rows and columns exchanged
};

/// Draws the function patterns of a version, and its version information if it has any. Format information
/// stays light: it comes with the mask.
void draw_function_patterns(SymbolType type, int version, Canvas& canvas);

/// Draws the codewords of `sequence`, and as many of the zeros behind them as it takes, into the data area.
void place_codewords(const CodewordBuffer& sequence, Canvas& canvas);

/// Model 1's block layout in place of the two-column strips of all others.
void place_model1_codewords(const CodewordBuffer& sequence, Canvas& canvas);

}  // namespace korvex::qr
