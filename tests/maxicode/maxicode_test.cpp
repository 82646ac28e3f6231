#include "korvex/maxicode.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "korvex/korvex32.h"

namespace korvex::maxicode {
namespace {

using Values = std::vector<int>;
constexpr int kLatch = 63;
constexpr int kPad = 33;

/// The message codewords of a mode 4 symbol up to the pads; "none" values on an error.
Values message_of(const std::string& text, Dialect dialect = Dialect::korvex32) {
  const auto symbol = encode({.dialect = dialect}, text);
  if (!symbol) return {-1};
  Values values;
  for (int i = 1; i < 10; ++i) values.push_back(symbol->codewords[static_cast<std::size_t>(i)]);
  for (int i = 20; i < 104; ++i) values.push_back(symbol->codewords[static_cast<std::size_t>(i)]);
  while (!values.empty() && values.back() == kPad) values.pop_back();
  if (!values.empty() && values.back() == kLatch) values.pop_back();
  return values;
}

TEST(MaxiCodeEncodation, ShiftsLatchesAndNumbersAsTheSetsAsk) {
  const struct {
    const char* what;
    std::string text;
    Values codewords;
  } rows[] = {
      {"set A", "ABC", {1, 2, 3}},
      {"nothing", "", {}},
      {"eight digits stand alone", "12345678", {49, 50, 51, 52, 53, 54, 55, 56}},
      {"nine digits are a number", "123456789", {31, 7, 22, 60, 52, 21}},
      {"ten: a number and a digit", "1234567890", {31, 7, 22, 60, 52, 21, 48}},
      {"a number with leading zeros", "000000001", {31, 0, 0, 0, 0, 1}},
      {"shift to B before a character of A", "aB", {59, 1, 2}},
      {"shift to B at the end", "a", {59, 1}},
      {"latch to B", "ab", {63, 1, 2}},
      {"a byte of every set keeps B latched", "ab c", {63, 1, 2, 47, 3}},
      {"from B: one, two, three shifts to A",
       "abXcdXYefXYZgh",
       {63, 1, 2, 59, 24, 3, 4, 56, 24, 25, 5, 6, 57, 24, 25, 26, 7, 8}},
      {"from B: four latch to A", "abWXYZV", {63, 1, 2, 63, 23, 24, 25, 26, 22}},
      {"from B: digits as two shifts", "ab12c", {63, 1, 2, 56, 49, 50, 3}},
      {"from B: a number without leaving B", "ab123456789c", {63, 1, 2, 31, 7, 22, 60, 52, 21, 3}},
      {"three of C are shifted one by one", "\xC0\xC1\xC2", {60, 0, 60, 1, 60, 2}},
      {"four of C latch", "\xC0\xC1\xC2\xC3", {60, 60, 0, 1, 2, 3}},
      {"C counts the space as its own", "\xC0 \xC1 A", {60, 60, 0, 59, 1, 59, 58, 1}},
      {"from C to B", "\xC0\xC1\xC2\xC3z", {60, 60, 0, 1, 2, 3, 63, 26}},
      {"from C to B by way of A", "\xC0\xC1\xC2\xC3;", {60, 60, 0, 1, 2, 3, 58, 59, 37}},
      {"from C a shift to D", "\xC0\xC1\xC2\xC3\xE0\xC4", {60, 60, 0, 1, 2, 3, 61, 0, 4}},
      {"latch to D, a number in it",
       "\xE0\xE1\xE2\xE3"
       "123456789\xE4",
       {61, 61, 0, 1, 2, 3, 31, 7, 22, 60, 52, 21, 4}},
      {"escape is set E's",
       "\x1B"
       "A",
       {62, 30, 1}},
      {"carriage return is A's in B, E's own in E", "ab\r", {63, 1, 2, 59, 0}},
      {"carriage return in E", "\x01\x02\x03\x04\r", {62, 62, 1, 2, 3, 4, 13}},
      {"the carrier separators stand in every set", "ab\x1C\x1D\x1E", {63, 1, 2, 28, 29, 30}},
      {"B's exclamation mark from D, by way of A", "\xE0\xE1\xE2\xE3!A", {61, 61, 0, 1, 2, 3, 58, 59, 33, 1}},
  };
  for (const auto& row : rows) EXPECT_EQ(message_of(row.text), row.codewords) << row.what;
}

TEST(MaxiCodeEncodation, TheDialectsDifferInTwoBytesAndThePads) {
  EXPECT_EQ(message_of("A!A", Dialect::korvex32), (Values{1, 59, 33, 1}));
  EXPECT_EQ(message_of("A!A", Dialect::standard), (Values{1, 59, 53, 1}));
  EXPECT_EQ(message_of("A\x1F"
                       "A",
                       Dialect::korvex32),
            (Values{1, 31, 1}));
  EXPECT_EQ(message_of("A\x1F"
                       "A",
                       Dialect::standard),
            (Values{1, 62, 35, 1}));

  // What stands behind a message that leaves the reader in each of the sets, and the message's codewords.
  const struct {
    const char* text;
    std::size_t codewords;
    int first, others;
  } rows[] = {{"A", 1, 33, 33},
              {"abc", 4, 33, 33},
              {"\xC0\xC1\xC2\xC3", 6, 58, 33},
              {"\xE0\xE1\xE2\xE3", 6, 58, 33},
              {"\x01\x02\x03\x04", 6, 28, 28},
              {"", 0, 63, 33}};  // a pad in front would begin a series header
  for (const auto& [text, codewords, first, others] : rows) {
    const auto standard = encode({}, text)->codewords;
    EXPECT_EQ(standard[codewords + 1], first) << text;
    EXPECT_EQ(standard[codewords + 2], others) << text;
    EXPECT_EQ(standard[103], others) << text;
    const auto korvex32 = encode({.dialect = Dialect::korvex32}, text)->codewords;
    EXPECT_EQ(korvex32[codewords + 1], kLatch) << text;
    EXPECT_EQ(korvex32[codewords + 2], kPad) << text;
  }
}

TEST(MaxiCodeEncodation, TellsTheSetOfEveryCodeword) {
  const auto symbol = encode({.position = 2, .total = 3}, "Aab123456789\xC0");
  ASSERT_TRUE(symbol.has_value());
  EXPECT_EQ(symbol->code_sets, "A>BB>#####>C");
  EXPECT_EQ(symbol->codewords[1], 33);
  EXPECT_EQ(symbol->codewords[2], 10);
}

TEST(MaxiCodeMessages, PackTheCarriersFields) {
  const struct {
    Options options;
    Values primary;
  } rows[] = {
      {{.mode = Mode::carrier_numeric,
        .dialect = Dialect::korvex32,
        .postal_code = "12345",
        .country_code = 840,
        .service_class = 1},
       {18, 14, 48, 0, 0, 16, 1, 18, 7, 0}},
      // The zeros of the United States: 123450000 is 0001 110101 101110 110010 100100 00.
      {{.mode = Mode::carrier_numeric, .postal_code = "12345", .country_code = 840, .service_class = 1},
       {2, 36, 50, 46, 53, 17, 2, 18, 7, 0}},
      // 999999999 is 1110 111001 101011 001001 111111 11 from bit 29 down; 999 is 1111100111.
      {{.mode = Mode::carrier_numeric, .postal_code = "999999999", .country_code = 999, .service_class = 999},
       {50, 63, 9, 43, 57, 30, 50, 57, 31, 62}},
      // B 000010, 1 110001, 0 110000, 5 110101, 0 110000, Z 011010
      {{.mode = Mode::carrier_alphanumeric,
        .postal_code = "B1050Z",
        .country_code = 56,
        .service_class = 999},
       {35, 6, 28, 13, 28, 44, 0, 14, 28, 62}},
      // Blanks, 100000, fill up.
      {{.mode = Mode::carrier_alphanumeric, .postal_code = "B1050", .country_code = 840, .service_class = 1},
       {3, 8, 28, 13, 28, 44, 0, 18, 7, 0}},
  };
  for (const auto& row : rows) {
    const auto symbol = encode(row.options, "");
    ASSERT_TRUE(symbol.has_value()) << symbol.error().message;
    EXPECT_EQ(Values(symbol->codewords.begin(), symbol->codewords.begin() + 10), row.primary)
        << row.options.postal_code;
  }
}

TEST(MaxiCodeMessages, HoldExactlyTheirCapacity) {
  const Options carrier{
      .mode = Mode::carrier_numeric, .postal_code = "1", .country_code = 1, .service_class = 1};
  Options series;
  series.total = 8;
  const struct {
    Options options;
    std::size_t most;
  } rows[] = {{{}, 93}, {{.mode = Mode::reader_programming}, 93}, {series, 91}, {carrier, 84}};
  for (const auto& [options, most] : rows) {
    const auto full = encode(options, std::string(most, 'A'));
    ASSERT_TRUE(full.has_value()) << most;
    EXPECT_EQ(full->codewords[103], 1) << "no pad behind " << most;
    const auto one_pad = encode(options, std::string(most - 1, 'A'));
    EXPECT_EQ(one_pad->codewords[103], kPad);
    const auto over = encode(options, std::string(most + 1, 'A'));
    ASSERT_FALSE(over.has_value());
    EXPECT_EQ(over.error().code, Code::no_symbol);
    EXPECT_FALSE(encode(options, std::string(100'000, '\xC0')).has_value());
  }
}

// The reader mends misplaced codewords without a word, so here is a full symbol on which independent encoders
// agree: a row a number, its first module highest.
TEST(MaxiCodeConstruction, PlacesEveryModuleOfASymbolThatOthersDrawToo) {
  constexpr std::uint32_t kExpected[] = {
      0x200028AC, 0x84920168, 0x5A05CC1C, 0xA2A0A080, 0x41A74A98, 0x4D8B98F0, 0x220AA02C,
      0xEC29A4C0, 0x1951A338, 0x8AB82208, 0x08769200, 0xE3800B90, 0x02800808, 0x854014F0,
      0x51800960, 0x01000020, 0xAE800A94, 0x8E000A00, 0x09C00A24, 0xA7C01610, 0x33A0146C,
      0xA2C06620, 0x142274A8, 0xCCAC6CC8, 0x002A8660, 0x43C0ACE0, 0xD8967318, 0x82B4B1F8,
      0x2255F998, 0x9AE87B00, 0xA8AD0048, 0x21BD2F28, 0x0102D904,
  };
  const auto symbol = encode({},
                             "NYDEAFLTYFRIADHBFCPSHXVKWDERYOITUZCPZLVMRBFTZUU"
                             "HCLSBAWSTASFBHBNMXDEODEDGXTBYTGPPKXSKBALMRRQVG");
  ASSERT_TRUE(symbol.has_value());
  for (int row = 0; row < kRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      ASSERT_EQ(symbol->modules.dark(row, column), (kExpected[row] << column & 0x80000000U) != 0)
          << row << ',' << column;
    }
  }
}

TEST(MaxiCodeRaster, DrawsHexagonsAndTheBullsEye) {
  ModuleMatrix modules(kRows, kColumns);
  modules.set_dark(0, 0, true);
  modules.set_dark(31, 28, true);
  const ModuleMatrix pixels = raster(modules);
  ASSERT_EQ(pixels.rows(), 200);
  ASSERT_EQ(pixels.columns(), 224);
  const char* hexagon[] = {".......", "...##..", "..####.", ".######",
                           ".######", ".######", "..####.", "...##.."};
  for (int y = 0; y < 8; ++y) {
    for (int x = 0; x < 7; ++x) {
      EXPECT_EQ(pixels.dark(y, x), hexagon[y][x] == '#') << x << ", " << y;
      EXPECT_EQ(pixels.dark(31 * 6 + y, 28 * 7 + 3 + x), hexagon[y][x] == '#') << x << ", " << y;
    }
  }
  // Light centre, three dark rings, symmetric both ways about the corner of four pixels.
  std::string line;
  for (int x = 102; x <= 133; ++x) line += pixels.dark(101, x) ? '#' : '.';
  EXPECT_EQ(line, "....#####......#####......#####.");
  for (int r = 0; r <= 31; ++r) {
    for (int c = 0; c <= 31; ++c) {
      const bool dark = pixels.dark(101 + r, 102 + c);
      EXPECT_EQ(pixels.dark(100 - r, 102 + c), dark);
      EXPECT_EQ(pixels.dark(101 + r, 101 - c), dark);
      EXPECT_EQ(pixels.dark(100 - r, 101 - c), dark);
    }
  }
}

TEST(MaxiCode, SaysWhatIsWrong) {
  const struct {
    Options options;
    const char* message;
    const char* sentence;
  } rows[] = {
      {{.mode = static_cast<Mode>(5)}, "x", "The mode is 5; there are 2, 3, 4 and 6."},
      {{.total = 9}, "x", "The number of symbols is 9; allowed are 1 to 8."},
      {{.position = 3, .total = 2}, "x", "The position in the series is 3; allowed are 1 to 2."},
      {{.mode = Mode::carrier_numeric, .postal_code = "-1", .country_code = 1, .service_class = 1},
       "x",
       "The postal code is \"-1\"; mode 2 takes one of 1 to 9 digits."},
      {{.mode = Mode::carrier_numeric, .postal_code = "1", .service_class = 1},
       "x",
       "The country code is 0; allowed are 1 to 999."},
      {{.mode = Mode::carrier_alphanumeric, .postal_code = "b10501", .country_code = 1, .service_class = 1},
       "x",
       "The postal code is \"b10501\"; mode 3 takes one of 1 to 6 characters: capital letters, digits and "
       "spaces."},
  };
  for (const auto& row : rows) EXPECT_EQ(encode(row.options, row.message).error().message, row.sentence);
}

// ---- the C entry ----

TEST(MaxiCodeEntry, AnswersByItsRanges) {
  const MAXI_Params good{1, 1, 2, "12345", 1, 840, "MESSAGE"};
  const auto with = [&](auto change) {
    MAXI_Params params = good;
    change(params);
    return params;
  };
  const std::string too_long(94, 'A');
  const struct {
    const char* what;
    MAXI_Params params;
    int result;
  } rows[] = {
      {"as it should be", good, 0},
      {"position 0", with([](auto& p) { p.position = 0; }), -1},
      {"position 9", with([](auto& p) { p.position = 9; }), -1},
      {"position beyond total", with([](auto& p) { p.position = 8; }), 0},
      {"total 0", with([](auto& p) { p.total = 0; }), -1},
      {"mode 1", with([](auto& p) { p.mode = 1; }), -1},
      {"mode 5", with([](auto& p) { p.mode = 5; }), -1},
      {"mode 7", with([](auto& p) { p.mode = 7; }), -1},
      {"service 0", with([](auto& p) { p.service_class = 0; }), -1},
      {"country 1000", with([](auto& p) { p.country_code = 1000; }), -1},
      {"service and country free in mode 4",
       with([](auto& p) { p.mode = 4, p.service_class = 0, p.country_code = -1, p.postal_code = nullptr; }),
       0},
      {"mode 3 wants six characters", with([](auto& p) { p.mode = 3; }), -1},
      {"six they are", with([](auto& p) { p.mode = 3, p.postal_code = "b1050z"; }), 0},
      {"mode 2 takes any text",
       with([](auto& p) { p.postal_code = " -x and more than sixty-three characters of nothing"; }), 0},
      {"no postal code", with([](auto& p) { p.postal_code = nullptr; }), -1},
      {"no message", with([](auto& p) { p.message = nullptr; }), -1},
      {"too long", with([&](auto& p) { p.message = too_long.c_str(); }), -2},
      {"a bad field wins over the length", with([&](auto& p) { p.message = too_long.c_str(), p.total = 9; }),
       -1},
  };
  for (const auto& row : rows) {
    const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                  korvex_device_destroy);
    korvex_device_record(device.get(), 1);
    Symbol_Size size{-1, -1};
    EXPECT_EQ(MAXI_Encode(device.get(), &row.params, &size), row.result) << row.what;
    const bool drawn = row.result == 0;
    EXPECT_EQ(size.width, drawn ? 224 : -1) << row.what;
    EXPECT_EQ(size.height, drawn ? 200 : -1) << row.what;
    int count = 0;
    if (drawn) {
      EXPECT_STREQ(korvex_device_operation(device.get(), 0, &count), "SetPixel");
      EXPECT_EQ(count, 44'800);
    }
    EXPECT_EQ(korvex_device_operation_count(device.get()), drawn ? 1 : 0) << row.what;
  }
}

TEST(MaxiCodeEntry, TakesTheLowThirtyBitsOfAnyPostalNumber) {
  const auto painted = [](const char* postal_code) {
    const MAXI_Params params{8, 3, 2, postal_code, 1, 1, ""};
    const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                  korvex_device_destroy);
    Symbol_Size size{};
    EXPECT_EQ(MAXI_Encode(device.get(), &params, &size), 0);
    ModuleMatrix pixels(200, 224);
    for (int y = 0; y < 200; ++y) {
      for (int x = 0; x < 224; ++x) pixels.set_dark(y, x, korvex_device_pixel(device.get(), x, y) == 0);
    }
    const auto symbol = encode({.mode = Mode::carrier_numeric,
                                .dialect = Dialect::korvex32,
                                .postal_code = postal_code,
                                .country_code = 1,
                                .service_class = 1,
                                .position = 8,
                                .total = 3},
                               "");
    EXPECT_EQ(raster(symbol->modules), pixels) << "in C++: " << postal_code;
    return pixels;
  };
  EXPECT_EQ(painted("0000000123"), painted(" \t\n\v\f\r+12"
                                           "3"));           // ten characters each
  EXPECT_EQ(painted("-000000001"), painted("1073741823"));  // 2^30 - 1
  EXPECT_EQ(painted("1073741824"), painted("0000000000"));
  EXPECT_EQ(painted("4294967297"), painted("0000000001"));
  EXPECT_EQ(painted("1x"), painted("01"));
  EXPECT_NE(painted("1"), painted("01")) << "the length counts too";
}

}  // namespace
}  // namespace korvex::maxicode
