// The sentences for data that no symbol holds.
#pragma once

#include "korvex/qr.hpp"

namespace korvex::qr {

/// For data longer than the version asked for, or any that may be chosen, holds. `smallest`: the version that
/// does hold it, 0 when there is none.
Error too_long(const Options& options, std::span<const std::uint8_t> data, int smallest);

Error too_many_segments(const Options& options);

}  // namespace korvex::qr
