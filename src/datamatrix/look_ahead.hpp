// The look-ahead test: which encodation scheme suits the characters to come.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "datamatrix/excess.hpp"
#include "datamatrix/far_look_ahead.hpp"
#include "datamatrix/look_ahead_rules.hpp"

namespace korvex::datamatrix {

/// The look-ahead test over one message, of at most kMaxCharacters, which outlives it.
///
/// A test compares counts that grow from its own first character. All tests share sums over the message, to
/// which each adds offsets of its own: the next characters are looked at by their excess over ASCII, those
/// far away by sums that are made when a test first goes there.
class LookAhead {
 public:
  explicit LookAhead(std::span<const Character> message);

  /// The scheme to use from the character at `position` on, when `current` is in use so far.
  Scheme best_scheme(int position, Scheme current) {
    return current == Scheme::base256 && base256_goes_on(position) ? current : test(position, current);
  }

 private:
  [[nodiscard]] Excess excess(int position) const {
    return before_[static_cast<std::size_t>(position)].excess;
  }
  /// True when the sums have not paired the digit before `position`: with the next one, they will.
  [[nodiscard]] bool has_open_pair(int position) const {
    return before_[static_cast<std::size_t>(position)].open_pair;
  }
  /// Whether the first verdict of a test in Base 256 is Base 256 again. Binary data is planned by it alone.
  [[nodiscard]] bool base256_goes_on(int position) const {
    const int next = position + kFirstVerdict;
    return next <= size_ && !has_open_pair(position) &&
           is_binary(excess(next) + start_excess(position, Scheme::base256));
  }
  [[nodiscard]] Excess start_excess(int position, Scheme current) const {
    return kStartExcess[static_cast<std::size_t>(current)] - excess(position);
  }
  [[nodiscard]] int near_end(int position) const { return std::min(position + kNear, size_) + 1; }
  Scheme test(int position, Scheme current);
  Scheme test_within_digits(int position, Scheme current);
  [[nodiscard]] Scheme end_test(Excess offset, bool open_pair, Scheme current) const;
  [[nodiscard]] Decision first_near_decision(int begin, int end, Excess offset) const;
  Scheme far_test(int position, int begin, Scheme current);
  Decision first_far_decision(int position, int begin, Counts& offsets);
  void make_sums();
  [[nodiscard]] const Counts& sums(int position) const { return sums_[static_cast<std::size_t>(position)]; }
  [[nodiscard]] std::span<const Counts> all_sums() const {
    return {sums_.get(), static_cast<std::size_t>(size_) + 1};
  }
  [[nodiscard]] int end_of_digits(int position) const;
  Scheme scheme_of(const Decision& decision);
  bool separator_follows(int position);

  std::span<const Character> message_;
  int size_ = 0;
  int separator_from_ = 0;  // from here to separator_stop_ separator_follows() answers the same
  int separator_stop_ = -1;
  /// What all characters before a position come to.
  struct Before {
    Excess excess;
    bool open_pair;
  };
  std::unique_ptr<Before[]> before_;  // too large for a stack; not cleared

  std::unique_ptr<Counts[]> sums_;  // of all characters before a position, once a test went far
  int far_positions_ = 0;           // looked at one by one
  FarLookAhead far_;
};

}  // namespace korvex::datamatrix
