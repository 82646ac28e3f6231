// CRC-16 with the polynomial x^16 + x^15 + x^2 + 1.
#pragma once

#include <array>
#include <cstdint>
#include <span>

namespace korvex {

/// The remainder of `bytes` times x^16, most significant bit first, starting from 0, not inverted:
/// "123456789" gives 0xFEE8.
constexpr std::uint16_t crc16(std::span<const std::uint8_t> bytes) {
  constexpr auto kRemainders = [] {
    std::array<std::uint16_t, 256> remainders{};
    for (unsigned byte = 0; byte < 256; ++byte) {
      unsigned remainder = byte << 8;
      for (int bit = 0; bit < 8; ++bit) {
        remainder = (remainder & 0x8000) != 0 ? remainder << 1 ^ 0x8005 : remainder << 1;
      }
      remainders[byte] = static_cast<std::uint16_t>(remainder);
    }
    return remainders;
  }();
  std::uint16_t crc = 0;
  for (const std::uint8_t byte : bytes) {
    crc = static_cast<std::uint16_t>(crc << 8 ^ kRemainders[static_cast<std::size_t>(crc >> 8 ^ byte)]);
  }
  return crc;
}

}  // namespace korvex
