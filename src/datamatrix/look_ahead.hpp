// The look-ahead test: which encodation scheme suits the characters to come.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "datamatrix/far_look_ahead.hpp"
#include "datamatrix/look_ahead_rules.hpp"

namespace korvex::datamatrix {

/// The look-ahead test over one message, of at most kMaxCharacters, which outlives it.
///
/// A test compares counts that grow from its own first character. All tests share sums over the message, to
/// which each adds offsets of its own.
class LookAhead {
 public:
  explicit LookAhead(std::span<const Character> message);

  /// The scheme to use from the character at `position` on, when `current` is in use so far.
  Scheme best_scheme(int position, Scheme current);

 private:
  [[nodiscard]] const Counts& sums(int position) const { return sums_[static_cast<std::size_t>(position)]; }
  [[nodiscard]] std::span<const Counts> all_sums() const {
    return std::span(sums_).first(static_cast<std::size_t>(size_) + 1);
  }
  /// True when the sums pair the character before `position` with the one there.
  [[nodiscard]] bool begins_within_pair(int position) const {
    return sums(position)[kAscii] % kCodeword != 0;
  }
  [[nodiscard]] bool base256_goes_on(int position) const;
  Decision decide(int position, Counts& offsets);
  bool separator_follows(int position);

  std::span<const Character> message_;
  int size_ = 0;
  int far_positions_ = 0;   // looked at one by one in tests that went far
  int separator_from_ = 0;  // from here to separator_stop_ separator_follows() answers the same
  int separator_stop_ = -1;
  std::array<Counts, kMaxCharacters + 1> sums_;  // of all characters before a position; not cleared
  FarLookAhead far_;
};

}  // namespace korvex::datamatrix
