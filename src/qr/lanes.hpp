// Several words side by side, worked on at once.
#pragma once

#include <cstring>

namespace korvex::qr {

#if defined(__i386__) && !defined(__SSE2__)

// Without vector registers one word at a time.
template <class Word>
using Lanes = Word;

template <class Word>
inline constexpr int kLaneCount = 1;

template <class Word>
constexpr Word lane(const Lanes<Word>& lanes, int) {
  return lanes;
}

#else

template <class Word>
struct LanesOf {
  using Type [[gnu::vector_size(16)]] = Word;
};

/// Words side by side, as many as fill 16 bytes, with the operators of one word.
template <class Word>
using Lanes = typename LanesOf<Word>::Type;

template <class Word>
inline constexpr int kLaneCount = 16 / static_cast<int>(sizeof(Word));

/// One of the words.
template <class Word>
inline Word lane(const Lanes<Word>& lanes, int index) {
  return lanes[index];
}

#endif

template <class Word>
inline Lanes<Word> load(const Word* words) {
  Lanes<Word> lanes;
  std::memcpy(&lanes, words, sizeof lanes);
  return lanes;
}

template <class Word>
inline void store(const Lanes<Word>& lanes, Word* words) {
  std::memcpy(words, &lanes, sizeof lanes);
}

/// The number of ones in each byte. Such counts may be added as long as no byte passes 255.
template <class Word>
inline Lanes<Word> ones_by_byte(const Lanes<Word>& lanes) {
  constexpr Word kAll = ~Word{0};
  Lanes<Word> x = lanes - (lanes >> 1 & kAll / 3);
  x = (x & kAll / 5) + (x >> 2 & kAll / 5);
  return (x + (x >> 4)) & kAll / 17;
}

/// The sums of neighbouring bytes, in 16 bits each. Such sums may be added as long as those of a word stay
/// below 2^16 together.
template <class Word>
inline Lanes<Word> pairs_of_bytes(const Lanes<Word>& bytes) {
  constexpr Word kLowBytes = ~Word{0} / 257;
  return (bytes & kLowBytes) + (bytes >> 8 & kLowBytes);
}

/// The total of one word's 16-bit sums.
template <class Word>
constexpr int total_of_pairs(Word pairs) {
  constexpr Word kOneInEach = ~Word{0} / 65535;
  return static_cast<int>(static_cast<Word>(pairs * kOneInEach) >> (sizeof(Word) * 8 - 16));
}

}  // namespace korvex::qr
