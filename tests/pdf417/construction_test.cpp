#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvex/pdf417.hpp"

namespace korvex::pdf417 {
namespace {

using Values = std::vector<std::uint16_t>;

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0, end = 0; (end = text.find("\r\n", at)) != std::string::npos; at = end + 2) {
    lines.push_back(text.substr(at, end - at));
  }
  return lines;
}

/// Every size of MicroPDF417, every level, every number of columns of both other kinds.
std::vector<Options> all_shapes() {
  std::vector<Options> shapes;
  for (const MicroSize& size : micro_sizes()) {
    shapes.push_back({.kind = Kind::micro, .columns = size.columns, .rows = size.rows});
  }
  for (const Kind kind : {Kind::normal, Kind::truncated}) {
    for (int level = 0; level <= 8; ++level) shapes.push_back({.kind = kind, .ecc_level = level});
    for (int columns = 1; columns <= 30; ++columns) shapes.push_back({.kind = kind, .columns = columns});
  }
  return shapes;
}

TEST(Pdf417Construction, ChoosesTheShapeNearestToHalfAsHighAsWide) {
  struct Case {
    const char* what;
    Options options;
    int capitals;  // two to a codeword
    int columns, rows;
  };
  const Case cases[] = {
      {"62 and 26 percent: the high one is nearer", {}, 18, 1, 18},
      {"55 and 32 percent", {}, 58, 2, 19},
      {"56 and 44 percent: of two alike the flat one", {}, 362, 7, 28},
      {"truncated, 57 and 43 percent", {.kind = Kind::truncated}, 212, 6, 20},
      {"the most codewords", {.ecc_level = 0}, 1850, 16, 58},
      {"never fewer than 3 rows", {.columns = 30}, 0, 30, 3},
      {"columns from rows", {.rows = 10}, 362, 19, 10},
      {"rows from columns", {.columns = 10}, 362, 10, 19},
      {"both given", {.columns = 3, .rows = 30}, 2, 3, 30},
      {"micro: the smallest area", {.kind = Kind::micro}, 4, 4, 4},
      {"micro: of one column", {.kind = Kind::micro, .columns = 1}, 4, 1, 11},
      {"micro: of 44 rows", {.kind = Kind::micro, .rows = 44}, 4, 3, 44},
      {"micro: the largest", {.kind = Kind::micro}, 250, 4, 44},
  };
  for (const auto& [what, options, capitals, columns, rows] : cases) {
    const auto symbol = encode(options, std::string(static_cast<std::size_t>(capitals), 'A'));
    ASSERT_TRUE(symbol) << what << ": " << symbol.error().message;
    EXPECT_EQ(symbol->columns, columns) << what;
    EXPECT_EQ(symbol->modules.rows(), rows) << what;
  }
}

TEST(Pdf417Construction, FillsUpWithPads) {
  const auto pads = [](const Options& options) {
    const auto result = codewords(options, "");
    const auto end = result->values.end() - result->check_codewords;
    return Values(end - result->pad_codewords, end);
  };
  EXPECT_EQ(pads({.columns = 1, .rows = 8, .ecc_level = 0}), Values(5, 900));
  EXPECT_EQ(pads({.kind = Kind::micro, .columns = 2, .rows = 26}), Values(37, 900));
  // korvex32: a latch to text, then cycles of eight; where the columns are 2 or 4, one more pad after every
  // three.
  const auto korvex32_pads = [&pads](int columns, int rows) {
    return pads({.kind = Kind::micro, .columns = columns, .rows = rows, .dialect = Dialect::korvex32});
  };
  const auto micro_pads = [](std::size_t count, bool one_more) {
    Values values = {900};
    for (int cycle = 1; values.size() < count; ++cycle) {
      values.insert(values.end(), {838, 779, 867, 865, 898, 868, 839, 900});
      if (one_more && cycle % 3 == 0) values.push_back(900);
    }
    values.resize(count);
    return values;
  };
  EXPECT_EQ(korvex32_pads(1, 28), micro_pads(20, false));
  EXPECT_EQ(korvex32_pads(2, 26), micro_pads(37, true));
  EXPECT_EQ(korvex32_pads(3, 44), micro_pads(82, false));
  EXPECT_EQ(korvex32_pads(4, 44), micro_pads(126, true));
}

