// The C entry of the linear family.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::linear {

/// Korvex_Bit: checks the data of `type`, encodes it and fills the caller's arrays. Returns KORVEX_OK,
/// KORVEX_BAD_DATA (nothing but text_length written) or KORVEX_BAD_PARAMETER (likewise).
std::int16_t entry(std::uint16_t type, std::uint16_t guard_option, std::uint16_t text_option,
                   const Bar_Ratio* ratio, const Bit_Data* data, Bit_Result* result);

}  // namespace korvex::linear
