// A block is a codeword of the extended Reed-Solomon code over GF(16): sixteen 4-bit symbols, of which the
// last 2m check the others, m being the check bytes.
#include <algorithm>
#include <array>
#include <cstddef>

#include "core/reed_solomon.hpp"
#include "veri/request.hpp"

namespace korvex::veri {
namespace {

using Field = BinaryField<0x13>;  // x^4 + x + 1

/// The check bytes of one block, 2m symbols. The first 2m - 1 are the remainder by the generator with the
/// roots a^1 ... a^(2m - 1), the last is the value at a^(2m) of what stands before it.
template <int CheckBytes>
constexpr std::array<std::uint8_t, CheckBytes> check_bytes(
    const std::array<std::uint8_t, kBlockBytes - CheckBytes>& data) {
  constexpr std::size_t kCheckSymbols = 2 * CheckBytes;
  constexpr auto generator = generator_polynomial<Field, 1, kCheckSymbols - 1>();
  std::array<std::uint8_t, kCheckSymbols> check{};
  std::uint8_t value = 0;  // Horner's, at the extra root
  const auto add_to_value = [&value](std::uint8_t symbol) {
    value = Field::multiply(value, Field::power(kCheckSymbols)) ^ symbol;
  };
  for (std::size_t i = 0; i < 2 * data.size(); ++i) {
    const auto symbol = static_cast<std::uint8_t>(i % 2 == 0 ? data[i / 2] >> 4 : data[i / 2] & 0xF);
    add_to_value(symbol);
    const auto factor = static_cast<std::uint8_t>(check[0] ^ symbol);
    for (std::size_t k = 0; k < generator.size(); ++k) {
      const std::uint8_t next = k + 1 < generator.size() ? check[k + 1] : std::uint8_t{0};
      check[k] = next ^ Field::multiply(factor, generator[k]);
    }
  }
  for (std::size_t k = 0; k + 1 < kCheckSymbols; ++k) add_to_value(check[k]);
  check[kCheckSymbols - 1] = value;

  std::array<std::uint8_t, CheckBytes> bytes{};
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(check[2 * i] << 4 | check[2 * i + 1]);
  }
  return bytes;
}

/// The code is linear: the check bytes of a block are the sum of what each data byte alone gives. One row a
/// place in the block, one entry a byte there.
template <int CheckBytes>
constexpr auto kShares = [] {
  constexpr std::size_t kDataBytes = kBlockBytes - CheckBytes;
  std::array<std::array<std::array<std::uint8_t, CheckBytes>, 256>, kDataBytes> shares{};
  for (std::size_t place = 0; place < kDataBytes; ++place) {
    for (std::size_t bit = 1; bit < 256; bit *= 2) {
      std::array<std::uint8_t, kDataBytes> alone{};
      alone[place] = static_cast<std::uint8_t>(bit);
      const auto share = check_bytes<CheckBytes>(alone);
      for (std::size_t lower = 0; lower < bit; ++lower) {
        for (std::size_t k = 0; k < share.size(); ++k) {
          shares[place][bit + lower][k] = shares[place][lower][k] ^ share[k];
        }
      }
    }
  }
  return shares;
}();

template <int CheckBytes>
Bytes with_check_bytes(const Bytes& stream) {
  constexpr int kDataBytes = kBlockBytes - CheckBytes;
  Bytes blocks;
  for (int begin = 0; begin < stream.size; begin += kDataBytes) {
    // The last block may be shorter: zero bytes in front, which add nothing to the check and are not written.
    const int count = std::min(kDataBytes, stream.size - begin);
    std::array<std::uint8_t, CheckBytes> check{};
    for (int i = 0; i < count; ++i) {
      const std::uint8_t byte = stream.bytes[static_cast<std::size_t>(begin + i)];
      const auto& share = kShares<CheckBytes>[static_cast<std::size_t>(kDataBytes - count + i)][byte];
      for (std::size_t k = 0; k < check.size(); ++k) check[k] ^= share[k];
      blocks.push(byte);
    }
    for (const std::uint8_t byte : check) blocks.push(byte);
  }
  return blocks;
}

}  // namespace

Bytes with_error_correction(const Bytes& stream, Correction correction) {
  switch (correction) {
    case Correction::two:
      return with_check_bytes<2>(stream);
    case Correction::four:
      return with_check_bytes<4>(stream);
    case Correction::none:
      break;
  }
  return stream;
}

}  // namespace korvex::veri
