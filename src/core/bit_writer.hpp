// Bits in order into bytes.
#pragma once

#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korvex {

/// Appends bit fields to a caller's bytes, most significant bit first. Bytes come out whole: after the last
/// field flush() fills the one under way with zero bits.
class BitWriter {
 public:
  explicit BitWriter(std::span<std::uint8_t> bytes) : bytes_(bytes) {}

  /// Appends the low `count_bits` bits of `value`. Requires 0 <= count_bits <= 32, value < 2^count_bits and
  /// room for them; anything else is a fault of ours, not bad input.
  void put(std::uint32_t value, int count_bits) {
    assert(count_bits >= 0 && count_bits <= 32 && (std::uint64_t{value} >> count_bits) == 0);
    pending_ = pending_ << count_bits | value;
    pending_bits_ += count_bits;
    while (pending_bits_ >= 8) {
      pending_bits_ -= 8;
      assert(size_ < bytes_.size());
      bytes_[size_++] = static_cast<std::uint8_t>(pending_ >> pending_bits_);
    }
  }

  /// Bits appended so far.
  [[nodiscard]] int size_bits() const { return static_cast<int>(size_) * 8 + pending_bits_; }

  /// Fills up the last byte with zero bits.
  void flush() {
    if (pending_bits_ > 0) put(0, 8 - pending_bits_);
  }

 private:
  std::span<std::uint8_t> bytes_;
  std::size_t size_ = 0;
  std::uint64_t pending_ = 0;  // the low pending_bits_ bits are still to be written
  int pending_bits_ = 0;
};

}  // namespace korvex
