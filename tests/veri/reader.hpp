// Reads VERI symbols back: from the modules to the data. Written from the layout backwards, it shares nothing
// with the encoder; it corrects by trying every set of places that could be wrong.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "korvex/module_matrix.hpp"

namespace korvex::veri::test {

/// The data with the zero bytes that fill the symbol; nothing when the border is broken, a block has more
/// wrong symbols than `check_bytes`, or the check value is wrong. `check_bytes` is 0, 2 or 4.
std::optional<std::vector<std::uint8_t>> read(const ModuleMatrix& symbol, int check_bytes);

/// Where the bits of every 4-bit symbol stand in the interior, in stream order: four (row, column) a symbol.
struct Place {
  int row;
  int column;
};
std::vector<std::vector<Place>> symbol_places(int interior);

/// For each symbol of the stream, the block it belongs to.
std::vector<int> symbol_blocks(int symbol_count);

}  // namespace korvex::veri::test
