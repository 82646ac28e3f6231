#include "datamatrix/look_ahead.hpp"

namespace korvex::datamatrix {
namespace {

constexpr int kNear = 32;  // positions that nearly every test is decided in

/// By how much the count of the column's scheme must exceed that of the row's before the row's is chosen.
/// Base 256 needs its first column, or the four behind it.
constexpr std::array<Counts, 6> kNeededLeads = {{
    {{0, 12, 12, 12, 12, 12}},
    {{13, 0, 13, 0, 13, 13}},
    {{13, 13, 0, 13, 13, 13}},
    {{13, 13, 13, 0, 13, 13}},
    {{13, 13, 13, 13, 0, 13}},
    {{12, 13, 13, 13, 13, 0}},
}};

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
    const int near_end = std::min(begin + kNear, size_ + 1);
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
  constexpr int kManyReadings = 16;  // of the whole message
  while (begin <= size_) {
    if (has_blocks_ && begin % kBlock == 0) begin = skip_blocks(begin, offsets);
    const int end = std::min((begin / kBlock + 1) * kBlock, size_ + 1);
    const Decision decision = first_decision(begin, end, offsets);
    if (decision.verdict != Verdict::none) return decision;
    far_positions_ += end - begin;
    begin = end;
    if (!has_blocks_ && far_positions_ > kManyReadings * size_) build_blocks();
  }
  return {Verdict::none, begin};
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

/// Moves from `position`, the start of a block, over the blocks in which no rule can hold. Returns where it
/// stops.
int LookAhead::skip_blocks(int position, const Counts& offsets) const {
  Leads needed = kNeededLeads;  // of the sums
  for (std::size_t y = 0; y < needed.size(); ++y) {
    for (std::size_t z = 0; z < needed.size(); ++z) needed[y][z] += offsets[y] - offsets[z];
  }
  const auto may_decide = [&](const Leads& most) {
    const auto reached = [&](std::size_t y, std::size_t z) { return most[y][z] >= needed[y][z]; };
    for (std::size_t y = kAscii; y < kBase256; ++y) {
      bool all = true;
      for (std::size_t z = kAscii; z <= kBase256; ++z) all &= y == z || reached(y, z);
      if (all) return true;
    }
    return reached(kBase256, kAscii) || (reached(kBase256, kC40) && reached(kBase256, kText) &&
                                         reached(kBase256, kX12) && reached(kBase256, kEdifact));
  };
  for (int level = 0; level >= 0;) {
    const int length = kBlock << level;
    if (position % length == 0 && position + length <= size_ + 1 &&
        !may_decide(blocks_[block_index(position, level)])) {
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
  const auto fill = [](Leads& most, const auto& lead) {
    for (std::size_t y = 0; y < most.size(); ++y) {
      for (std::size_t z = 0; z < most.size(); ++z) most[y][z] = lead(y, z);
    }
  };
  for (int at = 0; at + kBlock <= positions; at += kBlock) {
    fill(blocks_[block_index(at, 0)], [&](std::size_t y, std::size_t z) {
      std::int32_t lead = sums(at)[z] - sums(at)[y];
      for (int i = at + 1; i < at + kBlock; ++i) lead = std::max(lead, sums(i)[z] - sums(i)[y]);
      return lead;
    });
  }
  for (int level = 1; level < kLevels; ++level) {
    const int length = kBlock << level;
    level_begin_[static_cast<std::size_t>(level)] =
        level_begin_[static_cast<std::size_t>(level - 1)] + positions / (length / 2);
    for (int at = 0; at + length <= positions; at += length) {
      const Leads& left = blocks_[block_index(at, level - 1)];
      const Leads& right = blocks_[block_index(at + length / 2, level - 1)];
      fill(blocks_[block_index(at, level)],
           [&](std::size_t y, std::size_t z) { return std::max(left[y][z], right[y][z]); });
    }
  }
  has_blocks_ = true;
}

}  // namespace korvex::datamatrix
