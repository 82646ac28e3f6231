#include "qr/sizing.hpp"

#include <algorithm>

namespace korvex::qr {
namespace {

constexpr int whole_bytes(int bits) {
  return (bits + 7) / 8;
}

}  // namespace

int doubled_characters(const Options& options, std::span<const std::uint8_t> bytes) {
  return percent_separates(options) ? static_cast<int>(std::ranges::count(bytes, std::uint8_t{'%'})) : 0;
}

StreamSize stream_size(const Options& options, std::span<const Segment> segments,
                       std::span<const std::uint8_t> data) {
  StreamSize size;
  for (const auto& [mode, offset, length] : segments) {
    const auto bytes = data.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length));
    const int doubled = mode == Mode::alphanumeric ? doubled_characters(options, bytes) : 0;
    size.payload_bits += payload_bits(mode, length + doubled);
    ++size.segments[static_cast<std::size_t>(mode)];
  }
  return size;
}

int prefix_bits(const Options& options) {
  return (options.type == SymbolType::model1 ? 4 : 0) + (options.append ? 20 : 0) +
         (options.type == SymbolType::gs1 ? 4 : 0);
}

int terminator_bits(SymbolType type, int version) {
  if (type == SymbolType::micro) return 2 * version + 1;
  return type == SymbolType::rmqr ? 3 : 4;
}

int stream_bits(const Options& options, int version, const StreamSize& size) {
  const int indicator_bits = mode_indicator_bits(options.type, version);
  const PerMode& counts = count_bits(options.type, version);
  int bits = prefix_bits(options) + size.payload_bits;
  for (std::size_t mode = 0; mode < counts.size(); ++mode) {
    bits += size.segments[mode] * (indicator_bits + counts[mode]);
  }
  return bits;
}

bool holds(const Options& options, int version, const StreamSize& public_size,
           const StreamSize* private_size) {
  const int room_bits = data_bits(options.type, version, options.level);
  const int public_bits = stream_bits(options, version, public_size);
  if (private_size == nullptr) {
    for (std::size_t mode = 0; mode < public_size.segments.size(); ++mode) {
      if (public_size.segments[mode] > 0 && !has_mode(options.type, version, static_cast<Mode>(mode))) {
        return false;
      }
    }
    return room_bits > 0 && public_bits <= room_bits;  // a terminator that finds no room is cut
  }
  const int bytes = whole_bytes(public_bits + terminator_bits(options.type, version)) + kPrivateHeaderBytes +
                    std::max(kLeastPrivateBytes, whole_bytes(stream_bits(options, version, *private_size))) +
                    kPrivateCheckBytes;
  return bytes * 8 <= room_bits;
}

int smallest_version(const Options& options, VersionRange range, const StreamSize& public_size,
                     const StreamSize* private_size) {
  for (int version = range.first; version <= range.last; ++version) {
    if (holds(options, version, public_size, private_size)) return version;
  }
  return 0;
}

VersionRange automatic_versions(const Options& options) {
  if (options.type == SymbolType::rmqr) return rmqr_versions(options.rmqr_rows);
  return {1, last_automatic_version(options.type)};
}

}  // namespace korvex::qr
