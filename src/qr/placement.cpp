#include <algorithm>
#include <bit>

#include "qr/construction.hpp"

namespace korvex::qr {
namespace {

/// The bits of a codeword sequence, most significant first. Past the end come zeros.
class SequenceReader {
 public:
  explicit SequenceReader(const CodewordBuffer& sequence) : bytes_(sequence.data()) {}

  /// The next `count` bits in the most significant ones of the result, what follows is arbitrary. At most 56.
  std::uint64_t take(int count) {
    const std::uint8_t* at = bytes_ + position_ / 8;
    std::uint64_t bits = 0;
    for (int i = 0; i < 8; ++i) bits = bits << 8 | at[i];
    bits <<= position_ % 8;
    position_ += count;
    return bits;
  }

 private:
  const std::uint8_t* bytes_;
  int position_ = 0;
};

/// Exchanges the two bits of each pair.
constexpr std::uint64_t swap_pairs(std::uint64_t bits) {
  constexpr std::uint64_t kSecond = 0x5555555555555555;
  return (bits >> 1 & kSecond) | (bits & kSecond) << 1;
}

/// Two columns of modules, filled row by row from the bottom up or from the top down, in each row the right
/// module first.
class Strip {
 public:
  /// `right` is the right column of the two.
  Strip(int right, Layer& dark)
      : right_(dark.word_column(right / 64)),
        left_(dark.word_column((right - 1) / 64)),
        right_shift_(63 - right % 64),
        left_shift_(63 - (right - 1) % 64) {}

  /// Draws both modules of `count` rows from `row` on, `step` is +1 or -1.
  void draw_pairs(int row, int step, int count, SequenceReader& sequence) {
    constexpr int kMostPairs = 28;
    while (count > 0) {
      const int pairs = std::min(count, kMostPairs);
      std::uint64_t bits = swap_pairs(sequence.take(2 * pairs));
      count -= pairs;
      if (right_ == left_) {
        for (int i = 0; i < pairs; ++i, row += step, bits <<= 2) right_[row] |= bits >> 62 << right_shift_;
      } else {
        for (int i = 0; i < pairs; ++i, row += step, bits <<= 2) {
          right_[row] |= (bits >> 62 & 1U) << right_shift_;
          left_[row] |= bits >> 63 << left_shift_;
        }
      }
    }
  }

  /// Draws one module in each of `count` rows, at most 56.
  void draw_single(bool in_left, int row, int step, int count, SequenceReader& sequence) {
    std::uint64_t* const column = in_left ? left_ : right_;
    const int shift = in_left ? left_shift_ : right_shift_;
    std::uint64_t bits = sequence.take(count);
    for (int i = 0; i < count; ++i, row += step, bits <<= 1) column[row] |= bits >> 63 << shift;
  }

 private:
  std::uint64_t* right_;
  std::uint64_t* left_;
  int right_shift_;
  int left_shift_;
};

/// Fills the strip whose right column is `right`. `area` has the data area with rows and columns exchanged.
void fill_strip(const Layer& area, int right, int rows, bool upward, Layer& dark, SequenceReader& sequence) {
  Strip strip(right, dark);
  const int step = upward ? -1 : 1;
  int row = upward ? rows - 1 : 0;
  for (int rest = rows; rest > 0;) {
    // The rows to come in this word, the next one first.
    const int offset = row % 64;
    const auto rows_ahead = [&](int column) {
      const std::uint64_t bits = area.word(column, row / 64);
      return upward ? bits >> (63 - offset) : bits << offset;
    };
    const int in_word = std::min(rest, upward ? offset + 1 : 64 - offset);
    const auto run = [&](std::uint64_t bits) {
      return std::min(in_word, static_cast<int>(upward ? std::countr_one(bits) : std::countl_one(bits)));
    };
    const std::uint64_t in_right = rows_ahead(right);
    const std::uint64_t in_left = rows_ahead(right - 1);
    int count = run(in_right & in_left);
    if (count > 0) {
      strip.draw_pairs(row, step, count, sequence);
    } else if ((count = run(~(in_right | in_left))) == 0) {
      const int left_alone = run(in_left & ~in_right);
      count = std::min(56, left_alone > 0 ? left_alone : run(in_right & ~in_left));
      strip.draw_single(left_alone > 0, row, step, count, sequence);
    }
    row += step * count;
    rest -= count;
  }
}

}  // namespace

void place_codewords(const CodewordBuffer& sequence, Canvas& canvas) {
  if (canvas.type == SymbolType::model1) return place_model1_codewords(sequence, canvas);
  const bool model2 = canvas.type == SymbolType::model2 || canvas.type == SymbolType::gs1;
  const bool rmqr = canvas.type == SymbolType::rmqr;
  // The function patterns of square symbols look the same from above and from the left.
  const Layer& area = rmqr ? canvas.rmqr_data_columns : canvas.data_area;
  SequenceReader reader(sequence);
  bool upward = true;
  for (int right = canvas.columns - (rmqr ? 2 : 1); right >= 1; right -= 2, upward = !upward) {
    constexpr int kTimingColumn = 6;
    if (model2 && right == kTimingColumn) --right;
    fill_strip(area, right, canvas.rows, upward, canvas.dark, reader);
  }
}

}  // namespace korvex::qr
