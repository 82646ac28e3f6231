#include <algorithm>
#include <bit>

#include "qr/construction.hpp"
#include "qr/transpose.hpp"

namespace korvex::qr {
namespace {

// Codewords fill strips of two columns, from right to left, every other one from the bottom up. Side by side
// the strips make a grid of pairs of modules. A strip is written as one row of that grid, where the bits of
// the sequence lie in order; exchanging the grid's rows and columns, 32 x 32 pairs at a time, then brings
// them to where they are drawn.
constexpr int kPairsInWord = 32;

/// 32 strips, 32 rows of each: a word has the pairs of a strip, the top row's in its most significant bits.
using Grid = SquareOfCells<2>;
/// Grids of the same strips below each other.
using Grids = std::array<Grid, (kMostModules + kPairsInWord - 1) / kPairsInWord>;

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

/// The bits of a codeword sequence, most significant first.
class SequenceReader {
 public:
  explicit SequenceReader(const CodewordBuffer& sequence) : bytes_(sequence.data()) {}

  static constexpr unsigned kMostBits = 56;

  /// The next `count` bits, 1 to kMostBits, in the most significant ones of the result; the rest is 0.
  std::uint64_t take(unsigned count) {
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
  unsigned position_ = 0;
};

/// Puts the pairs at the top of `pairs` into a strip, the first in row `row`.
void put_pairs(std::uint64_t pairs, unsigned row, std::size_t strip, Grids& grids) {
  const unsigned grid = row / kPairsInWord;
  const unsigned offset = row % kPairsInWord * 2;
  grids[grid][strip] |= pairs >> offset;
  const std::uint64_t rest = pairs << 1 << (63 - offset);
  if (rest != 0) grids[grid + 1][strip] |= rest;
}

/// Fills one strip. `right` and `left` have the data area of its columns, packed as rows of a layer.
template <bool kUpward>
void fill_strip(const Layer& area, int right, int left, unsigned rows, SequenceReader& sequence,
                std::size_t strip, Grids& grids) {
  const auto run = [](std::uint64_t bits) {
    return static_cast<unsigned>(kUpward ? std::countr_zero(bits) : std::countl_zero(bits));
  };
  const unsigned words = (rows + 63) / 64;
  for (unsigned i = 0; i < words; ++i) {
    // The rows in a word of the area, the next one first. Past the last row there is no data area.
    const unsigned word = kUpward ? words - 1 - i : i;
    std::uint64_t in_right = area.word(right, static_cast<int>(word));
    std::uint64_t in_left = area.word(left, static_cast<int>(word));
    unsigned row = kUpward ? 64 * word + 63 : 64 * word;
    const auto pass = [&](unsigned count) {
      in_right = kUpward ? in_right >> count : in_right << count;
      in_left = kUpward ? in_left >> count : in_left << count;
      row = kUpward ? row - count : row + count;
    };
    while ((in_right | in_left) != 0) {
      pass(run(in_right | in_left));
      unsigned count = run(~(in_right & in_left));
      if (count > 0) {
        count = std::min(count, SequenceReader::kMostBits / 2);
        const std::uint64_t bits = sequence.take(2 * count);
        // In a row the right module comes first; reversing exchanges the two as well.
        if (kUpward) {
          put_pairs(reversed(bits) << (64 - 2 * count), row - count + 1, strip, grids);
        } else {
          put_pairs(swap_pairs(bits), row, strip, grids);
        }
      } else {  // beside an alignment pattern or version information
        count = 1;
        const std::uint64_t bit = sequence.take(1);
        put_pairs(run(in_left) == 0 ? bit : bit >> 1, row, strip, grids);
      }
      pass(count);
    }
  }
}

/// Draws what transposed strips have in word `word` of `count` rows from `first_row` on. Columns from the
/// skipped one on move one to the right, the last of a word into the next word.
void draw_rows(const Grid& grid, int first_row, int count, int word, int skipped_column, Canvas& canvas) {
  const std::uint64_t staying = bit_range(0, skipped_column - 64 * word);
  std::uint64_t* const here = canvas.dark.word_column(word) + first_row;
  for (int i = 0; i < count; ++i) {
    const std::uint64_t pairs = grid[static_cast<std::size_t>(i)];
    here[i] |= (pairs & staying) | (pairs & ~staying) >> 1;
  }
  if (word + 1 == canvas.words) return;
  std::uint64_t* const next = canvas.dark.word_column(word + 1) + first_row;
  for (int i = 0; i < count; ++i) next[i] |= (grid[static_cast<std::size_t>(i)] & ~staying) << 63;
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
  const auto rows = static_cast<unsigned>(canvas.rows);
  for (int word = (layout.count - 1) / kPairsInWord; word >= 0; --word) {
    Grids grids;
    const std::size_t grid_count = (rows + kPairsInWord - 1) / kPairsInWord;
    for (std::size_t i = 0; i < grid_count; ++i) grids[i].fill(0);
    const int first = word * kPairsInWord;
    for (int strip = std::min(layout.count, first + kPairsInWord) - 1; strip >= first;
         --strip, upward = !upward) {
      const auto column = [&](int place) { return place + (place >= layout.skipped_column ? 1 : 0); };
      const int left = column(2 * strip);
      const int right = column(2 * strip + 1);
      const auto index = static_cast<std::size_t>(strip - first);
      if (upward) {
        fill_strip<true>(area, right, left, rows, reader, index, grids);
      } else {
        fill_strip<false>(area, right, left, rows, reader, index, grids);
      }
    }
    for (std::size_t i = 0; i < grid_count; ++i) {
      const int first_row = static_cast<int>(i) * kPairsInWord;
      const int grid_rows = std::min(kPairsInWord, canvas.rows - first_row);
      transpose<2>(grids[i], grid_rows);
      draw_rows(grids[i], first_row, grid_rows, word, layout.skipped_column, canvas);
    }
  }
}

}  // namespace korvex::qr
