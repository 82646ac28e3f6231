// The QR Code encoder, as the export needs it.
#pragma once

#include "korvex/qr.hpp"
#include "qr/segmentation.hpp"

namespace korvex::qr {

/// As encode() of the C++ interface. `analysis`: whether it was the split into segments that gave up, to
/// which the export gives a code of its own.
Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data, Analysis& analysis);

}  // namespace korvex::qr
