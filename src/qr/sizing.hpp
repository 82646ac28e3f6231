// How many bits a stream of segments takes, and which version holds them.
#pragma once

#include <span>

#include "qr/tables.hpp"

namespace korvex::qr {

/// The byte that separates element strings.
inline constexpr std::uint8_t kSeparator = 0x1D;

/// True where alphanumeric segments write the separator as "%", and a "%" of the data as two of them: in
/// symbols that start with FNC1 (ISO/IEC 18004:2015, 7.4.8). The old dialect leaves "%" alone and the
/// separator to byte mode.
constexpr bool percent_separates(const Options& options) {
  return options.type == SymbolType::gs1 && options.dialect == Dialect::standard;
}

/// Bytes of `bytes` that take two characters in an alphanumeric segment.
int doubled_characters(const Options& options, std::span<const std::uint8_t> bytes);

/// Bits of `length` characters, of Kanji two bytes each, packed in `mode`, without mode indicator and
/// character count.
constexpr int payload_bits(Mode mode, int length) {
  switch (mode) {
    case Mode::numeric:
      return 10 * (length / 3) + (length % 3 == 0 ? 0 : 1 + 3 * (length % 3));
    case Mode::alphanumeric:
      return 11 * (length / 2) + 6 * (length % 2);
    case Mode::byte:
      return 8 * length;
    default:
      return 13 * ((length + 1) / 2);
  }
}

/// What a stream of segments takes in any version.
struct StreamSize {
  int payload_bits = 0;
  PerMode segments = {};  // how many there are
};

StreamSize stream_size(const Options& options, std::span<const Segment> segments,
                       std::span<const std::uint8_t> data);

/// Bits in front of the segments: what Model 1 starts with, structured-append header, FNC1 indicator.
int prefix_bits(const Options& options);

int terminator_bits(SymbolType type, int version);

/// Bits of prefix and segments, no terminator.
int stream_bits(const Options& options, int version, const StreamSize& size);

// A private segment in bytes: indicator and length, filled up; the stream before enciphering; its check
// value.
inline constexpr int kPrivateHeaderBytes = 2;
inline constexpr int kLeastPrivateBytes = 6;
inline constexpr int kPrivateCheckBytes = 2;

/// True when `version` has the level and holds the public stream and, unless null, the private one.
bool holds(const Options& options, int version, const StreamSize& public_size,
           const StreamSize* private_size);

/// The smallest version from `range.first` to `range.last` that holds the streams, 0 when there is none.
int smallest_version(const Options& options, VersionRange range, const StreamSize& public_size,
                     const StreamSize* private_size);

/// The versions that the automatic choice looks at.
VersionRange automatic_versions(const Options& options);

}  // namespace korvex::qr
