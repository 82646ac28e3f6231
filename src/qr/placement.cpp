#include <algorithm>
#include <bit>

#include "qr/construction.hpp"

namespace korvex::qr {
namespace {

// Codewords fill strips of two columns, from right to left, every other one from the bottom up. Side by side
// the strips make a grid of pairs of modules. A strip is written as one row of that grid, where the bits of
// the sequence lie in order; exchanging the grid's rows and columns, 32 x 32 pairs at a time, then brings
// them to where they are drawn.
constexpr int kPairsInWord = 32;
constexpr int kMostStripWords = (kMostModules + kPairsInWord - 1) / kPairsInWord;

/// The pairs of one strip, top row first.
using StripWords = std::array<std::uint64_t, kMostStripWords>;

/// Exchanges the two bits of each pair.
constexpr std::uint64_t swap_pairs(std::uint64_t bits) {
  constexpr std::uint64_t kSecond = ~std::uint64_t{0} / 3;
  return (bits >> 1 & kSecond) | (bits & kSecond) << 1;
}

/// The bits of a word in reverse.
constexpr std::uint64_t reversed(std::uint64_t bits) {
  constexpr std::uint64_t kAll = ~std::uint64_t{0};
  bits = swap_pairs(bits);
  bits = (bits >> 2 & kAll / 5) | (bits & kAll / 5) << 2;
  bits = (bits >> 4 & kAll / 17) | (bits & kAll / 17) << 4;
  bits = (bits >> 8 & kAll / 257) | (bits & kAll / 257) << 8;
  bits = (bits >> 16 & kAll / 65537) | (bits & kAll / 65537) << 16;
  return bits >> 32 | bits << 32;
}

/// The bits of a codeword sequence, most significant first. Past the end come whatever bytes stand there.
class SequenceReader {
 public:
  explicit SequenceReader(const CodewordBuffer& sequence) : bytes_(sequence.data()) {}

  static constexpr int kMostBits = 56;

  /// The next `count` bits, 1 to kMostBits, in the most significant ones of the result; the rest is 0.
  std::uint64_t take(int count) {
    const std::uint8_t* at = bytes_ + position_ / 8;
    std::uint64_t bits = std::uint64_t{at[0]} << 56 | std::uint64_t{at[1]} << 48 |
                         std::uint64_t{at[2]} << 40 | std::uint64_t{at[3]} << 32 |
                         std::uint64_t{at[4]} << 24 | std::uint64_t{at[5]} << 16 | std::uint64_t{at[6]} << 8 |
                         at[7];
    bits <<= position_ % 8;
    position_ += count;
    return bits & ~std::uint64_t{0} << (64 - count);
  }

