// The look-ahead test where the next characters leave it open.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "datamatrix/look_ahead_rules.hpp"

namespace korvex::datamatrix {

/// Finds far decisions without looking at every position on the way.
///
/// Some messages keep two schemes level for as long as one likes, and every test of them would read on to the
/// end: n^2 steps. But between positions far from all tests only the offsets differ from test to test. So
/// blocks of positions (32 of them, 64, and so on) remember why no rule held there: because for each rule
/// some other scheme counted too little more than the rule's own. As long as the offsets do not change that,
/// a test skips the block, and takes some log n steps.
class FarLookAhead {
 public:
  [[nodiscard]] bool is_ready() const { return !sums_.empty(); }
  /// Makes the blocks for the sums at each position of a message, which must stay where they are.
  void prepare(std::span<const Counts> sums);

  /// The first decision from position `begin` on.
  Decision first_decision(int begin, const Counts& offsets);

 private:
  // Base 256 has two rules.
  static constexpr std::size_t kRules = 7;
  /// For each rule, something for each scheme that it compares with its own.
  using RuleCounts = std::array<Counts, kRules>;
  /// For each scheme, how much more the others count.
  using Differences = std::array<Counts, 6>;

  struct Block {
    Differences most;  ///< at any of its positions, by the sums
    /// Why no rule held in earlier tests: for every position and rule one scheme, whose difference is at most
    /// this, was enough.
    std::array<RuleCounts, 2> proofs;
  };
  /// A test, in terms of the sums.
  struct Test {
    const Counts& offsets;
    RuleCounts needed;  ///< differences that make the rules hold
  };

  static constexpr int kBlock = 32;  // positions in the smallest block; each level above doubles that
  static constexpr int kLevels = 8;

  static const std::array<std::size_t, kRules> kSchemes;
  static const RuleCounts kNeeded;

  static Differences differences_of(const Counts& sums);
  static Differences greater_of(const Differences& a, const Differences& b);
  static bool proves(const Differences& most, const RuleCounts& needed);
  static bool proves(const RuleCounts& proof, const RuleCounts& needed);
  static const RuleCounts* proof_of(const Block& block, const RuleCounts& needed);
  static void add_reasons(const Differences& most, const RuleCounts& needed, RuleCounts& reasons);
  static void add_reasons(const RuleCounts& proof, RuleCounts& reasons);

  [[nodiscard]] int positions() const { return static_cast<int>(sums_.size()); }
  [[nodiscard]] bool begins_block(int position, int level) const {
    const int length = kBlock << level;
    return position % length == 0 && position + length <= positions();
  }
  [[nodiscard]] Block& block(int begin, int level) {
    const int index = level_begin_[static_cast<std::size_t>(level)] + begin / (kBlock << level);
    return blocks_[static_cast<std::size_t>(index)];
  }
  Decision first_decision_in(int begin, int level, const Test& test);
  [[nodiscard]] RuleCounts new_proof(int begin, int level, const RuleCounts& needed);

  std::span<const Counts> sums_;
  std::array<int, kLevels> level_begin_{};
  std::unique_ptr<Block[]> blocks_;  // level by level; not cleared
};

}  // namespace korvex::datamatrix
