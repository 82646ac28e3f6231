#include "datamatrix/look_ahead.hpp"

#include <algorithm>

namespace korvex::datamatrix {

LookAhead::LookAhead(std::span<const Character> message)
    : message_(message),
      size_(static_cast<int>(message.size())),
      before_(std::make_unique_for_overwrite<Before[]>(message.size() + 1)) {
  Excess sum = 0;
  bool open_pair = false;
  int at = 0;
  const auto add = [&](Character c, Excess added) {
    before_[static_cast<std::size_t>(at)] = {sum, open_pair};
    const bool digit = is_digit(c);
    sum += added - (open_pair && !digit ? kOpenPair : 0);
    open_pair = !open_pair && digit;
    ++at;
  };
  const auto last = static_cast<std::size_t>(std::min(size_, excess::kLast));
  for (const Character c : message.first(message.size() - last)) add(c, kSteps[c]);
  for (const Character c : message.last(last)) {
    const std::int32_t refused = refusal(size_ - at);
    add(c, step(c, {{0, 0, 0, refused, refused, refused}}));
  }
  before_[message.size()] = {sum, open_pair};
}

/// As first_decision(), at positions that are at most kNear behind where the test begins.
inline Decision LookAhead::first_near_decision(int begin, int end, Excess offset) const {
  for (; begin < end; ++begin) {
    const Excess at = excess(begin) + offset;
    if (is_level(at)) continue;
    if (is_ascii(at)) return {begin, Verdict::ascii};
    const Verdict found = verdict(at);
    if (found != Verdict::none) return {begin, found};
  }
  return {begin, Verdict::none};
}

Scheme LookAhead::test(int position, Scheme current) {
  // Where many tests go far, most of the others do.
  if (far_.is_ready()) return far_test(position, position + kFirstVerdict, current);
  if (has_open_pair(position)) return test_within_digits(position, current);
  const Excess offset = start_excess(position, current);
  const int end = near_end(position);
  const Decision decision = first_near_decision(position + kFirstVerdict, end, offset);
  if (decision.verdict != Verdict::none) return scheme_of(decision);
  return end <= size_ ? far_test(position, end, current) : end_test(offset, has_open_pair(size_), current);
}

/// The test at a digit, or behind the last one, that the sums pair with the digit before.
Scheme LookAhead::test_within_digits(int position, Scheme current) {
  // The sums pair the digits of this run from its start, the test pairs them from its own.
  const int run_end = end_of_digits(position);
  const int end = near_end(position);
  Excess offset = start_excess(position, current);
  Decision decision = first_near_decision(position + kFirstVerdict, std::min(run_end + 1, end), offset);
  if (run_end < size_) offset += has_open_pair(run_end) ? kOpenPair : -kOpenPair;
  if (decision.verdict == Verdict::none) decision = first_near_decision(decision.position, end, offset);
  if (decision.verdict != Verdict::none) return scheme_of(decision);
  if (end <= size_) return far_test(position, end, current);
  return end_test(offset, has_open_pair(size_) != (run_end == size_), current);
}

/// The choice of a test that reads to the end of the message. `open_pair`: a digit without a second one ends
/// it.
Scheme LookAhead::end_test(Excess offset, bool open_pair, Scheme current) const {
  Counts counts = counts_of(excess(size_) + offset);
  // ASCII counts whole codewords, here as many as leave no count negative, but for that digit.
  for (std::int32_t& count : counts) count += kNear * kCodeword + (open_pair ? kDigit : 0);
  return choose_at_end(counts, current);
}

/// The test at `position` from `begin` on, before which it decided nothing.
Scheme LookAhead::far_test(int position, int begin, Scheme current) {
  if (sums_ == nullptr) make_sums();
  Counts offsets = kStartCounts[static_cast<std::size_t>(current)] - sums(position);
  const Decision decision = first_far_decision(position, begin, offsets);
  if (decision.verdict == Verdict::none) return choose_at_end(sums(size_) + offsets, current);
  return scheme_of(decision);
}

/// The first decision from `begin` on of the test at `position`. Makes the offsets those that go with it.
Decision LookAhead::first_far_decision(int position, int begin, Counts& offsets) {
  constexpr int kManyReadings = 4;  // of the whole message
  if (has_open_pair(position)) {
    const int run_end = end_of_digits(position);
    for (; begin <= run_end; ++begin) {
      const Verdict found = verdict(sums(begin) + offsets);
      if (found != Verdict::none) return {begin, found};
    }
    if (run_end < size_) offsets[kAscii] += has_open_pair(run_end) ? -kDigit : kDigit;
  }
  const int end = size_ + 1;
  if (begin >= end) return {begin, Verdict::none};
  if (far_.is_ready()) return far_.first_decision(begin, offsets);
  far_positions_ += end - begin;
  if (far_positions_ <= kManyReadings * end) return first_decision(all_sums(), begin, end, offsets);
  far_.prepare(all_sums());
  return far_.first_decision(begin, offsets);
}

void LookAhead::make_sums() {
  sums_ = std::make_unique_for_overwrite<Counts[]>(static_cast<std::size_t>(size_) + 1);
  Counts sum{};
  for (int at = 0; at < size_; ++at) {
    sums_[static_cast<std::size_t>(at)] = sum;
    const Cost& cost = kCosts[message_[static_cast<std::size_t>(at)]];
    sum[kAscii] += cost[kAscii] + (has_open_pair(at) && cost[kAscii] != kDigit ? kDigit : 0);
    for (const std::size_t scheme : {kC40, kText}) sum[scheme] += cost[scheme];
    for (const std::size_t scheme : {kX12, kEdifact, kBase256}) {
      sum[scheme] += cost[scheme] != 0 ? cost[scheme] : refusal(size_ - at);
    }
  }
  sums_[static_cast<std::size_t>(size_)] = sum;
}

/// The first position at or after `position` that has no digit.
int LookAhead::end_of_digits(int position) const {
  while (position < size_ && is_digit(message_[static_cast<std::size_t>(position)])) ++position;
  return position;
}

/// The scheme that a verdict, there must be one, chooses.
Scheme LookAhead::scheme_of(const Decision& decision) {
  if (decision.verdict != Verdict::c40_or_x12) return static_cast<Scheme>(decision.verdict);
  return separator_follows(decision.position) ? Scheme::x12 : Scheme::c40;
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
