#include "qr/construction.hpp"

namespace korvex::qr {
namespace {

/// The low `width` bits of `bits` in reverse.
constexpr std::uint64_t reversed(std::uint64_t bits, int width) {
  std::uint64_t result = 0;
  for (int i = 0; i < width; ++i) result = result << 1 | (bits >> i & 1U);
  return result;
}

// A block's bits run from right to left and from the bottom up, its place is that of the first.

/// Draws a block of four rows and two columns.
void draw_tall(std::uint8_t codeword, int row, int column, Layer& dark) {
  for (int i = 0; i < 4; ++i) dark.set(row - i, column - 1, 2, reversed(codeword >> (6 - 2 * i), 2));
}

/// Draws a block of two rows and four columns.
void draw_wide(std::uint8_t codeword, int row, int column, Layer& dark) {
  for (int i = 0; i < 2; ++i) dark.set(row - i, column - 3, 4, reversed(codeword >> (4 - 4 * i), 4));
}

}  // namespace

// The strips at the right edge first, then the middle in stacks of wide blocks, then tall blocks left of the
// middle, between the finder patterns. In the extension patterns stand fixed codewords.
void place_model1_codewords(const CodewordBuffer& sequence, Canvas& canvas) {
  constexpr std::uint8_t kTallExtension = 0xAA;
  constexpr std::uint8_t kWideExtension = 0xF0;
  constexpr int kTimingLine = 6;
  const int edge = canvas.columns - 1;
  Layer& dark = canvas.dark;
  const std::uint8_t* next = sequence.data();

  for (int row = edge; row >= 9; row -= 4) {
    const bool extension = row != edge && row >= 13 && (edge - row) / 4 % 2 == 0;
    draw_tall(extension ? kTallExtension : *next++, row, edge, dark);
  }
  for (int row = edge; row > 8; row -= 4) draw_tall(*next++, row, edge - 2, dark);
  for (int row = edge; row > 8; row -= 2) draw_wide(*next++, row, edge - 4, dark);

  int column = edge - 8;
  for (; column >= 9; column -= 4) {
    const bool extension = column > 12 && (edge - column) / 4 % 2 == 0;
    draw_wide(extension ? kWideExtension : *next++, edge, column, dark);
    for (int row = edge - 2; row > 0; row -= 2) {
      if (row == kTimingLine) --row;
      draw_wide(*next++, row, column, dark);
    }
  }
  for (; column > 0; column -= 2) {
    if (column == kTimingLine) --column;
    for (int row = edge - 8; row > 8; row -= 4) draw_tall(*next++, row, column, dark);
  }
}

}  // namespace korvex::qr
