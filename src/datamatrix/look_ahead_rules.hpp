// The rules of the look-ahead test: what characters count for in every scheme, and when a scheme has won.
// ISO/IEC 16022:2006, Annex P, with exact counts for C40 and Text.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "datamatrix/characters.hpp"

namespace korvex::datamatrix {

/// Codewords that some characters would take in each scheme, in twelfths.
struct Counts : std::array<std::int32_t, 6> {};

constexpr Counts operator+(Counts a, const Counts& b) {
  for (std::size_t scheme = 0; scheme < a.size(); ++scheme) a[scheme] += b[scheme];
  return a;
}
constexpr Counts operator-(Counts a, const Counts& b) {
  for (std::size_t scheme = 0; scheme < a.size(); ++scheme) a[scheme] -= b[scheme];
  return a;
}

// Places in Counts.
inline constexpr std::size_t kAscii = static_cast<std::size_t>(Scheme::ascii);
inline constexpr std::size_t kC40 = static_cast<std::size_t>(Scheme::c40);
inline constexpr std::size_t kText = static_cast<std::size_t>(Scheme::text);
inline constexpr std::size_t kX12 = static_cast<std::size_t>(Scheme::x12);
inline constexpr std::size_t kEdifact = static_cast<std::size_t>(Scheme::edifact);
inline constexpr std::size_t kBase256 = static_cast<std::size_t>(Scheme::base256);

inline constexpr std::int32_t kCodeword = 12;  // its twelfths
inline constexpr int kFirstVerdict = 4;        // characters that are counted before the rules are looked at

/// Half a codeword, which a digit takes. Where no other digit fills up the rest, the next character does.
inline constexpr std::int32_t kDigit = 6;

/// What a scheme counts for a character that it cannot take: more than ASCII counts for all that is left.
constexpr std::int32_t refusal(int characters_left) {
  return 2 * kCodeword * (characters_left + 1);
}

/// The twelfths of one character in every scheme; 0 where the scheme refuses it.
using Cost = std::array<std::uint8_t, 6>;

constexpr Cost cost_of(Character c) {
  return {static_cast<std::uint8_t>(is_digit(c)      ? kDigit
                                    : is_extended(c) ? 2 * kCodeword
                                                     : kCodeword),
          static_cast<std::uint8_t>(8 * kC40Values[c].count),
          static_cast<std::uint8_t>(8 * kTextValues[c].count),
          static_cast<std::uint8_t>(is_x12(c) ? 8 : 0),
          static_cast<std::uint8_t>(is_edifact(c) ? 9 : 0),
          static_cast<std::uint8_t>(c == kFnc1 ? 0 : kCodeword)};
}
inline constexpr auto kCosts = [] {
  std::array<Cost, kCharacterCount> costs{};
  for (Character c = 0; c < kCharacterCount; ++c) costs[c] = cost_of(c);
  return costs;
}();

/// What a test begins with, by the scheme in use: staying costs nothing, going from ASCII to another scheme a
/// codeword, from one of the others to another two.
inline constexpr std::array<Counts, 6> kStartCounts = {{
    {{0, 12, 12, 12, 12, 15}},
    {{12, 0, 24, 24, 24, 27}},
    {{12, 24, 0, 24, 24, 27}},
    {{12, 24, 24, 0, 24, 27}},
    {{12, 24, 24, 24, 0, 27}},
    {{12, 24, 24, 24, 24, 0}},
}};

enum class Verdict : std::uint8_t {
  ascii,
  c40,
  text,
  x12,
  edifact,
  base256,
  c40_or_x12,  ///< level: the separators to come decide
  none,        ///< read on
};

/// True for counts of which no rule can hold: what most characters leave a test at.
constexpr bool is_level(const Counts& n) {
  const std::int32_t least = std::min(std::min(n[kC40], n[kText]), std::min(n[kX12], n[kEdifact]));
  return n[kBase256] >= n[kAscii] && least >= n[kAscii] - kCodeword && least < n[kAscii] + kCodeword;
}

/// The first rule that holds, once kFirstVerdict characters are counted. EDIFACT, Text, X12 and C40 must lead
/// by more than a codeword, and C40 need not lead X12.
constexpr Verdict verdict(const Counts& n) {
  const std::int32_t ascii = n[kAscii];
  const std::int32_t c40 = n[kC40];
  const std::int32_t text = n[kText];
  const std::int32_t x12 = n[kX12];
  const std::int32_t edifact = n[kEdifact];
  const std::int32_t base256 = n[kBase256];
  const std::int32_t c40_or_x12 = std::min(c40, x12);
  const std::int32_t text_or_edifact = std::min(text, edifact);
  const std::int32_t least = std::min(c40_or_x12, text_or_edifact);
  if (ascii + kCodeword <= std::min(base256, least)) return Verdict::ascii;
  if (base256 + kCodeword <= ascii || base256 + kCodeword < least) return Verdict::base256;
  if (least + kCodeword >= std::min(ascii, base256)) return Verdict::none;
  // One of the four leads these two. It must lead the other three as well.
  if (edifact == least) {
    return edifact + kCodeword < std::min(text, c40_or_x12) ? Verdict::edifact : Verdict::none;
  }
  if (text == least) return text + kCodeword < std::min(edifact, c40_or_x12) ? Verdict::text : Verdict::none;
  if (x12 + kCodeword < std::min(c40, text_or_edifact)) return Verdict::x12;
  if (c40 > x12 || c40 + kCodeword >= text_or_edifact) return Verdict::none;
  return c40 < x12 ? Verdict::c40 : Verdict::c40_or_x12;
}

struct Decision {
  int position;
  Verdict verdict;  ///< none: nothing decided before `position`
};

/// The first decision at one of the positions begin to end - 1, of which the counts are the sums there with
/// the offsets. `end` is not before `begin`.
inline Decision first_decision(std::span<const Counts> sums, int begin, int end, const Counts& offsets) {
  for (int position = begin; position < end; ++position) {
    const Counts counts = sums[static_cast<std::size_t>(position)] + offsets;
    if (is_level(counts)) continue;
    const Verdict found = verdict(counts);
    if (found != Verdict::none) return {position, found};
  }
  return {end, Verdict::none};
}

/// The choice at the end of the message, by whole codewords.
constexpr Scheme choose_at_end(Counts n, Scheme current) {
  for (auto& count : n) count = (count + kCodeword - 1) / kCodeword * kCodeword;
  const std::int32_t least = *std::min_element(n.begin(), n.end());
  if (n[kAscii] == least) return n[static_cast<std::size_t>(current)] == least ? current : Scheme::ascii;
  if (std::count(n.begin(), n.end(), least) > 1) return Scheme::c40;
  return static_cast<Scheme>(std::find(n.begin(), n.end(), least) - n.begin());
}

}  // namespace korvex::datamatrix
