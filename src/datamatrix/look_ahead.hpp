// The look-ahead test: which encodation scheme suits the characters to come.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "datamatrix/look_ahead_rules.hpp"

namespace korvex::datamatrix {

inline constexpr std::size_t kRules = 7;
/// For each rule the least differences of the other schemes' counts from the chosen one's.
using Thresholds = std::array<Counts, kRules>;

/// For a rule, such differences that at every position of a block all of them are at most as great as in one
/// of the two.
using Corners = std::array<Counts, 2>;
using Block = std::array<Corners, kRules>;

/// The look-ahead test over one message, of at most kMaxCharacters, which outlives it.
///
/// A test compares counts that grow from its own first character, so all tests share sums over the message
/// and each adds offsets of its own. As a rule 4 to 20 characters decide. Some messages keep two schemes
/// level for as long as one likes: once tests have read on too often, they skip blocks of positions at which
/// no rule can hold, and the message takes n log n steps instead of n^2.
class LookAhead {
 public:
  explicit LookAhead(std::span<const Character> message);

  /// The scheme to use from the character at `position` on, when `current` is in use so far.
  Scheme best_scheme(int position, Scheme current);

 private:
  static constexpr int kBlock = 32;  // positions in the smallest block; each level above doubles that
  static constexpr int kLevels = 8;
  static constexpr int kMaxBlocks = 2 * ((kMaxCharacters + 1) / kBlock);

  struct Decision {
    Verdict verdict;
    int position;
  };

  [[nodiscard]] const Counts& sums(int position) const { return sums_[static_cast<std::size_t>(position)]; }
  /// True when the sums pair the character before `position` with the one there.
  [[nodiscard]] bool begins_within_pair(int position) const {
    return sums(position)[kAscii] % kCodeword != 0;
  }
  [[nodiscard]] bool base256_goes_on(int position) const;
  [[nodiscard]] Decision first_decision(int begin, int end, const Counts& offsets) const;
  Decision far_decision(int begin, const Counts& offsets);
  bool separator_follows(int position);

  [[nodiscard]] std::size_t block_index(int position, int level) const {
    return static_cast<std::size_t>(level_begin_[static_cast<std::size_t>(level)] +
                                    position / (kBlock << level));
  }
  [[nodiscard]] int skip_blocks(int position, const Thresholds& thresholds) const;
  void build_blocks();

  std::span<const Character> message_;
  int size_ = 0;
  int far_positions_ = 0;   // looked at one by one in tests that went far
  int separator_from_ = 0;  // from here to separator_stop_ separator_follows() answers the same
  int separator_stop_ = -1;
  bool has_blocks_ = false;
  std::array<int, kLevels> level_begin_{};

  // Not cleared.
  std::array<Counts, kMaxCharacters + 1> sums_;  // of all characters before a position
  std::array<Block, kMaxBlocks> blocks_;         // level by level; there when has_blocks_
};

}  // namespace korvex::datamatrix
