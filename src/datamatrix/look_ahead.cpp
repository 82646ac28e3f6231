#include "datamatrix/look_ahead.hpp"

#include <algorithm>

namespace korvex::datamatrix {

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
  const auto [decided, verdict] = decide(position, offsets);
  if (verdict == Verdict::none) return choose_at_end(sums(size_) + offsets, current);
  if (verdict != Verdict::c40_or_x12) return static_cast<Scheme>(verdict);
  return separator_follows(decided) ? Scheme::x12 : Scheme::c40;
}

/// Whether the first verdict of a test in Base 256 is Base 256, by the rule that needs no other counts than
/// its own and that of ASCII. Binary data is planned by it alone.
bool LookAhead::base256_goes_on(int position) const {
  const int end = position + kFirstVerdict;
  if (end > size_ || begins_within_pair(position)) return false;
  const std::int32_t ascii = kStartCounts[kBase256][kAscii] + sums(end)[kAscii] - sums(position)[kAscii];
  return sums(end)[kBase256] - sums(position)[kBase256] + kCodeword <= ascii;
}

/// The first decision of the test that begins at `position`. Makes the offsets those that go with it.
Decision LookAhead::decide(int position, Counts& offsets) {
  constexpr int kNear = 32;         // positions in which nearly every test is decided
  constexpr int kManyReadings = 4;  // of the whole message
  int begin = position + kFirstVerdict;
  if (begins_within_pair(position)) {
    // The sums pair the digits of this run from its start, the test pairs them from its own.
    int run_end = position;
    while (run_end < size_ && is_digit(message_[static_cast<std::size_t>(run_end)])) ++run_end;
    for (; begin <= run_end; ++begin) {
      const Verdict found = verdict(sums(begin) + offsets);
      if (found != Verdict::none) return {begin, found};
    }
    if (run_end < size_) offsets[kAscii] += (run_end - position) % 2 == 0 ? -kDigit : kDigit;
  }
  const int end = size_ + 1;
  if (begin >= end) return {begin, Verdict::none};
  if (far_.is_ready()) return far_.first_decision(begin, offsets);

  const int near_end = std::min(begin + kNear, end);
  const Decision near = first_decision(all_sums(), begin, near_end, offsets);
  if (near.verdict != Verdict::none || near_end == end) return near;
  far_positions_ += end - near_end;
  if (far_positions_ <= kManyReadings * end) return first_decision(all_sums(), near_end, end, offsets);
  far_.prepare(all_sums());
  return far_.first_decision(near_end, offsets);
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

}  // namespace korvex::datamatrix
