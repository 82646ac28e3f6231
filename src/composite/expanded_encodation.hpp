// From the element string of a DataBar Expanded symbol to its data character values (ISO/IEC 24724, clause
// 7).
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "composite/request.hpp"

namespace korvex::composite {

inline constexpr int kLeastDataCharacters = 3;
inline constexpr int kMostDataCharacters = 21;

/// Data characters, without the check character.
struct ExpandedData {
  int count = 0;
  std::array<int, kMostDataCharacters> values;  // not cleared: count says what is there
  std::string_view method;                      ///< in words
};

/// Encodes the request's linear text. The linkage flag is set when the request has a 2D component.
Fault encode_expanded(const Request& request, ExpandedData& data);

}  // namespace korvex::composite
