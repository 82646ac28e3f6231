// Reed-Solomon check codewords of the 2D components (ISO/IEC 15438, ISO/IEC 24723).
#pragma once

#include <cstdint>
#include <span>

namespace korvex::composite {

/// Fills `check` with the check codewords of `data`, highest power first. As many as a size of CC-A, CC-B or
/// CC-C has.
void put_check_codewords(std::span<const std::uint16_t> data, std::span<std::uint16_t> check);

}  // namespace korvex::composite
