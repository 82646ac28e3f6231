// From segments to the data codewords of a symbol.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/bit_writer.hpp"
#include "qr/segmentation.hpp"

namespace korvex::qr {

/// A stream of data and how it is split.
struct Stream {
  std::span<const std::uint8_t> data;
  SegmentList segments;
  StreamSize size;
};

/// Room for all codewords of the largest symbol, and behind them for the zeros that fill what modules are
/// left over and that whole words may be read from.
inline constexpr int kZerosBehindSequence = 8;
using CodewordBuffer = std::array<std::uint8_t, kMostCodewords + kZerosBehindSequence>;

/// Writes the data codewords of a symbol of `version`, which holds the streams: segments, terminator, private
/// segment if `private_stream` is not null, pad codewords. The short last codeword of M1 and M3 stands in the
/// high half of its byte.
void write_data_codewords(const Options& options, int version, const Stream& public_stream,
                          const Stream* private_stream, CodewordBuffer& codewords);

/// Appends prefix and segments of a stream, no terminator.
void put_stream(const Options& options, int version, const Stream& stream, BitWriter& bits);

/// The first byte that `mode` cannot pack, as an index into `data`, or -1.
int first_unfit_byte(Mode mode, std::span<const std::uint8_t> data);

}  // namespace korvex::qr
