// A reader of 2D components, for tests: from modules back to the element string. It shares no code with the
// encoder; only the tables of symbol characters and row address patterns are the same.
#pragma once

#include <string>
#include <vector>

#include "korvex/composite.hpp"

namespace korvex::composite::test {

/// What stands in the 2D component of a symbol.
struct Reading {
  Component kind = Component::none;
  int columns = 0;
  int rows = 0;
  int first_address = 0;       ///< CC-A and CC-B: row address pattern of the top row, from 1
  std::vector<int> codewords;  ///< check codewords included
  int check_codewords = 0;
  std::string bits;  ///< of the data, padding included
  std::string text;  ///< the element string, '#' for FNC1
};

/// Reads the 2D component. Throws std::runtime_error, which says why, when it is not as it must be: row
/// address patterns or row indicators out of order, characters of a wrong cluster, syndromes that are not
/// zero, bits that stand for nothing.
Reading read_component(const Symbol& symbol);

/// The data of an encodation method field and general-purpose compaction, padding ignored.
std::string read_element_string(const std::string& bits);

/// The data of general-purpose compaction alone.
std::string read_general_purpose(const std::string& bits);

}  // namespace korvex::composite::test
