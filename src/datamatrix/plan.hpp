// The plan of a symbol: its size, and which encodation scheme takes which characters.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <span>

#include "datamatrix/request.hpp"

namespace korvex::datamatrix {

/// A plan counts as long as its text would be: a letter for every segment, behind it the number of its
/// characters when there are any.
inline constexpr int kMaxPlanText = 1023;

/// Not cleared: only the first `segment_count` segments are there. An ASCII segment, which may be empty,
/// stands first and between any two others; no segment is empty at the end.
struct Plan {
  const SymbolSize* size = nullptr;
  std::array<Segment, kMaxPlanText> storage;
  int segment_count = 0;

  [[nodiscard]] std::span<const Segment> segments() const {
    return std::span(storage).first(static_cast<std::size_t>(segment_count));
  }
};

/// Plans `message` for the first of `sizes` that holds it. `gs1`: the message starts with an FNC1, which
/// stays in ASCII encodation as GS1 DataMatrix has it. Returns false when there is none.
bool make_plan(std::span<const Character> message, std::span<const SymbolSize> sizes, bool gs1, Plan& plan);

}  // namespace korvex::datamatrix
