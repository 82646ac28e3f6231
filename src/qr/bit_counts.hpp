// Counting ones in many words at once, without an instruction for it that not every processor has.
#pragma once

namespace korvex::qr {

/// The number of ones in each byte of a word. Such words may be added as long as no byte passes 255.
template <class Word>
constexpr Word ones_by_byte(Word x) {
  constexpr Word kAll = ~Word{0};
  x -= x >> 1 & kAll / 3;
  x = (x & kAll / 5) + (x >> 2 & kAll / 5);
  return (x + (x >> 4)) & kAll / 17;
}

/// The sums of neighbouring bytes, in 16 bits each. Such words may be added as long as their total stays
/// below 2^16.
template <class Word>
constexpr Word pairs_of_bytes(Word bytes) {
  constexpr Word kLowBytes = ~Word{0} / 257;
  return (bytes & kLowBytes) + (bytes >> 8 & kLowBytes);
}

/// The total of a word's 16-bit sums.
template <class Word>
constexpr int total_of_pairs(Word pairs) {
  constexpr Word kOneInEach = ~Word{0} / 65535;
  return static_cast<int>(static_cast<Word>(pairs * kOneInEach) >> (sizeof(Word) * 8 - 16));
}

}  // namespace korvex::qr