 private:
  const std::uint8_t* bytes_;
  int position_ = 0;
};

/// Puts the pairs at the top of `pairs` into a strip, the first in row `row`.
void put_pairs(std::uint64_t pairs, int row, StripWords& strip) {
  const auto word = static_cast<std::size_t>(row / kPairsInWord);
  const int offset = row % kPairsInWord * 2;
  strip[word] |= pairs >> offset;
  if (offset > 0 && word + 1 < strip.size()) strip[word + 1] |= pairs << (64 - offset);
}

/// Fills one strip. `right` and `left` have the data area of its columns, packed as rows of a layer.
template <bool kUpward>
void fill_strip(const Layer& area, int right, int left, int rows, SequenceReader& sequence,
                StripWords& strip) {
  for (int rest = rows; rest > 0;) {
    // The rows to come in this word of the area, the next one first.
    const int row = kUpward ? rest - 1 : rows - rest;
    const int offset = row % 64;
    const auto ahead = [&](int column) {
      const std::uint64_t bits = area.word(column, row / 64);
      return kUpward ? bits >> (63 - offset) : bits << offset;
    };
    const int in_word = std::min(rest, kUpward ? offset + 1 : 64 - offset);
    const auto run = [&](std::uint64_t bits) {
      return std::min(in_word, static_cast<int>(kUpward ? std::countr_one(bits) : std::countl_one(bits)));
    };
    const std::uint64_t in_right = ahead(right);
    const std::uint64_t in_left = ahead(left);
    int count = run(in_right & in_left);
    if (count > 0) {
      count = std::min(count, SequenceReader::kMostBits / 2);
      const std::uint64_t bits = sequence.take(2 * count);
      // In a row the right module comes first; reversing exchanges the two as well.
      if (kUpward) {
        put_pairs(reversed(bits) << (64 - 2 * count), row - count + 1, strip);
      } else {
        put_pairs(swap_pairs(bits), row, strip);
      }
    } else if ((count = run(~(in_right | in_left))) == 0) {
      // One module of the row, beside an alignment pattern or version information.
      count = 1;
      const bool is_left = run(in_left) > 0;
      const std::uint64_t bit = sequence.take(1);
      put_pairs(is_left ? bit : bit >> 1, row, strip);
    }
    rest -= count;
  }
}

using Grid = std::array<std::uint64_t, kPairsInWord>;

/// Exchanges rows and columns of each block of 2 x 2 squares, which are `kHalf` pairs a side.
template <std::size_t kHalf>
void exchange_squares(Grid& grid) {
  constexpr int kShift = 2 * kHalf;
  constexpr std::uint64_t kRightSquares = ~std::uint64_t{0} / ((std::uint64_t{1} << kShift) + 1);
  for (std::size_t block = 0; block < kPairsInWord; block += 2 * kHalf) {
    for (std::size_t i = block; i < block + kHalf; ++i) {
      const std::uint64_t changed = (grid[i] ^ grid[i + kHalf] >> kShift) & kRightSquares;
      grid[i] ^= changed;
      grid[i + kHalf] ^= changed << kShift;
    }
  }
}

/// Exchanges rows and columns of a grid of 32 x 32 pairs.
void transpose(Grid& grid) {
  exchange_squares<16>(grid);
  exchange_squares<8>(grid);
  exchange_squares<4>(grid);
  exchange_squares<2>(grid);
  exchange_squares<1>(grid);
}

/// How the strips of a symbol type lie.
struct StripLayout {
  int count;
  int skipped_column;  // timing pattern that no strip takes up, columns if there is none
};

StripLayout strip_layout(const Canvas& canvas) {
  constexpr int kModel2TimingColumn = 6;
  switch (canvas.type) {
    case SymbolType::micro:
      return {(canvas.columns - 1) / 2, 0};
    case SymbolType::rmqr:
      return {(canvas.columns - 1) / 2, canvas.columns};
    default:
      return {(canvas.columns - 1) / 2, kModel2TimingColumn};
  }
}

}  // namespace

void place_codewords(const CodewordBuffer& sequence, Canvas& canvas) {
  if (canvas.type == SymbolType::model1) return place_model1_codewords(sequence, canvas);
  // The function patterns of square symbols look the same from above and from the left.
  const Layer& area = canvas.type == SymbolType::rmqr ? canvas.rmqr_data_columns : canvas.data_area;
  const StripLayout layout = strip_layout(canvas);
  SequenceReader reader(sequence);
  bool upward = true;

  // Strips that fill a word of each row, the rightmost first.
  for (int word = (layout.count - 1) / kPairsInWord; word >= 0; --word) {
    std::array<StripWords, kPairsInWord> strips;
    const int first = word * kPairsInWord;
    const int end = std::min(layout.count, first + kPairsInWord);
    for (int strip = end - 1; strip >= first; --strip, upward = !upward) {
      StripWords& words = strips[static_cast<std::size_t>(strip - first)];
      words.fill(0);
      const auto column = [&](int left_out) {
        return left_out + (left_out >= layout.skipped_column ? 1 : 0);
      };
      const int left = column(2 * strip);
      const int right = column(2 * strip + 1);
      if (upward) {
        fill_strip<true>(area, right, left, canvas.rows, reader, words);
      } else {
        fill_strip<false>(area, right, left, canvas.rows, reader, words);
      }
    }
    for (int row = 0; row < canvas.rows; row += kPairsInWord) {
      Grid grid;
      for (int strip = first; strip < first + kPairsInWord; ++strip) {
        const auto i = static_cast<std::size_t>(strip - first);
        grid[i] = strip < end ? strips[i][static_cast<std::size_t>(row / kPairsInWord)] : 0;
      }
      transpose(grid);
      // Columns from the skipped one on move one to the right, the last of a word into the next word.
      const std::uint64_t staying = bit_range(0, layout.skipped_column - 64 * word);
      for (int i = 0; i < std::min(kPairsInWord, canvas.rows - row); ++i) {
        const std::uint64_t pairs = grid[static_cast<std::size_t>(i)];
        canvas.dark.word(row + i, word) |= (pairs & staying) | (pairs & ~staying) >> 1;
        if (word + 1 < canvas.words) canvas.dark.word(row + i, word + 1) |= (pairs & ~staying) << 63;
      }
    }
  }
}

}  // namespace korvex::qr
