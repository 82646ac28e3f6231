#include "datamatrix/look_ahead.hpp"

#include <cstdlib>

namespace korvex::datamatrix {
namespace {

constexpr int kNear = 32;  // positions that nearly every test is decided in

constexpr std::int32_t kAny = -(1 << 29);  // a difference that always suffices

/// The schemes that the rules choose, and by how much each other scheme must count more. Base 256 has two
/// rules.
constexpr std::array<std::size_t, kRules> kRuleSchemes = {kAscii,   kC40,     kText,   kX12,
                                                          kEdifact, kBase256, kBase256};
constexpr Thresholds kThresholds = {{
    {{kAny, 12, 12, 12, 12, 12}},
    {{13, kAny, 13, 0, 13, 13}},
    {{13, 13, kAny, 13, 13, 13}},
    {{13, 13, 13, kAny, 13, 13}},
    {{13, 13, 13, 13, kAny, 13}},
    {{12, kAny, kAny, kAny, kAny, kAny}},
    {{kAny, 13, 13, 13, 13, kAny}},
}};

bool reaches(const Counts& differences, const Counts& threshold) {
  for (std::size_t other = 0; other < differences.size(); ++other) {
    if (differences[other] < threshold[other]) return false;
  }
  return true;
}

/// False when no rule can hold anywhere in the block.
bool may_decide(const Block& block, const Thresholds& thresholds) {
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    for (const Counts& corner : block[rule]) {
      if (reaches(corner, thresholds[rule])) return true;
    }
  }
  return false;
}

Counts greater_of(const Counts& a, const Counts& b) {
  Counts greater;
  for (std::size_t other = 0; other < a.size(); ++other) greater[other] = std::max(a[other], b[other]);
  return greater;
}

/// How much is lost by one corner for both: differences that never matter at the same time count alike.
std::int32_t loss(const Counts& a, const Counts& b) {
  std::int32_t sum = 0;
  for (std::size_t other = 0; other < a.size(); ++other)
    sum += std::min(std::abs(a[other] - b[other]), 4 * kCodeword);
  return sum;
}

/// Two corners that cover all four.
Corners joined(const Corners& left, const Corners& right) {
  const std::int32_t straight = loss(left[0], right[0]) + loss(left[1], right[1]);
  const std::int32_t crossed = loss(left[0], right[1]) + loss(left[1], right[0]);
  const std::int32_t apart = loss(left[0], left[1]) + loss(right[0], right[1]);
  if (apart < std::min(straight, crossed))
    return {greater_of(left[0], left[1]), greater_of(right[0], right[1])};
  if (crossed < straight) return {greater_of(left[0], right[1]), greater_of(left[1], right[0])};
  return {greater_of(left[0], right[0]), greater_of(left[1], right[1])};
}

Block joined(const Block& left, const Block& right) {
  Block both;
  for (std::size_t rule = 0; rule < kRules; ++rule) both[rule] = joined(left[rule], right[rule]);
  return both;
}

/// The block of some positions, given their sums; a power of 2, at least 2.
Block block_of(std::span<const Counts> sums) {
  if (sums.size() > 2) {
    return joined(block_of(sums.first(sums.size() / 2)), block_of(sums.last(sums.size() / 2)));
  }
  Block block;
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    for (std::size_t i = 0; i < 2; ++i) {
      for (std::size_t other = 0; other < sums[i].size(); ++other) {
        block[rule][i][other] = sums[i][other] - sums[i][kRuleSchemes[rule]];
      }
    }
  }
  return block;
}

}  // namespace

LookAhead::LookAhead(std::span<const Character> message)
    : message_(message), size_(static_cast<int>(message.size())) {
  Counts sum{};
  std::int32_t half_pair = 0;  // kDigit after an odd number of digits, else 0
  for (std::size_t at = 0; at < message.size(); ++at) {
    sums_[at] = sum;
    const Cost& cost = kCosts[message[at]];
    const bool digit = cost[kAscii] == kDigit;
    sum[kAscii] += cost[kAscii] + (digit ? 0 : half_pair);
    half_pair = digit ? kDigit - half_pair : 0;
    for (const std::size_t scheme : {kC40, kText}) sum[scheme] += cost[scheme];
    const std::int32_t refused = refusal(static_cast<int>(message.size() - at));
    for (const std::size_t scheme : {kX12, kEdifact, kBase256}) {
      sum[scheme] += cost[scheme] != 0 ? cost[scheme] : refused;
    }
  }
  sums_[message.size()] = sum;
}

