// The Data Encryption Standard, FIPS 46-3.
#pragma once

#include <array>
#include <cstdint>

#include "qr/secret.hpp"

namespace korvex::qr {

/// Enciphers blocks of eight bytes, the first byte in the most significant bits, with one key.
class Des {
 public:
  /// The 16 outputs of the round function while one block was enciphered.
  using RoundOutputs = std::array<std::uint32_t, 16>;

  /// The lowest bit of each of the key's eight bytes is parity and not looked at.
  explicit Des(std::uint64_t key);

  std::uint64_t encipher(std::uint64_t block, RoundOutputs& outputs) const;

 private:
  // 48 bits each. They live and die with the object.
  Secret<std::array<std::uint64_t, 16>> round_keys_;
};

}  // namespace korvex::qr
