// Appends the modules of a linear symbol from left to right, as whole words.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvex::linear {

/// The longest symbol that is drawn, and the words that it takes: the callers of Korvex_Bit bring 188.
inline constexpr int kMaxModules = 5984;
inline constexpr int kMaxWords = kMaxModules / 32 + 1;

/// A run of modules: the low `count` bits of `modules`, leftmost module highest, 1 is a bar.
struct Pattern {
  std::uint32_t modules = 0;
  int count = 0;
};

/// What a BarWriter has written. Module 0 is the most significant bit of word 0; words 0 to module_count / 32
/// are there, bits past the last module 0. A module_count above kMaxModules: the symbol was too long, and its
/// end is missing.
struct Bars {
  int module_count = 0;
  std::array<std::uint32_t, kMaxWords> words;  // not cleared: every word is written before it is read
};

/// Holds its place in registers while it lives: make one where the symbol is drawn, and finish() it there.
class BarWriter {
 public:
  explicit BarWriter(Bars& bars) : bars_(bars) {}

  /// Appends the low `count` bits of `modules`. Requires 0 <= count <= 32 and modules < 2^count.
  void put(std::uint32_t modules, int count) {
    pending_ = pending_ << count | modules;
    pending_count_ += count;
    if (pending_count_ >= 32) flush_word();
  }
  void put(Pattern pattern) { put(pattern.modules, pattern.count); }

  /// Appends `count` equal modules; a count of 0 or less appends nothing.
  void put_run(bool bar, int count) {
    // A caller's widths go up to 32767: whatever cannot fit is not worth its loop.
    if (count > kMaxModules - module_count()) {
      word_count_ = kMaxWords;
      return;
    }
    for (; count >= 32; count -= 32) put(bar ? 0xFFFFFFFFU : 0U, 32);
    if (count > 0) put(bar ? (1U << count) - 1 : 0U, count);
  }

  /// Completes the last word and says how many modules there are.
  void finish() {
    if (word_count_ < kMaxWords) {
      bars_.words[static_cast<std::size_t>(word_count_)] =
          static_cast<std::uint32_t>(pending_ << (32 - pending_count_));
    }
    bars_.module_count = module_count();
  }

 private:
  [[nodiscard]] int module_count() const { return word_count_ * 32 + pending_count_; }
  void flush_word() {
    pending_count_ -= 32;
    if (word_count_ < kMaxWords) {
      bars_.words[static_cast<std::size_t>(word_count_)] =
          static_cast<std::uint32_t>(pending_ >> pending_count_);
    }
    ++word_count_;
  }

  Bars& bars_;
  std::uint64_t pending_ =
      0;                   // modules not yet in a word are the low pending_count_ bits; above them is history
  int pending_count_ = 0;  // 0..31 between calls
  int word_count_ = 0;
};

}  // namespace korvex::linear