Scheme LookAhead::best_scheme(int position, Scheme current) {
  if (current == Scheme::base256 && base256_goes_on(position)) return current;

  Counts offsets = kStartCounts[static_cast<std::size_t>(current)] - sums(position);
  int begin = position + kFirstVerdict;
  Decision decision{Verdict::none, begin};
  if (begins_within_pair(position)) {
    // The sums pair the digits of this run from its start, the test pairs them from its own.
    int run_end = position;
    while (run_end < size_ && is_digit(message_[static_cast<std::size_t>(run_end)])) ++run_end;
    decision = first_decision(begin, run_end + 1, offsets);
    begin = std::max(begin, run_end + 1);
    if (run_end < size_) offsets[kAscii] += (run_end - position) % 2 == 0 ? -kDigit : kDigit;
  }
  if (decision.verdict == Verdict::none) {
    const int near_end = std::min(begin + (has_blocks_ ? 0 : kNear), size_ + 1);
    decision = first_decision(begin, near_end, offsets);
    if (decision.verdict == Verdict::none && near_end <= size_) decision = far_decision(near_end, offsets);
  }
  if (decision.verdict == Verdict::none) return choose_at_end(sums(size_) + offsets, current);
  if (decision.verdict != Verdict::c40_or_x12) return static_cast<Scheme>(decision.verdict);
  return separator_follows(decision.position) ? Scheme::x12 : Scheme::c40;
}

/// Whether the first verdict of a test in Base 256 is Base 256, by the rule that needs no other counts than
/// its own and that of ASCII. Binary data is planned by it alone.
bool LookAhead::base256_goes_on(int position) const {
  const int end = position + kFirstVerdict;
  if (end > size_ || begins_within_pair(position)) return false;
  const std::int32_t ascii = kStartCounts[kBase256][kAscii] + sums(end)[kAscii] - sums(position)[kAscii];
  return sums(end)[kBase256] - sums(position)[kBase256] + kCodeword <= ascii;
}

/// The first verdict at one of the positions begin to end - 1.
LookAhead::Decision LookAhead::first_decision(int begin, int end, const Counts& offsets) const {
  for (int position = begin; position < end; ++position) {
    const Counts counts = sums(position) + offsets;
    if (is_level(counts)) continue;
    const Verdict found = verdict(counts);
    if (found != Verdict::none) return {found, position};
  }
  return {Verdict::none, end};
}

/// The same for all positions from `begin` on.
LookAhead::Decision LookAhead::far_decision(int begin, const Counts& offsets) {
  constexpr int kManyReadings = 4;  // of the whole message
  if (!has_blocks_) {
    far_positions_ += size_ - begin;
    if (far_positions_ <= kManyReadings * size_) return first_decision(begin, size_ + 1, offsets);
    build_blocks();
  }
  Thresholds thresholds = kThresholds;  // for the sums
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    for (std::size_t other = 0; other < offsets.size(); ++other) {
      thresholds[rule][other] += offsets[kRuleSchemes[rule]] - offsets[other];
    }
  }
  Decision decision{Verdict::none, begin};
  while (decision.verdict == Verdict::none && decision.position <= size_) {
    const int from = skip_blocks(decision.position, thresholds);
    decision = first_decision(from, std::min((from / kBlock + 1) * kBlock, size_ + 1), offsets);
  }
  return decision;
}

/// True when a CR, * or > stands at or after `position`, before the first character that X12 cannot take.
bool LookAhead::separator_follows(int position) {
  const auto is_plain_x12 = [&](int at) {
    const Character c = message_[static_cast<std::size_t>(at)];
    return is_x12(c) && !is_x12_separator(c);
  };
  if (position < separator_from_ || position > separator_stop_) {
    separator_from_ = position;
    separator_stop_ = position;
    while (separator_stop_ < size_ && is_plain_x12(separator_stop_)) ++separator_stop_;
  }
  return separator_stop_ < size_ && is_x12_separator(message_[static_cast<std::size_t>(separator_stop_)]);
}

/// Moves from `position` over the blocks that begin there and in which no rule can hold. Returns where it
/// stops.
int LookAhead::skip_blocks(int position, const Thresholds& thresholds) const {
  for (int level = position % kBlock == 0 ? 0 : -1; level >= 0;) {
    const int length = kBlock << level;
    if (position % length == 0 && position + length <= size_ + 1 &&
        !may_decide(blocks_[block_index(position, level)], thresholds)) {
      position += length;
      level = std::min(level + 1, kLevels - 1);
    } else {
      --level;
    }
  }
  return position;
}

/// Makes the blocks of the lowest level from the sums and all others from pairs of blocks.
void LookAhead::build_blocks() {
  const int positions = size_ + 1;
  for (int at = 0; at + kBlock <= positions; at += kBlock) {
    blocks_[block_index(at, 0)] = block_of(std::span(sums_).subspan(static_cast<std::size_t>(at), kBlock));
  }
  for (int level = 1; level < kLevels; ++level) {
    const int length = kBlock << level;
    level_begin_[static_cast<std::size_t>(level)] =
        level_begin_[static_cast<std::size_t>(level - 1)] + positions / (length / 2);
    for (int at = 0; at + length <= positions; at += length) {
      blocks_[block_index(at, level)] =
          joined(blocks_[block_index(at, level - 1)], blocks_[block_index(at + length / 2, level - 1)]);
    }
  }
  has_blocks_ = true;
}

}  // namespace korvex::datamatrix