TEST(Pdf417Construction, WritesRowsAsWidths) {
  // Row indicators 2, 5, 0 and, three rows on, 32; length descriptor 5 and pads 900. Their patterns are those
  // of ISO/IEC 15438, Annex A.
  const auto normal = lines_of(*row_pattern_text({.columns = 1, .rows = 9, .ecc_level = 1}, ""));
  ASSERT_EQ(normal.size(), 9U);
  EXPECT_EQ(normal[0],
            "81111113"
            "51111152"
            "51111251"
            "31111136"
            "71131112"
            "1");
  EXPECT_EQ(normal[1],
            "81111113"
            "41111315"
            "11611124"
            "41111216"
            "71131112"
            "1");
  EXPECT_EQ(normal[2],
            "81111113"
            "21111155"
            "23521211"
            "11111345"
            "71131112"
            "1");
  EXPECT_EQ(normal[3].substr(0, 24),
            "81111113"
            "21114251"
            "14232212");
  const auto truncated = lines_of(*row_pattern_text({Kind::truncated, 1, 9, 1}, ""));
  ASSERT_EQ(truncated.size(), 9U);
  EXPECT_EQ(truncated[0],
            "81111113"
            "51111152"
            "51111251"
            "1");

  // 900 in cluster 3; left, centre and right row address patterns 46, 18 and 42.
  const auto micro = lines_of(*row_pattern_text({Kind::micro, 4, 4}, ""));
  EXPECT_EQ(micro[0].substr(0, 14),
            "211231"
            "11611124");
  EXPECT_EQ(micro[0].substr(22, 6), "123121");
  EXPECT_EQ(micro[0].substr(44),
            "211213"
            "1");
  const auto three = lines_of(*row_pattern_text({Kind::micro, 3, 44}, ""));
  EXPECT_EQ(three[43].substr(0, 6), "211123");  // 43, and behind 51 comes 0: centre 24 + 43, right 48 + 43
  EXPECT_EQ(three[43].substr(14, 6), "115111");
  EXPECT_EQ(three[43].substr(36),
            "212131"
            "1");
}

TEST(Pdf417Construction, DrawsWhatTheTextSays) {
  for (const Options& options : all_shapes()) {
    const std::string message = "Row by row, 0123456789!";
    const auto text = row_pattern_text(options, message);
    const auto symbol = encode(options, message);
    if (!text) continue;
    const auto lines = lines_of(*text);
    ASSERT_EQ(static_cast<int>(lines.size()), symbol->modules.rows());
    for (int row = 0; row < symbol->modules.rows(); ++row) {
      std::string modules;
      for (const char digit : lines[static_cast<std::size_t>(row)]) {
        modules.append(static_cast<std::size_t>(digit - '0'),
                       modules.empty() || modules.back() == '.' ? '#' : '.');
      }
      ASSERT_EQ(static_cast<int>(modules.size()), symbol->modules.columns());
      for (int column = 0; column < symbol->modules.columns(); ++column) {
        ASSERT_EQ(symbol->modules.dark(row, column), modules[static_cast<std::size_t>(column)] == '#')
            << "row " << row << ", column " << column;
      }
    }
  }
}

TEST(Pdf417Options, SayWhatIsWrong) {
  struct Case {
    Options options;
    int bytes;
    Code code;
    const char* message;
  };
  const Case cases[] = {
      {{.ecc_level = 9},
       0,
       Code::bad_parameter,
       "Error correction level 9 is out of range; there are 0 to 8."},
      {{.columns = 31},
       0,
       Code::bad_parameter,
       "31 columns are out of range; PDF417 has 1 to 30, and 0 leaves the choice."},
      {{.rows = 2},
       0,
       Code::bad_parameter,
       "2 rows are out of range; PDF417 has 3 to 90, and 0 leaves the choice."},
      {{.columns = 30, .rows = 31},
       0,
       Code::bad_parameter,
       "30 columns and 31 rows make 930 codewords; a symbol has at most 928."},
      {{.kind = Kind::micro, .columns = 4, .rows = 5},
       0,
       Code::bad_parameter,
       "MicroPDF417 does not have 5 rows of 4 columns; with 4 columns go 4, 6, 8, 10, 12, 15, 20, 26, 32, 38 "
       "and 44 "
       "rows, and 0 leaves the choice."},
      {{.columns = 30, .rows = 3, .ecc_level = 8},
       0,
       Code::no_symbol,
       "The 512 check codewords of level 8 leave no room for data among 90 codewords; a lower level or a "
       "larger "
       "symbol would."},
      {{.kind = Kind::micro, .columns = 1},
       50,
       Code::no_symbol,
       "The data has 50 bytes, of which the first 38 fit; the largest symbol allowed holds 20 codewords of "
       "data and 8 "
       "check codewords."},
      {{},
       100000,
       Code::no_symbol,
       "The data has 100000 bytes, of which the first 1838 fit; the largest symbol allowed holds 920 "
       "codewords of data "
       "and 8 check codewords."},
  };
  for (const auto& [options, bytes, code, message] : cases) {
    const auto result = encode(options, std::string(static_cast<std::size_t>(bytes), 'A'));
    ASSERT_FALSE(result) << message;
    EXPECT_EQ(result.error().code, code) << message;
    EXPECT_EQ(result.error().message, message);
  }
}

}  // namespace
}  // namespace korvex::pdf417
