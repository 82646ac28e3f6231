#include <algorithm>
#include <array>
#include <cstddef>

#include "pdf417/compaction.hpp"

namespace korvex::pdf417 {
namespace {

constexpr std::uint32_t kBase = 900;
constexpr std::size_t kBytesInGroup = 6;
constexpr std::size_t kCodewordsInByteGroup = 5;
constexpr std::size_t kDigitsInGroup = 44;

/// A natural number of at most 15 digits of base 900, three of them a word: a word times 10^9 with a carry
/// still fits 64 bits.
class Number {
 public:
  /// Makes it itself times `factor` plus `addend`, both at most 10^9.
  void multiply_and_add(std::uint32_t factor, std::uint32_t addend) {
    std::uint64_t carry = addend;
    for (std::size_t i = 0; i < size_; ++i) {
      const std::uint64_t value = std::uint64_t{words_[i]} * factor + carry;
      carry = value / kWordBase;
      words_[i] = static_cast<std::uint32_t>(value - carry * kWordBase);
    }
    for (; carry != 0; carry /= kWordBase) words_[size_++] = static_cast<std::uint32_t>(carry % kWordBase);
  }

  /// Appends its digits of base 900, the highest first, without leading zeros.
  void append_to(CodewordBuffer& codewords) const {
    bool leading = true;
    for (std::size_t i = size_; i-- > 0;) {
      for (const std::uint32_t digit :
           {words_[i] / (kBase * kBase), words_[i] / kBase % kBase, words_[i] % kBase}) {
        leading = leading && digit == 0;
        if (!leading) codewords.push(digit);
      }
    }
  }

 private:
  static constexpr std::uint32_t kWordBase = kBase * kBase * kBase;
  std::size_t size_ = 0;
  std::array<std::uint32_t, 5> words_{};  // the lowest first
};

/// A group of digits with a 1 in front, which keeps leading zeros.
void compact_digit_group(std::span<const std::uint8_t> digits, CodewordBuffer& codewords) {
  constexpr std::size_t kDigitsAtOnce = 9;
  Number number;
  number.multiply_and_add(1, 1);
  while (!digits.empty()) {
    // The odd ones first, so that the others make full steps.
    const std::size_t odd = digits.size() % kDigitsAtOnce;
    std::uint32_t value = 0;
    std::uint32_t power = 1;
    for (const std::uint8_t digit : digits.first(odd != 0 ? odd : kDigitsAtOnce)) {
      value = value * 10 + (digit - std::uint32_t{'0'});
      power *= 10;
    }
    number.multiply_and_add(power, value);
    digits = digits.subspan(odd != 0 ? odd : kDigitsAtOnce);
  }
  number.append_to(codewords);
}

}  // namespace

void compact_bytes(std::span<const std::uint8_t> bytes, CodewordBuffer& codewords) {
  for (; bytes.size() >= kBytesInGroup; bytes = bytes.subspan(kBytesInGroup)) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < kBytesInGroup; ++i) value = value << 8 | bytes[i];
    constexpr std::uint32_t kTwoDigits = kBase * kBase;
    const auto high = static_cast<std::uint32_t>(value / kTwoDigits);
    const auto low = static_cast<std::uint32_t>(value % kTwoDigits);
    const auto group = codewords.extend(kCodewordsInByteGroup);
    group[0] = static_cast<std::uint16_t>(high / kTwoDigits);
    group[1] = static_cast<std::uint16_t>(high % kTwoDigits / kBase);
    group[2] = static_cast<std::uint16_t>(high % kBase);
    group[3] = static_cast<std::uint16_t>(low / kBase);
    group[4] = static_cast<std::uint16_t>(low % kBase);
  }
  for (const std::uint8_t byte : bytes) codewords.push(byte);
}

void compact_digits(std::span<const std::uint8_t> digits, CodewordBuffer& codewords) {
  while (!digits.empty()) {
    const std::size_t length = std::min(digits.size(), kDigitsInGroup);
    compact_digit_group(digits.first(length), codewords);
    digits = digits.subspan(length);
  }
}

}  // namespace korvex::pdf417
