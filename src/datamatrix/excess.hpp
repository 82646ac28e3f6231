// What the schemes count beyond ASCII, all in one word: the form in which the look-ahead test reads the next
// characters, which decide nearly every test.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "datamatrix/look_ahead_rules.hpp"

namespace korvex::datamatrix {

/// What C40, Text, X12, EDIFACT and Base 256 count beyond ASCII, which is all that the rules look at: a field
/// for each, so that one addition adds to them all. Sums over a message wrap around, but the difference of
/// two that stand at most kNear characters apart is right.
using Excess = std::uint64_t;
inline constexpr int kNear = 32;

namespace excess {

inline constexpr std::array<std::size_t, 5> kSchemes = {kC40, kText, kX12, kEdifact, kBase256};
inline constexpr std::array<int, 6> kLowBit = {0, 0, 10, 20, 34, 48};
inline constexpr std::array<int, 6> kTopBit = {0, 9, 19, 33, 47, 63};

/// A word with these numbers. A negative one borrows from the next field, which a sum gives back.
constexpr Excess pack(const Counts& numbers) {
  Excess packed = 0;
  for (const std::size_t scheme : kSchemes) {
    packed += static_cast<Excess>(std::int64_t{numbers[scheme]}) << kLowBit[scheme];
  }
  return packed;
}

inline constexpr Excess kTopBits = [] {
  Excess bits = 0;
  for (const std::size_t scheme : kSchemes) bits |= Excess{1} << kTopBit[scheme];
  return bits;
}();
inline constexpr Excess kFourTopBits = kTopBits & ~(Excess{1} << kTopBit[kBase256]);  // without Base 256

/// What stands in the fields for no excess. Their top bits then say that none leads ASCII by enough to win:
/// Base 256 not at all, the others by a codeword at most.
inline constexpr Counts kZero = [] {
  Counts zero{};
  for (const std::size_t scheme : kSchemes) {
    zero[scheme] = (1 << (kTopBit[scheme] - kLowBit[scheme])) + (scheme == kBase256 ? 0 : kCodeword);
  }
  return zero;
}();

/// Taken off, it leaves the top bits of those that are at least a codeword behind ASCII.
inline constexpr Excess kBehind =
    pack({{0, 2 * kCodeword, 2 * kCodeword, 2 * kCodeword, 2 * kCodeword, kCodeword}});

/// What a near test counts for a character that a scheme refuses: less than refusal(), for the fields to hold
/// it, but enough to keep X12 and EDIFACT two codewords behind ASCII to the end of the test, and Base 256
/// one. No rule asks how far behind beyond that. The last kLast characters have a refusal() that is less
/// still, which does count.
inline constexpr Counts kRefusal = {{0, 0, 0, 192, 192, 432}};
inline constexpr int kLast = 6;
/// Whether that much is left of it once the scheme has won all that it can: at the start, with every other
/// character, and with a digit that stays alone.
constexpr bool refusal_suffices(std::int32_t refusal, std::int32_t ascii, std::int32_t lead,
                                std::int32_t behind) {
  return refusal - ascii - kCodeword - (kNear - 1) * lead - kDigit >= behind;
}
static_assert(kRefusal[kX12] <= refusal(kLast + 1) && kRefusal[kEdifact] <= refusal(kLast + 1));
static_assert(refusal_suffices(kRefusal[kX12], 2 * kCodeword, 4, 2 * kCodeword) &&
              refusal_suffices(kRefusal[kEdifact], 2 * kCodeword, 3, 2 * kCodeword) &&
              refusal_suffices(kRefusal[kBase256], kCodeword, kCodeword, kCodeword));

/// Whether the field holds the most that a near test counts; 8 is that of a character of four values.
constexpr bool has_room(std::size_t scheme, std::int32_t most_a_character) {
  const std::int32_t most = kZero[scheme] + kStartCounts[kC40][kBase256] + kNear * most_a_character;
  return most < 2 << (kTopBit[scheme] - kLowBit[scheme]);
}
static_assert(has_room(kC40, 8) && has_room(kText, 8) && has_room(kX12, kRefusal[kX12]) &&
              has_room(kEdifact, kRefusal[kEdifact]) && has_room(kBase256, kRefusal[kBase256]));

}  // namespace excess

/// What a test begins with, by the scheme in use.
inline constexpr auto kStartExcess = [] {
  std::array<Excess, kStartCounts.size()> starts{};
  for (std::size_t scheme = 0; scheme < starts.size(); ++scheme) {
    Counts start = kStartCounts[scheme] + excess::kZero;
    for (std::int32_t& count : start) count -= kStartCounts[scheme][kAscii];
    starts[scheme] = excess::pack(start);
  }
  return starts;
}();

/// What a character adds, with these counts in the schemes that refuse it.
constexpr Excess step(Character c, const Counts& refused) {
  const Cost& cost = kCosts[c];
  Counts fields{};
  for (const std::size_t scheme : excess::kSchemes) {
    fields[scheme] = (cost[scheme] != 0 ? cost[scheme] : refused[scheme]) - cost[kAscii];
  }
  return excess::pack(fields);
}
inline constexpr auto kSteps = [] {
  std::array<Excess, kCharacterCount> steps{};
  for (Character c = 0; c < kCharacterCount; ++c) steps[c] = step(c, excess::kRefusal);
  return steps;
}();

/// What all lose where ASCII counts half a codeword more, for a digit that finds no second one.
inline constexpr Excess kOpenPair = excess::pack({{0, kDigit, kDigit, kDigit, kDigit, kDigit}});

/// Counts with this excess, 0 for ASCII.
Counts counts_of(Excess at);

/// True where no rule can hold, which is how most characters leave a test: none leads ASCII by enough to win,
/// and not all of C40, Text, X12 and EDIFACT are a codeword behind it.
constexpr bool is_level(Excess at) {
  using namespace excess;
  return (at & kTopBits) == kTopBits && ((at - kBehind) & kFourTopBits) != kFourTopBits;
}

/// True where Base 256 leads ASCII by a codeword, and so wins.
constexpr bool is_binary(Excess at) {
  return at < excess::pack({{0, 0, 0, 0, 0, excess::kZero[kBase256] - kCodeword + 1}});
}

/// True where ASCII wins: all others are a codeword behind it.
constexpr bool is_ascii(Excess at) {
  using namespace excess;
  return (at & (at - kBehind) & kTopBits) == kTopBits;
}

/// The first rule that holds, as for counts.
Verdict verdict(Excess at);

}  // namespace korvex::datamatrix
