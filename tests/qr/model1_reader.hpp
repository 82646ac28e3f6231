// A reader of QR Code Model 1 symbols for the tests; other readers know versions 1 to 12.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "korvex/module_matrix.hpp"

namespace korvex::qr::test {

struct Model1Content {
  int level = 0;  // 0 L, 1 M, 2 Q, 3 H
  int mask = 0;
  std::vector<std::uint8_t> data;
  int sequence = -1;  // structured append: the sequence indicator and the parity
  int parity = -1;
};

/// Codewords of all blocks together, as the version and level have them.
struct Model1Layout {
  int data_codewords;
  int total_codewords;
  int blocks;
};

/// Reads a symbol without correcting anything: every fixed module and every check codeword must be right.
/// `layout` is asked for the layout of a level.
std::optional<Model1Content> read_model1(const ModuleMatrix& symbol,
                                         Model1Layout (*layout)(int version, int level));

}  // namespace korvex::qr::test
