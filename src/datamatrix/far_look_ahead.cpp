#include "datamatrix/far_look_ahead.hpp"

namespace korvex::datamatrix {
namespace {

constexpr std::int32_t kNever = -(1 << 29);  // below all differences

}  // namespace

constexpr std::array<std::size_t, FarLookAhead::kRules> FarLookAhead::kSchemes = {
    kAscii, kC40, kText, kX12, kEdifact, kBase256, kBase256};

constexpr FarLookAhead::RuleCounts FarLookAhead::kNeeded = {{
    {{kNever, 12, 12, 12, 12, 12}},
    {{13, kNever, 13, 0, 13, 13}},
    {{13, 13, kNever, 13, 13, 13}},
    {{13, 13, 13, kNever, 13, 13}},
    {{13, 13, 13, 13, kNever, 13}},
    {{12, kNever, kNever, kNever, kNever, kNever}},
    {{kNever, 13, 13, 13, 13, kNever}},
}};

void FarLookAhead::prepare(std::span<const Counts> sums) {
  sums_ = sums;
  // Each level has at most half as many as the one below.
  blocks_ = std::make_unique_for_overwrite<Block[]>(2 * (sums.size() / kBlock));
  for (int level = 0; level < kLevels; ++level) {
    const int length = kBlock << level;
    if (level > 0) {
      const auto index = static_cast<std::size_t>(level);
      level_begin_[index] = level_begin_[index - 1] + positions() / (length / 2);
    }
    for (int begin = 0; begin + length <= positions(); begin += length) {
      Block& made = block(begin, level);
      for (RuleCounts& proof : made.proofs) proof.front().fill(-kNever);  // which proves nothing
      if (level > 0) {
        made.most = greater_of(block(begin, level - 1).most, block(begin + length / 2, level - 1).most);
        continue;
      }
      made.most = differences_of(sums[static_cast<std::size_t>(begin)]);
      for (const Counts& at : sums.subspan(static_cast<std::size_t>(begin), kBlock)) {
        made.most = greater_of(made.most, differences_of(at));
      }
    }
  }
}

Decision FarLookAhead::first_decision(int begin, const Counts& offsets) {
  Test test{offsets, kNeeded};
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    for (std::size_t other = 0; other < offsets.size(); ++other) {
      test.needed[rule][other] += offsets[kSchemes[rule]] - offsets[other];
    }
  }
  Decision decision{begin, Verdict::none};
  while (decision.verdict == Verdict::none && decision.position < positions()) {
    begin = decision.position;
    if (begins_block(begin, 0)) {
      int level = 0;
      while (level + 1 < kLevels && begins_block(begin, level + 1)) ++level;
      decision = first_decision_in(begin, level, test);
    } else {
      const int end = std::min((begin / kBlock + 1) * kBlock, positions());
      decision = datamatrix::first_decision(sums_, begin, end, offsets);
    }
  }
  return decision;
}

/// The first decision in a block.
Decision FarLookAhead::first_decision_in(int begin, int level, const Test& test) {
  const Decision none{begin + (kBlock << level), Verdict::none};
  Block& whole = block(begin, level);
  if (proves(whole.most, test.needed) || proof_of(whole, test.needed) != nullptr) return none;
  if (level == 0) {
    const Decision found = datamatrix::first_decision(sums_, begin, none.position, test.offsets);
    if (found.verdict != Verdict::none) return found;
  } else {
    for (const int half : {begin, begin + (kBlock << (level - 1))}) {
      const Decision found = first_decision_in(half, level - 1, test);
      if (found.verdict != Verdict::none) return found;
    }
  }
  std::shift_right(whole.proofs.begin(), whole.proofs.end(), 1);
  whole.proofs.front() = new_proof(begin, level, test.needed);
  return none;
}

/// Why no rule holds in a block, given that none does and that its halves have proofs of that.
FarLookAhead::RuleCounts FarLookAhead::new_proof(int begin, int level, const RuleCounts& needed) {
  RuleCounts reasons{};
  for (Counts& counts : reasons) counts.fill(kNever);
  if (level == 0) {
    for (const Counts& at : sums_.subspan(static_cast<std::size_t>(begin), kBlock)) {
      add_reasons(differences_of(at), needed, reasons);
    }
    return reasons;
  }
  const int middle = begin + (kBlock << (level - 1));
  for (const Block* half : {&block(begin, level - 1), &block(middle, level - 1)}) {
    if (const RuleCounts* proof = proof_of(*half, needed)) {
      add_reasons(*proof, reasons);
    } else {
      add_reasons(half->most, needed, reasons);
    }
  }
  return reasons;
}

FarLookAhead::Differences FarLookAhead::differences_of(const Counts& sums) {
  Differences differences;
  for (std::size_t scheme = 0; scheme < differences.size(); ++scheme) {
    for (std::size_t other = 0; other < sums.size(); ++other) {
      differences[scheme][other] = sums[other] - sums[scheme];
    }
  }
  return differences;
}

FarLookAhead::Differences FarLookAhead::greater_of(const Differences& a, const Differences& b) {
  Differences greater;
  for (std::size_t scheme = 0; scheme < a.size(); ++scheme) {
    for (std::size_t other = 0; other < a.size(); ++other) {
      greater[scheme][other] = std::max(a[scheme][other], b[scheme][other]);
    }
  }
  return greater;
}

/// True when every rule lacks a difference, with all of them up to `most`.
bool FarLookAhead::proves(const Differences& most, const RuleCounts& needed) {
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    const Counts& difference = most[kSchemes[rule]];
    std::size_t other = 0;
    while (other < difference.size() && difference[other] >= needed[rule][other]) ++other;
    if (other == difference.size()) return false;
  }
  return true;
}

/// True when all reasons of an earlier proof are reasons still.
bool FarLookAhead::proves(const RuleCounts& proof, const RuleCounts& needed) {
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    for (std::size_t other = 0; other < proof[rule].size(); ++other) {
      if (proof[rule][other] > kNever && proof[rule][other] >= needed[rule][other]) return false;
    }
  }
  return true;
}

/// An earlier proof that holds still; null when there is none.
const FarLookAhead::RuleCounts* FarLookAhead::proof_of(const Block& block, const RuleCounts& needed) {
  for (const RuleCounts& proof : block.proofs) {
    if (proves(proof, needed)) return &proof;
  }
  return nullptr;
}

/// Adds for every rule the scheme that lacks most, with all differences up to `most`: the reason that will
/// hold in most other tests too.
void FarLookAhead::add_reasons(const Differences& most, const RuleCounts& needed, RuleCounts& reasons) {
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    const Counts& difference = most[kSchemes[rule]];
    std::size_t reason = 0;
    for (std::size_t other = 1; other < difference.size(); ++other) {
      if (needed[rule][other] - difference[other] > needed[rule][reason] - difference[reason]) reason = other;
    }
    reasons[rule][reason] = std::max(reasons[rule][reason], difference[reason]);
  }
}

void FarLookAhead::add_reasons(const RuleCounts& proof, RuleCounts& reasons) {
  for (std::size_t rule = 0; rule < kRules; ++rule) {
    for (std::size_t other = 0; other < proof[rule].size(); ++other) {
      reasons[rule][other] = std::max(reasons[rule][other], proof[rule][other]);
    }
  }
}

}  // namespace korvex::datamatrix
