// A Data Matrix reader of its own, to judge the encoder by: it shares no code with it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "korvex/module_matrix.hpp"

namespace korvex::datamatrix::test {

/// What a symbol says. `fault` names the first thing that is wrong with it; empty: nothing is.
struct Reading {
  std::string fault{};
  std::vector<std::uint8_t> codewords{};  ///< data and check codewords
  std::vector<std::uint16_t> message{};   ///< bytes; 256 is FNC1
};

/// Reads an undamaged symbol: finder, timing, placement, error correction, then the message.
Reading read(const ModuleMatrix& symbol);

/// Reads data codewords.
Reading read_codewords(std::vector<std::uint8_t> data);

}  // namespace korvex::datamatrix::test
