// One row of modules while a symbol is being made.
#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korvex::composite {

/// Element widths in modules, bars and spaces by turns.
using Elements = std::span<const std::uint8_t>;

/// The 64 bits of `word` from its other end.
inline constexpr std::uint64_t reversed_bits(std::uint64_t word) {
  constexpr std::uint64_t kMasks[] = {0x5555555555555555, 0x3333333333333333, 0x0F0F0F0F0F0F0F0F,
                                      0x00FF00FF00FF00FF, 0x0000FFFF0000FFFF, 0x00000000FFFFFFFF};
  int distance = 1;
  for (const std::uint64_t mask : kMasks) {
    word = (word >> distance & mask) | (word & mask) << distance;
    distance *= 2;
  }
  return word;
}

/// Modules from left to right, dark is 1. Module 0 is the most significant bit of the first word; bits past
/// the last module are 0.
class Row {
 public:
  /// The widest are GS1-128 with 46 symbol characters, and DataBar Expanded with 22 of them in a row.
  static constexpr int kMaxModules = 576;

  /// Appends the low `count` bits of `modules`. Requires 0 < count <= 32 and modules < 2^count.
  void put(std::uint64_t modules, int count) {
    assert(count > 0 && count <= 32 && modules >> count == 0);
    pending_ = pending_ << count | modules;
    pending_count_ += count;
    if (pending_count_ >= 32) {
      pending_count_ -= 32;
      put_half(static_cast<std::uint32_t>(pending_ >> pending_count_));
    }
  }
  /// Appends any number of light modules.
  void put_light(int count) {
    for (; count > 32; count -= 32) put(0, 32);
    if (count > 0) put(0, count);
  }

  /// Appends elements of alternating colour. Two neighbours are at most 32 modules wide together.
  void put_elements(Elements widths, bool dark_first) {
    const auto dark = [](int width) { return (std::uint64_t{1} << width) - 1; };
    std::size_t i = 0;
    if (dark_first && !widths.empty()) {
      put(dark(widths[0]), widths[0]);
      i = 1;
    }
    for (; i + 1 < widths.size(); i += 2) put(dark(widths[i + 1]), widths[i] + widths[i + 1]);
    if (i < widths.size()) put_light(widths[i]);
  }

  /// To be called after the last put and before anything below.
  void finish() {
    width_ = halves_ * 32 + pending_count_;
    assert(width_ <= kMaxModules);
    if (pending_count_ > 0) put_half(static_cast<std::uint32_t>(pending_ << (32 - pending_count_)));
  }

  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] std::span<const std::uint64_t> words() const { return {words_.data(), word_count()}; }

  /// Modules first to first + count - 1 as a number. Requires 0 < count <= 64 and modules inside the row.
  [[nodiscard]] std::uint64_t modules(int first, int count) const {
    const auto word = static_cast<std::size_t>(first / 64);
    const int shift = first % 64;
    std::uint64_t value = words_[word] << shift;
    if (shift + count > 64) value |= words_[word + 1] >> (64 - shift);
    return value >> (64 - count);
  }
  /// Replaces them.
  void replace(int first, int count, std::uint64_t modules) {
    const auto word = static_cast<std::size_t>(first / 64);
    const int spare = 64 - first % 64 - count;  // bits of the first word behind them
    const std::uint64_t mask = count == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << count) - 1;
    if (spare >= 0) {
      words_[word] = (words_[word] & ~(mask << spare)) | modules << spare;
    } else {
      words_[word] = (words_[word] & ~(mask >> -spare)) | modules >> -spare;
      words_[word + 1] = (words_[word + 1] & ~(mask << (64 + spare))) | modules << (64 + spare);
    }
  }

  /// The row with dark and light exchanged.
  [[nodiscard]] Row inverted() const {
    Row result;
    result.width_ = width_;
    for (std::size_t i = 0; i < word_count(); ++i) result.words_[i] = ~words_[i];
    if (width_ % 64 != 0) result.words_[word_count() - 1] &= ~std::uint64_t{0} << (64 - width_ % 64);
    return result;
  }
  /// The row read from its other end.
  [[nodiscard]] Row mirrored() const {
    Row result;
    result.width_ = width_;
    for (int done = 0; done < width_; done += 64) {
      const int count = width_ - done < 64 ? width_ - done : 64;
      result.words_[static_cast<std::size_t>(done / 64)] =
          reversed_bits(modules(width_ - done - count, count));
    }
    return result;
  }

 private:
  [[nodiscard]] std::size_t word_count() const { return static_cast<std::size_t>((width_ + 63) / 64); }

  void put_half(std::uint32_t half) {
    assert(halves_ < kMaxModules / 32);
    const auto word = static_cast<std::size_t>(halves_ / 2);
    words_[word] = halves_ % 2 == 0 ? std::uint64_t{half} << 32 : words_[word] | half;
    ++halves_;
  }

  int width_ = 0;
  int halves_ = 0;
  int pending_count_ = 0;      // 0..31 between calls
  std::uint64_t pending_ = 0;  // modules not yet in a word are the low pending_count_ bits
  std::array<std::uint64_t, kMaxModules / 64> words_;  // not cleared: every word is written before it is read
};

/// `count` modules that alternate, the first one dark. Requires count <= 64.
inline constexpr std::uint64_t alternating_modules(int count) {
  return 0xAAAAAAAAAAAAAAAA >> (64 - count);
}

}  // namespace korvex::composite
