// The enciphered segment behind the public data.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/bit_writer.hpp"
#include "qr/encodation.hpp"

namespace korvex::qr {

/// Appends the private segment: indicator 0110, number of enciphered bytes (8 bits up to version 9, else 12),
/// those bytes, zero bits up to a whole byte. Requires `bits` at a whole byte and options.private_data.
void put_private_segment(const Options& options, int version, const Stream& stream, BitWriter& bits);

/// Enciphers `bytes`, at least eight, in place. Whole blocks are chained, starting from zeros; what is left
/// over is chained as well and then covered with the round outputs of the last block.
void encipher(std::span<std::uint8_t> bytes, const std::array<std::uint8_t, 8>& key);

/// CRC-16/ARC: polynomial 0x8005, least significant bit first, from 0. `crc` continues an earlier one.
std::uint16_t crc16_arc(std::span<const std::uint8_t> bytes, std::uint16_t crc = 0);

}  // namespace korvex::qr
