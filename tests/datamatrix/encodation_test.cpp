#include "datamatrix/encodation.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "datamatrix/encode.hpp"
#include "korvex/datamatrix.hpp"

namespace korvex::datamatrix {
namespace {

std::span<const std::uint8_t> bytes_of(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

/// The data codewords, in decimal; "none" when no symbol holds the message.
std::string codewords_of(const Options& options, const std::string& data) {
  Message message;
  const auto plan = std::make_unique<Plan>();
  if (read_message(options, bytes_of(data), message)) return "bad escape";
  if (!make_plan(message.characters(), sizes_for(options), options.gs1, *plan)) return "none";
  std::vector<std::uint8_t> codewords(static_cast<std::size_t>(plan->size->data_codewords));
  if (encode_message(message.characters(), *plan, codewords) < 0) return "too many";
  std::string text;
  for (const auto codeword : codewords) text += (text.empty() ? "" : " ") + std::to_string(codeword);
  return text;
}

constexpr Options square(int side) {
  return {.rows = side, .columns = side};
}

// Worked out by hand from the standard's tables; triples are 1600 a + 40 b + c + 1.
TEST(DataMatrixEncodation, WritesTheCodewordsOfTheStandard) {
  const struct {
    const char* what;
    Options options;
    std::string data;
    std::string expected;
  } cases[] = {
      {"nothing: pads only", {}, "", "129 175 70"},
      {"digit pairs", {}, "123456", "142 164 186"},
      {"a lone digit", {}, "1234A5", "142 164 66 54 129"},
      {"randomised pads", square(12), "AB", "66 67 129 220 115"},
      {"upper shift", {}, "A\xE9", "66 235 106"},
      {"C40 fills the symbol without an unlatch", {}, "ABCDEF", "230 89 233 109 36"},
      {"C40, nothing over", square(14), "ABCDEF", "230 89 233 109 36 254 129 56"},
      {"C40, one value over", {}, "ABCDEFG", "230 89 233 109 36 254 72 129"},
      {"C40, one value over in one codeword",
       {.rows = 8, .columns = 32},
       "12ABCDEFGHI",
       "142 230 89 233 109 36 128 95 254 129"},
      {"C40, two values over", {}, "ABCDEFGH", "230 89 233 109 36 128 73 254"},
      {"C40, a shifted character over, one codeword left", {}, "ABCDEFGHIj", "230 89 233 109 36 128 95 107"},
      {"C40, a shifted character over", square(16), "ABCDEFGHIj",
       "230 89 233 109 36 128 95 254 107 129 251 147"},
      {"C40, the second half of a shifted character over",
       {},
       "ABCDEFGHIJKj",
       "230 89 233 109 36 128 95 147 131 254 107 129"},
      {"C40, an extended character, two over that fill the symbol",
       {},
       "12ABCDEFGHIJK\xB0",
       "142 230 89 233 109 36 128 95 147 130 188 33"},
      {"C40, an extended character, two over", square(18), "12ABCDEFGHIJK\xB0",
       "142 230 89 233 109 36 128 95 147 130 254 235 49 129 87 237 133 28"},
      {"C40, an extended character, one over",
       {},
       "ABCDEFGHIJ\xB0",
       "230 89 233 109 36 128 95 144 7 254 235 49"},
      {"Text", {}, "abcdef", "239 89 233 109 36"},
      {"X12, one over", {}, "ABC>ABC123>AB", "238 89 233 14 192 100 207 44 31 254 67 129"},
      {"X12, a digit pair over", {}, "ABC>ABC123>A12", "238 89 233 14 192 100 207 44 31 254 142 129"},
      {"EDIFACT ends without an unlatch in the last two codewords",
       {},
       "A.B.C.D.E.F.",
       "240 6 224 174 14 225 46 22 225 174 129 147"},
      {"EDIFACT, one over in ASCII", {}, "A.B.C.D.E.F.G", "240 6 224 174 14 225 46 22 225 174 72 129"},
      {"EDIFACT, one over and the unlatch", square(18), "A.B.C.D.E.F.G",
       "240 6 224 174 14 225 46 22 225 174 29 240 129 192 87 237 133 28"},
      {"FNC1 by an escape",
       {.fnc1_escape = true},
       "\x1B"
       "1"
       "01\x1B\x1B",
       "232 131 28"},
      {"GS1 data",
       {.gs1 = true},
       "10A\x1D"
       "21",
       "232 140 66 232 151"},
      {"GS1 data starts in ASCII even where C40 is shorter",
       {.gs1 = true},
       "10ABCDEFGHIJKL",
       "232 140 230 89 233 109 36 128 95 147 154 254"},
      {"ESC is data",
       {},
       "\x1B"
       "1",
       "28 50 129"},
      {"a bad escape",
       {.fnc1_escape = true},
       "A\x1B"
       "2",
       "bad escape"},
      {"an escape at the end", {.fnc1_escape = true}, "A\x1B", "bad escape"},
      {"one character too many", square(10), "ABCD", "none"},
  };
  for (const auto& [what, options, data, expected] : cases)
    EXPECT_EQ(codewords_of(options, data), expected) << what;
}

TEST(DataMatrixEncodation, WritesTheLengthOfBase256) {
  const struct {
    int bytes;
    int side;  // 0: automatic
    int drawn;
    std::string first;  // 231, then the length whitened at positions 2 and 3: 149 * 2 % 255 + 1 = 44, and 193
  } cases[] = {
      {10, 0, 16, "231 44"},         // fills 12 codewords: length 0
      {10, 18, 18, "231 54"},        //
      {249, 64, 64, "231 37"},       // 249 + 44 - 256
      {250, 64, 64, "231 38 193"},   // 250, then 0
      {278, 64, 64, "231 44"},       // fills 280
      {278, 0, 64, "231 44"},        //
      {279, 0, 72, "231 38 222"},    // 250, then 29
      {499, 0, 88, "231 38 186"},    // 250, then 249
      {500, 0, 88, "231 39 193"},    // 251, then 0
      {1555, 0, 144, "231 43 248"},  // 255, then 55
      {1556, 0, 144, "231 44"},      // without the second codeword of the length it just fits
      {1557, 0, 0, "none"},          //
      {1556, 144, 144, "231 44"},    //
      {1557, 144, 0, "none"},        //
  };
  for (const auto& [bytes, side, drawn, first] : cases) {
    const std::string data(static_cast<std::size_t>(bytes), '\x80');
    EXPECT_EQ(codewords_of(square(side), data).substr(0, first.size()), first)
        << bytes << " bytes in " << side;
    const auto symbol = encode(square(side), data);
    EXPECT_EQ(symbol ? symbol->modules.rows() : 0, drawn) << bytes << " bytes in " << side;
  }
}

TEST(DataMatrixEncodation, ChoosesTheSmallestSize) {
  const struct {
    Options options;
    int digits;
    std::string drawn;
  } cases[] = {
      {{}, 6, "10x10"},
      {{}, 7, "12x12"},
      {{}, 3116, "144x144"},
      {{}, 3117, "none"},
      {square(11), 1, "none"},
      {{.rows = 8}, 10, "8x18"},
      {{.rows = 8}, 11, "8x32"},
      {{.rows = 8}, 21, "none"},
      {{.rows = 16, .columns = 48}, 1, "16x48"},
      {{.rows = 16, .columns = 26}, 1, "none"},
      {{.rows = 0, .columns = 18}, 1, "none"},
      {{.rows = -1, .columns = -1}, 1, "none"},
      {{.shape = Shape::rectangle}, 10, "8x18"},
      {{.shape = Shape::rectangle}, 21, "12x26"},
      {{.shape = Shape::rectangle}, 98, "16x48"},
      {{.shape = Shape::rectangle}, 99, "none"},
  };
  for (const auto& [options, digits, drawn] : cases) {
    const auto symbol = encode(options, std::string(static_cast<std::size_t>(digits), '7'));
    const std::string size =
        symbol ? std::to_string(symbol->modules.rows()) + 'x' + std::to_string(symbol->modules.columns())
               : "none";
    EXPECT_EQ(size, drawn) << options.rows << " x " << options.columns << ", " << digits << " digits";
  }
}

TEST(DataMatrixEncodation, SaysWhatIsWrong) {
  const struct {
    Options options;
    std::string data;
    Code code;
    const char* part;
  } cases[] = {
      {square(11), "A", Code::bad_parameter, "11 x 11"},
      {{}, std::string(4159, '1'), Code::no_symbol, "4159 bytes"},
      {square(10), "ABCD", Code::no_symbol,
       "4 bytes does not fit a symbol of 10 x 10 modules, which holds 3"},
      {{.fnc1_escape = true}, "AB\x1B", Code::bad_data, "position 3"},
  };
  for (const auto& [options, data, code, part] : cases) {
    const auto symbol = encode(options, data);
    ASSERT_FALSE(symbol) << part;
    EXPECT_EQ(symbol.error().code, code);
    EXPECT_NE(symbol.error().message.find(part), std::string::npos) << symbol.error().message;
  }
}

TEST(DataMatrixEncodation, SegmentsCoverTheMessage) {
  const auto symbol = encode({.gs1 = true, .gs1_checking = gs1::Checking::lenient},
                             "10abcdefghijkl\x1D"
                             "21ABCDEFGHIJKL\x80\x81\x82\x83");
  ASSERT_TRUE(symbol) << symbol.error().message;
  int characters = 0;
  for (const Segment& segment : symbol->segments) characters += segment.characters;
  EXPECT_EQ(characters, 1 + 14 + 1 + 14 + 4);
  EXPECT_GT(symbol->segments.size(), 2U);
}

}  // namespace
}  // namespace korvex::datamatrix
