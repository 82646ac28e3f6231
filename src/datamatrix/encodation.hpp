// From the plan to the data codewords. ISO/IEC 16022:2006, 5.2.
#pragma once

#include <cstdint>
#include <span>

#include "datamatrix/plan.hpp"

namespace korvex::datamatrix {

/// Writes the data codewords of `message`, pads included, to `codewords`, which has as many places as the
/// size has data codewords. Returns the number of pad codewords; a negative one when the message does not fit
/// there after all.
int encode_message(std::span<const Character> message, const Plan& plan, std::span<std::uint8_t> codewords);

}  // namespace korvex::datamatrix
