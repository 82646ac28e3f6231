// What may stand behind an application identifier (GS1 General Specifications, section 3).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/gs1_identifiers.hpp"

namespace korvex::gs1 {

/// What is wrong with the data of an identifier, as the rest of a sentence that begins with its name: " takes
/// exactly 6 digits; 5 given." Empty when nothing is. `position` is that of the data's first byte, from 1.
std::string fault_of(const IdentifierRow& row, std::string_view data, std::size_t position);

/// In quotation marks, cut when it is long.
std::string excerpt(std::string_view text);

}  // namespace korvex::gs1
