#include "qr/construction.hpp"

#include <gtest/gtest.h>

#include "qr/format_information.hpp"
#include "support.hpp"

namespace korvex::qr {
namespace {

bool bit(const Layer& layer, int row, int column) {
  return (layer.word(row, column / 64) >> (63 - column % 64) & 1U) != 0;
}

/// '#' dark, '.' light, '?' data area.
std::string patterns(SymbolType type, int version) {
  Canvas canvas;
  draw_function_patterns(type, version, canvas);
  std::string text;
  for (int row = 0; row < canvas.rows; ++row) {
    for (int column = 0; column < canvas.columns; ++column) {
      const bool dark = bit(canvas.dark, row, column);
      if (bit(canvas.data_area, row, column)) {
        text += dark ? '!' : '?';
      } else {
        text += dark ? '#' : '.';
      }
    }
    text += '\n';
  }
  return text;
}

// Format information stays light here.
TEST(QrConstruction, FunctionPatternsOfTheSmallestSymbols) {
  EXPECT_EQ(patterns(SymbolType::model2, 1),
            "#######..????.#######\n"
            "#.....#..????.#.....#\n"
            "#.###.#..????.#.###.#\n"
            "#.###.#..????.#.###.#\n"
            "#.###.#..????.#.###.#\n"
            "#.....#..????.#.....#\n"
            "#######.#.#.#.#######\n"
            ".........????........\n"
            "......#..????........\n"
            "??????.??????????????\n"
            "??????#??????????????\n"
            "??????.??????????????\n"
            "??????#??????????????\n"
            "........#????????????\n"
            "#######..????????????\n"
            "#.....#..????????????\n"
            "#.###.#..????????????\n"
            "#.###.#..????????????\n"
            "#.###.#..????????????\n"
            "#.....#..????????????\n"
            "#######..????????????\n");
  EXPECT_EQ(patterns(SymbolType::micro, 1),
            "#######.#.#\n"
            "#.....#..??\n"
            "#.###.#..??\n"
            "#.###.#..??\n"
            "#.###.#..??\n"
            "#.....#..??\n"
            "#######..??\n"
            ".........??\n"
            "#........??\n"
            ".??????????\n"
            "#??????????\n");
  EXPECT_EQ(patterns(SymbolType::rmqr, 1),
            "#######.#.#.#.#.#.#.###.#.#.#.#.#.#.#.#.###\n"
            "#.....#.....????????#.#????????????.......#\n"
            "#.###.#.....????????###????????????...#####\n"
            "#.###.#.....?????????.?????????????...#...#\n"
            "#.###.#....?????????###????????????...#.#.#\n"
            "#.....#....?????????#.#????????????...#...#\n"
            "#######.#.#.#.#.#.#.###.#.#.#.#.#.#.#.#####\n");
}

// ISO/IEC 18004:2015, Annex E and Table 1 (the modules that codewords leave over).
TEST(QrConstruction, AlignmentPatternsStandWhereTheStandardHasThem) {
  const struct {
    int version;
    std::vector<int> centres;
  } cases[] = {
      {2, {6, 18}},
      {6, {6, 34}},
      {7, {6, 22, 38}},
      {13, {6, 34, 62}},
      {14, {6, 26, 46, 66}},
      {15, {6, 26, 48, 70}},
      {16, {6, 26, 50, 74}},
      {19, {6, 30, 58, 86}},
      {22, {6, 26, 50, 74, 98}},
      {24, {6, 28, 54, 80, 106}},
      {30, {6, 26, 52, 78, 104, 130}},
      {32, {6, 34, 60, 86, 112, 138}},
      {36, {6, 24, 50, 76, 102, 128, 154}},
      {39, {6, 26, 54, 82, 110, 138, 166}},
      {40, {6, 30, 58, 86, 114, 142, 170}},
  };
  for (const auto& [version, centres] : cases) {
    Canvas canvas;
    draw_function_patterns(SymbolType::model2, version, canvas);
    const int last = centres.back();
    for (const int row : centres) {
      for (const int column : centres) {
        if ((row == 6 && (column == 6 || column == last)) || (row == last && column == 6)) continue;
        for (int i = -2; i <= 2; ++i) {
          for (int j = -2; j <= 2; ++j) {
            const bool ring = std::max(std::abs(i), std::abs(j)) == 1;
            EXPECT_EQ(bit(canvas.dark, row + i, column + j), !ring)
                << version << ": " << row << ", " << column;
            EXPECT_FALSE(bit(canvas.data_area, row + i, column + j));
          }
        }
      }
    }
  }
}

// The standard's counts of data modules, and of those that codewords leave over, which no reader looks at.
TEST(QrConstruction, DataAreaHoldsTheCodewordsAndTheRemainder) {
  const auto remainder = [](SymbolType type, int version) {
    if (type == SymbolType::micro) return 0;
    if (type == SymbolType::model1) return -4;  // four zero bits at the start lie under the corner pattern
    if (version == 1 || (version >= 7 && version <= 13) || version >= 35) return 0;
    if (version <= 6) return 7;
    return version >= 21 && version <= 27 ? 4 : 3;
  };
  for (const SymbolType type : {SymbolType::model1, SymbolType::model2, SymbolType::micro}) {
    for (int version = 1; version <= version_count(type); ++version) {
      Canvas canvas;
      draw_function_patterns(type, version, canvas);
      int modules = 0;
      for (int row = 0; row < canvas.rows; ++row) {
        for (int column = 0; column < canvas.columns; ++column)
          modules += bit(canvas.data_area, row, column) ? 1 : 0;
      }
      const int total = 8 * capacity(type, version, Level::low).total_codewords;
      EXPECT_EQ(modules, total - (has_short_last_codeword(type, version) ? 4 : 0) + remainder(type, version))
          << version_name(type, version);
    }
  }
}

// ISO/IEC 18004:2015, Annex C (format information 101001101110111 before masking of level M, mask 5 ...) and
// Annex D.
TEST(QrConstruction, FormatAndVersionInformation) {
  EXPECT_EQ(format_information(SymbolType::model2, Level::medium, 5), 0b100000011001110U);  // Annex C.2
  EXPECT_EQ(format_information(SymbolType::model2, Level::low, 0), 0x77C4U);                // Table C.1
  EXPECT_EQ(format_information(SymbolType::model2, Level::high, 7), 0x083BU);
  EXPECT_EQ(format_information(SymbolType::model1, Level::medium, 0), 0x2825U);
  EXPECT_EQ(micro_format_information(1, Level::low, 0), 0x4445U);
  EXPECT_EQ(micro_format_information(4, Level::quartile, 3), 0x3BBAU);
  EXPECT_EQ(version_information(7), 0x07C94U);  // Table D.1
  EXPECT_EQ(version_information(40), 0x28C69U);
  EXPECT_EQ(rmqr_format_information(1, Level::medium, false), 0x1FAB2U);
  EXPECT_EQ(rmqr_format_information(1, Level::medium, true), 0x20A7BU);
}

}  // namespace
}  // namespace korvex::qr
