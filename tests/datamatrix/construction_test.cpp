#include "datamatrix/construction.hpp"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "datamatrix/error_correction.hpp"
#include "datamatrix/placement.hpp"

namespace korvex::datamatrix {
namespace {

TEST(DataMatrixPlacement,
     IsThatOfTheStandardForEightByEight) {  // ISO/IEC 16022:2006, Annex F: codeword.bit from 1
  const std::string expected =
      "2.1 2.2 3.6 3.7 3.8 4.3 4.4 4.5 \n"
      "2.3 2.4 2.5 5.1 5.2 4.6 4.7 4.8 \n"
      "2.6 2.7 2.8 5.3 5.4 5.5 1.1 1.2 \n"
      "1.5 6.1 6.2 5.6 5.7 5.8 1.3 1.4 \n"
      "1.8 6.3 6.4 6.5 8.1 8.2 1.6 1.7 \n"
      "7.2 6.6 6.7 6.8 8.3 8.4 8.5 7.1 \n"
      "7.4 7.5 3.1 3.2 8.6 8.7 8.8 7.3 \n"
      "7.7 7.8 3.3 3.4 3.5 4.1 4.2 7.6 \n";
  const auto placement = PlacementWalk<8, 8>::run();
  std::string text;
  for (std::size_t i = 0; i < placement.bits.size(); ++i) {
    text += std::to_string(placement.bits[i] / 8 + 1) + '.' + std::to_string(placement.bits[i] % 8 + 1) + ' ';
    if (i % 8 == 7) text += '\n';
  }
  EXPECT_EQ(text, expected);
}

TEST(DataMatrixErrorCorrection,
     MatchesTheWorkedExampleOfTheStandard) {  // ISO/IEC 16022:2006, Annex O: 123456
  std::array<std::uint8_t, 8> codewords = {142, 164, 186};
  add_check_codewords(kSizes[0], codewords);
  EXPECT_EQ(codewords, (std::array<std::uint8_t, 8>{142, 164, 186, 114, 25, 5, 88, 102}));
}

// What readers look at loosely: around every region solid edges left and below, alternating ones above and
// right; and the four modules that no codeword reaches, of which two are dark.
TEST(DataMatrixConstruction, EveryRegionHasItsFinderPattern) {
  for (const SymbolSize& size : kSizes) {
    const ModuleMatrix symbol =
        place_modules(size, std::vector<std::uint8_t>(static_cast<std::size_t>(size.codewords())));
    const int height = size.rows / size.region_rows;
    const int width = size.columns / size.region_columns;
    bool right = true;
    int dark = 0;
    for (int row = 0; row < size.rows; ++row) {
      for (int column = 0; column < size.columns; ++column) {
        const bool module = symbol.dark(row, column);
        const int y = row % height;
        const int x = column % width;
        if (x == 0 || y == height - 1) {
          right = right && module;
        } else if (y == 0 || x == width - 1) {
          right = right && module == (y == 0 ? x % 2 == 0 : y % 2 == 1);
        } else {
          dark += module ? 1 : 0;
        }
      }
    }
    EXPECT_TRUE(right) << size.rows << " x " << size.columns;
    const bool corner = size.mapping_rows() * size.mapping_columns() % 8 != 0;
    EXPECT_EQ(dark, corner ? 2 : 0) << "codewords 0 are light";
    EXPECT_EQ(corner, symbol.dark(size.rows - 2, size.columns - 2));
    EXPECT_EQ(corner, symbol.dark(size.rows - 3, size.columns - 3));
  }
}

}  // namespace
}  // namespace korvex::datamatrix
