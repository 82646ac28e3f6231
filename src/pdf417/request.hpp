// What the PDF417 encoder is asked for, and what it works on.
#pragma once

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "korvex/pdf417.hpp"

namespace korvex::pdf417 {

struct MicroLayout;

/// A checked request: options are in range and go together; the data is not yet looked at.
struct Request {
  Kind kind = Kind::normal;
  Dialect dialect = Dialect::standard;
  int columns = 0;                     ///< 0: free; not read for micro
  int rows = 0;                        ///< 0: free; not read for micro
  int ecc_level = 0;                   ///< not read for micro
  const MicroLayout* micro = nullptr;  ///< micro alone: the size
  bool byte_only = false;
  std::span<const std::uint8_t> data{};
};

/// ISO/IEC 15438: the most codewords that a symbol has, check codewords included.
inline constexpr int kMaxCodewords = 928;

/// Codewords in the symbol's order, as they come.
class CodewordBuffer {
 public:
  void push(unsigned codeword) {
    assert(codeword < 929 && count_ < kMaxCodewords);
    values_[static_cast<std::size_t>(count_++)] = static_cast<std::uint16_t>(codeword);
  }
  void push_repeatedly(int count, unsigned codeword) {
    for (; count > 0; --count) push(codeword);
  }
  /// Makes the first codeword, pushed before it was known, `codeword`.
  void set_first(int codeword) { values_[0] = static_cast<std::uint16_t>(codeword); }
  /// Drops all but the first `count`.
  void truncate(int count) { count_ = count; }
  /// Appends room for `count` codewords and returns it.
  std::span<std::uint16_t> extend(int count) {
    assert(count_ + count <= kMaxCodewords);
    count_ += count;
    return std::span(values_).subspan(static_cast<std::size_t>(count_ - count),
                                      static_cast<std::size_t>(count));
  }

  [[nodiscard]] int count() const { return count_; }
  [[nodiscard]] std::span<const std::uint16_t> all() const {
    return std::span(values_).first(static_cast<std::size_t>(count_));
  }

 private:
  int count_ = 0;
  std::array<std::uint16_t, kMaxCodewords> values_;  // not cleared: count_ says what is there
};

/// A symbol before it is drawn. All working state of a call is here.
struct Layout {
  Kind kind = Kind::normal;
  int columns = 0;
  int rows = 0;
  int ecc_level = 0;
  const MicroLayout* micro = nullptr;
  int pad_codewords = 0;
  int check_codewords = 0;
  CodewordBuffer codewords;  ///< columns x rows of them
};

/// Receives the runs of a message, when somebody wants to know them.
using RunLog = std::vector<Run>;

}  // namespace korvex::pdf417
