#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "linear/support.hpp"

namespace korvex::linear::test {
namespace {

/// Bars of a table, where blanks part the characters.
std::string without_blanks(std::string text) {
  std::erase(text, ' ');
  return text;
}

Bar_Ratio selector(int number) {
  return {static_cast<std::int16_t>(number), 0, 0, 0, 0};
}
/// Narrow space, narrow bar, wide space, wide bar.
Bar_Ratio widths(int ns, int nb, int ws, int wb) {
  return {3, static_cast<std::int16_t>(ns), static_cast<std::int16_t>(nb), static_cast<std::int16_t>(ws),
          static_cast<std::int16_t>(wb)};
}

TEST(KorvexBit, DrawsTheModulesThatTheStandardsPrint) {
  struct Case {
    const char* name;
    Call call;
    const char* bars;
  };
  const std::vector<Case> cases = {
      {"Codabar 2:1", {0, "A12B"}, "1011001001 0 101011001 0 101001011 0 1001001011"},
      {"Codabar, other names", {0, "t12n"}, "1011001001 0 101011001 0 101001011 0 1001001011"},
      {"Codabar, the last two", {0, "*e", selector(1)}, "1010001000111 0 1010001110001"},
      {"Codabar blank", {0, "A B"}, "1011001001 0 000000000 0 1001001011"},
      {"Codabar blank, own widths",
       {0, "1 1", widths(2, 1, 4, 3)},
       "1001001110000 1 00 000000000000000000 00 1001001110000 1"},
      {"Code 39 3:1", {1, "*A*", selector(1)}, "100010111011101 0 111010100010111 0 100010111011101"},
      {"Code 39, own widths as 3:1",
       {1, "*A*", widths(1, 1, 3, 3)},
       "100010111011101 0 111010100010111 0 100010111011101"},
      {"ITF 2:1", {2, "1234"}, "1010 11010010101100 11011010010100 1101"},
      {"ITF, odd: a 0 in front", {2, "234"}, "1010 10100110110100 11011010010100 1101"},
      {"ITF 5:2", {2, "12", selector(2)}, "11001100 11111001100000110011001111100000 111110011"},
      {"Industrial 2 of 5", {5, "12"}, "1101101 0 11010101011 0 10110101011 0 1101011"},
      {"Three bars 5:2",
       {6, "12", selector(2)},
       "111110011111 00 1100110000011111 00 1100111110011111 00 110000011111"},
      {"Three bars, own widths", {6, "1", widths(2, 1, 4, 3)}, "11100111 00 1001 0000111 00 1 0000111"},
      {"Three bars, negative narrow space: no gap", {6, "1", widths(-1, 1, 2, 2)}, "1111 1 1 00 11 1 00 11"},
      {"MSI has a gap", {10, "12"}, "110 0 100100100110 0 100100110100 0 1001"},
      {"MSI 5:2: only the gap widens", {10, "9", selector(2)}, "110 00 110100100110 00 1001"},
      {"Code 11", {11, "1-"}, "1011001 0 1101011 0 1011101 0 1011001"},
      {"Code 93 5:2: no gap", {12, "A", selector(2)}, "101011110 110101000 110101000 110010110 1010111101"},
      // check values 41 and 41 + 2*41 = 123 = 29 mod 47
      {"Code 93, + is one character", {12, "+"}, "101011110 101110110 101110110 110100110 1010111101"},
      {"EAN-13",
       {3, "400638133393"},
       "101 0001101 0100111 0101111 0111101 0001001 0110011 01010 "
       "1000010 1000010 1000010 1110100 1000010 1100110 101"},
      {"EAN-13, wrong check digit stands",
       {3, "4006381333932"},
       "101 0001101 0100111 0101111 0111101 0001001 0110011 01010 "
       "1000010 1000010 1000010 1110100 1000010 1101100 101"},
      {"EAN-8",
       {4, "9638507"},
       "101 0001011 0101111 0111101 0110111 01010 1001110 1110010 1000100 1011100 101"},
      // 1234500005: 3*(5+0+0+4+2) + (0+0+5+3+1) = 42, check digit 8, sets BABAAB
      {"UPC-E", {14, "123455"}, "101 0110011 0010011 0100001 0100011 0110001 0111001 010101"},
      {"Add-on, 12 mod 4 = 0", {15, "12"}, "1011 0011001 01 0010011"},
      // 3*(1+3+5) + 9*(2+4) = 81: row 1, BABAA
      {"Add-on of five", {15, "12345"}, "1011 0110011 01 0010011 01 0100001 01 0100011 01 0110001"},
      {"Code 128", {9, "Ab1"}, "11010010000 10100011000 10010000110 10011100110 11000100100 1100011101011"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const Answer answer = call(c.call);
    EXPECT_EQ(answer.result, 0);
    EXPECT_EQ(answer.bars, without_blanks(c.bars));
    EXPECT_EQ(answer.guards, std::string(answer.bars.size(), '0'));
    EXPECT_EQ(answer.text, "");
    EXPECT_TRUE(answer.groups.empty());
  }
}

TEST(KorvexBit, WritesGuardsAndTextWhereTheyAreAskedFor) {
  struct Case {
    Call call;
    std::vector<int> guard_modules;
    const char* text;
    std::vector<int> groups;
  };
  const std::vector<int> ean13 = {0, 2, 46, 48, 92, 94};
  const std::vector<Case> cases = {
      {{3, "400638133393", selector(0), 1, 1}, ean13, "4006381333931", {1, 6, 6}},
      {{3, "012345678905", selector(0), 1, 65535}, ean13, "123456789050", {1, 5, 5, 1}},
      {{3, "01234567890", selector(2), 65535, 9}, ean13, "012345678905", {1, 5, 5, 1}},
      {{3, "4006381333930", selector(0), 0, 1}, {}, "4006381333930", {1, 6, 6}},
      {{4, "9638507", selector(0), 1, 1}, {0, 2, 32, 34, 64, 66}, "96385074", {0, 4, 4}},
      {{4, "96385070", selector(0), 1, 0}, {0, 2, 32, 34, 64, 66}, "", {}},
      {{14, "123455", selector(0), 1, 1}, {0, 2, 46, 48, 50}, "", {}},
      {{15, "12", selector(0), 1, 1}, {}, "", {}},
      // 3*(7+5+3+1+9+7+5+3+1) + (6+4+2+0+8+6+4+2+0): 155, check digit 5
      {{8, "12345678901234567", selector(0), 1, 1}, {}, "(00)123456789012345675", {4, 1, 7, 9, 1}},
      {{8, "12345678901234567", selector(0), 1, 2}, {}, "(00)123456789012345675", {4, 1, 7, 9, 1}},
      {{8, "12345678901234567", selector(0), 1, 3}, {}, "", {}},
      {{13, "B03abc", selector(0), 1, 1}, {}, "", {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.call.data);
    const Answer answer = call(c.call);
    EXPECT_EQ(answer.result, 0);
    std::string guards(answer.bars.size(), '0');
    for (const int module : c.guard_modules) guards[static_cast<std::size_t>(module)] = '1';
    EXPECT_EQ(answer.guards, guards);
    EXPECT_EQ(answer.text, c.text);
    EXPECT_EQ(answer.groups, c.groups);
  }
}

// Two things are wrong in some rows: the data comes first, then the widths, then the symbol.
TEST(KorvexBit, RefusesWithTheCodeOfTheFirstCheckThatFails) {
  const Bar_Ratio own = widths(1, 1, 3, 3);
  const std::vector<std::pair<Call, int>> cases = {
      {{0, "A1a2x"}, -3},
      {{0, "A"}, -3},
      {{1, "*"}, -3},
      {{1, "*a*"}, -3},
      {{2, "12a"}, -3},
      {{3, "1234567890"}, -3},
      {{3, "12345678901234"}, -3},
      {{3, "40063813339a"}, -3},
      {{3, ""}, -3},
      {{4, "123456"}, -3},
      {{4, "123456789"}, -3},
      {{5, "1-"}, -3},
      {{8, "1234567890123456"}, -3},
      {{8, "123456789012345678"}, -3},
      {{10, "1 "}, -3},
      {{11, "1A"}, -3},
      {{12, "\x80"}, -3},
      {{14, "12345"}, -3},
      {{14, "1234567"}, -3},
      {{15, "1"}, -3},
      {{15, "123"}, -3},
      {{16, "1"}, -3},
      {{18, ""}, -3},
      {{19, "1"}, -3},
      {{65535, "1"}, -3},
      {{7, "12"}, -1},
      {{7, "x"}, -3},
      {{17, "A9"}, -1},
      {{17, "a"}, -3},
      {{16, "1", own}, -3},
      {{3, "400638133393", own}, -1},
      {{3, "4006", own}, -3},
      {{9, "A", own}, -1},
      {{9, ">", own}, -3},
      {{12, "A", own}, -1},
      {{2, "1", selector(-1)}, -3},
      {{7, "1", selector(-32768)}, -3},
      {{2, "12", widths(0, 0, 0, 0)}, -1},
      {{2, "12", widths(-1, -5, 0, -9)}, -1},
      {{2, "x", widths(0, 0, 0, 0)}, -3},
      {{8, "12345678901234567", own, 0, 1}, -1},
      {{19, "1", own}, -3},
  };
  for (const auto& [given, result] : cases) {
    EXPECT_EQ(call(given).result, result) << "type " << given.type << ", data " << given.data;
  }
}

TEST(KorvexBit, RefusesMissingRecordsAndBuffers) {
  std::array<std::uint32_t, 188> words{};
  std::array<char, 23> text{};
  const std::array<std::uint8_t, 12> digits = {'4', '0', '0', '6', '3', '8', '1', '3', '3', '3', '9', '3'};
  const Bar_Ratio ratio{};
  const Bit_Data data{12, digits.data()};
  const Bit_Data no_bytes{0, nullptr};
  const Bit_Data negative{-1, digits.data()};
  const Bit_Result good{0, words.data(), words.data(), 5, text.data(), {}};
  const auto with = [&](const Bar_Ratio* a, const Bit_Data* b, Bit_Result result) {
    const int code = Korvex_Bit(3, 1, 1, a, b, &result);
    EXPECT_EQ(result.text_length, code == 0 ? 13 : 0);
    return code;
  };
  EXPECT_EQ(with(&ratio, &data, good), 0);
  EXPECT_EQ(Korvex_Bit(3, 1, 1, &ratio, &data, nullptr), -3);
  EXPECT_EQ(with(nullptr, &data, good), -3);
  EXPECT_EQ(with(&ratio, nullptr, good), -3);
  EXPECT_EQ(with(&ratio, &no_bytes, good), -3);
  EXPECT_EQ(with(&ratio, &negative, good), -3);
  EXPECT_EQ(with(&ratio, &data, {0, nullptr, words.data(), 5, text.data(), {}}), -3);
  EXPECT_EQ(with(&ratio, &data, {0, words.data(), nullptr, 5, text.data(), {}}), -3);
  EXPECT_EQ(with(&ratio, &data, {0, words.data(), words.data(), 5, nullptr, {}}), -3);

  Bit_Result textless{0, words.data(), words.data(), 5, nullptr, {}};
  EXPECT_EQ(Korvex_Bit(3, 1, 0, &ratio, &data, &textless), 0) << "no text asked for, none written";
}

TEST(KorvexBit, StopsAtTheStorageToTheByte) {
  const auto repeated = [](const char* character, int count) {
    std::string text;
    while (count-- > 0) text += character;
    return text;
  };
  struct Case {
    const char* limit;
    int type;
    std::string longest;  ///< that is drawn
    std::string longer;   ///< that is not
    int modules;          ///< of the longest
    Bar_Ratio ratio = {};
  };
  const std::vector<Case> cases = {
      {"512 bytes", 2, repeated("7", 512), repeated("7", 513), 8 + 256 * 14},
      {"512 bytes, set C", 9, ">I" + repeated("7", 510), ">I" + repeated("7", 511), 11 * 257 + 13},
      {"501 characters with the start", 0, repeated("1", 502), repeated("1", 503), 502 * 10 - 1},
      {"501 characters with start and check", 9, repeated("A", 499), repeated("A", 500), 11 * 501 + 13},
      {"501 characters", 11, repeated("1", 501), repeated("1", 502), 15 + 501 * 8},
      {"501 characters with two checks", 12, repeated("A", 499), repeated("A", 500), 9 + 501 * 9 + 10},
      {"501 characters, two a byte", 12, repeated("a", 249), repeated("a", 250), 9 + 500 * 9 + 10},
      {"5984 modules", 10, repeated("5", 459), repeated("5", 460), 8 + 459 * 13},
      {"exactly 5984 modules", 6, repeated("5", 331), repeated("5", 332), 5984, {2, 0, 0, 0, 0}},
      {"exactly 5984, own widths", 2, "", "00", 5984, {3, 1, 1, 1, 5978}},
      {"widths beyond any symbol", 2, "", "00", 5984, {3, 0, 0, 32767, 5984}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.limit);
    const Answer longest = call({c.type, c.longest, c.ratio});
    EXPECT_EQ(longest.result, 0);
    EXPECT_EQ(static_cast<int>(longest.bars.size()), c.modules);
    EXPECT_EQ(call({c.type, c.longer, c.ratio}).result, -3);
  }
}

}  // namespace
}  // namespace korvex::linear::test
