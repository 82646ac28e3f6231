// The two-dimensional components CC-A, CC-B and CC-C (ISO/IEC 24723): codewords, and rows of modules.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "composite/method_field.hpp"
#include "composite/request.hpp"
#include "composite/row.hpp"

namespace korvex::composite {

inline constexpr int kMostCodewords = 928;  // of a CC-C

/// A 2D component as codewords.
struct Component2d {
  Component kind = Component::none;
  int columns = 0;  ///< data codewords a row
  int rows = 0;
  int codeword_count = 0;  ///< check codewords included
  int check_codewords = 0;
  int first_address = 0;   ///< CC-A and CC-B: row address pattern of the first row, from 0
  int address_offset = 0;  ///< from one row address pattern of a row to the next
  std::array<std::uint16_t, kMostCodewords> codewords;  // not cleared: codeword_count says what is there

  [[nodiscard]] std::span<const std::uint16_t> all() const {
    return {codewords.data(), static_cast<std::size_t>(codeword_count)};
  }
};

/// Encodes the 2D component's text as the smallest CC-A or CC-B of 2, 3 or 4 columns. Without a text
/// `component` stays as it is: of no kind. `details`, where not null, get what was chosen.
Fault encode_cc_a_or_b(const Request& request, int columns, Component2d& component, Details* details);
/// Encodes it as a CC-C of at most `columns` columns, which is at least 1. Requires a text.
Fault encode_cc_c(const Request& request, int columns, Component2d& component, Details* details);

/// Modules of a row, two light ones at each end of a CC-C included, one of the others.
int component_width(const Component2d& component);
/// Height in modules of each of its rows.
int component_row_height(const Component2d& component);
/// Appends row `index` to an empty `row`.
void put_component_row(const Component2d& component, int index, Row& row);

}  // namespace korvex::composite
