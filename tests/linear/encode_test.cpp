// The C++ interface: the published form of every symbology, its options and its sentences.
#include <gtest/gtest.h>

#include <numeric>
#include <string>
#include <vector>

#include "linear/support.hpp"

namespace korvex::linear::test {
namespace {

using enum Symbology;
using Check = CheckCharacters;
using Groups = std::array<std::uint16_t, 5>;

Options with(Symbology symbology, Check check = Check::none) {
  return {.symbology = symbology, .check = check};
}
Options as_export(Symbology symbology) {
  return {.symbology = symbology, .dialect = Dialect::korvex32};
}
Options with_widths(Symbology symbology, ElementWidths widths) {
  return {.symbology = symbology, .widths = widths};
}

TEST(Encode, AddsWhatThePublishedFormAsksFor) {
  struct Case {
    Options options;
    const char* data;
    const char* text;
    Groups groups = {};
  };
  const std::vector<Case> cases = {
      {with(code39), "CODE39", "*CODE39*"},
      {with(code39), "*CODE39*", "*CODE39*"},
      // 12+24+13+14+3+9 = 75 = 32 mod 43
      {with(code39, Check::mod43), "CODE39", "*CODE39W*"},
      {with(codabar), "37859", "A37859A"},
      {with(codabar), "t37859e", "A37859D"},
      // 16+3+7+8+5+9+17 = 65, 15 to the next multiple of 16
      {with(codabar, Check::mod16), "A37859B", "A37859+B"},
      {with(codabar, Check::mod16), "A47859B", "A47859.B"},
      {with(itf), "123", "0123"},
      {with(itf, Check::mod10), "12", "0123"},  // 3*2 + 1 = 7
      {with(itf, Check::mod10), "1540014128876", "15400141288763"},
      {with(industrial25, Check::mod10), "12345678", "123456784"},  // 3*(8+6+4+2) + 7+5+3+1 = 76
      {with(code25_3bar, Check::mod10), "12345678", "123456784"},
      {with(ean13), "400638133393", "4006381333931", {1, 6, 6}},
      {with(ean13), "0012345678905", "0012345678905", {1, 6, 6}},
      {with(upca), "03600029145", "036000291452", {1, 5, 5, 1}},
      {with(upca), "036000291452", "036000291452", {1, 5, 5, 1}},
      {with(ean8), "9638507", "96385074", {0, 4, 4}},
      // The last digit tells how the number is expanded: 0 12000 00345 5, 0 12100 00345 4 ...
      {with(upce), "123450", "01234505", {1, 6, 1}},
      {with(upce), "123451", "01234514", {1, 6, 1}},
      {with(upce), "123452", "01234523", {1, 6, 1}},
      {with(upce), "123453", "01234531", {1, 6, 1}},
      {with(upce), "123454", "01234543", {1, 6, 1}},
      {with(upce), "123459", "01234596", {1, 6, 1}},
      {with(upce), "0123456", "01234565", {1, 6, 1}},
      {with(upce), "01234565", "01234565", {1, 6, 1}},
      {with(addon), "52495", "52495"},
      {with(sscc18), "00614141123456789", "(00)006141411234567890", {4, 1, 7, 9, 1}},
      {with(sscc18), "006141411234567890", "(00)006141411234567890", {4, 1, 7, 9, 1}},
      {with(msi), "1234567", "1234567"},
      {with(msi, Check::mod10), "1234567", "12345674"},         // 7*2=14: 5, 6, 1, 4, 6, 2, 2: 26
      {with(msi, Check::mod10_mod10), "1234567", "123456741"},  // 8, 7, 3, 5, 8, 3, 4, 1: 39
      // 2*2+3*4+4*8+5*7+6*5+7*4+2*3+3*4+4*9 = 195 = 8 mod 11
      {with(msi, Check::mod11), "943457842", "9434578423"},
      {with(msi, Check::mod11_mod10), "943457842", "94345784238"},  // 6, 2, 8, 8, 5, 5, 8, 3, 8, 9: 62
      {with(code11, Check::one), "123-45", "123-455"},
      {with(code11, Check::two), "123-45", "123-4552"},
      {with(code11, Check::two), "11111111111", "1111111111117"},  // 1+...+10 + 1 = 56; 1+...+9 + 1+2+3 = 51
      {with(code93), "Code\t93", "Code 93"},
      {with(code128), "caf\xE9", "caf\xC3\xA9"},
      {with(code128), "a\tb\x7F", "a b "},
      {{.symbology = code128, .gs1 = true}, "[10]AB[21]12", "10AB2112"},
      {with(code128_inband), ">GA>C12>F34>D> x>0\x60", "A1234`xp`"},
      {{.symbology = code128_segments, .segments = 2}, "A02C04`aA1234", "A1234"},
      {as_export(ean13), "4006381333930", "4006381333930", {1, 6, 6}},
      {as_export(ean13), "01234567890", "012345678905", {1, 5, 5, 1}},
      {as_export(ean8), "96385070", "96385070", {0, 4, 4}},
      {as_export(codabar), "1 2", "1 2"},
      {as_export(code39), "A*B", "A*B"},
      {as_export(code128_inband), ">I123", "1230"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.data);
    const auto symbol = encode(c.options, c.data);
    ASSERT_TRUE(symbol) << symbol.error().message;
    EXPECT_EQ(symbol->text, c.text);
    EXPECT_EQ(symbol->text_groups, c.groups);
    const int grouped = std::accumulate(c.groups.begin(), c.groups.end(), 0);
    EXPECT_TRUE(grouped == 0 || grouped == static_cast<int>(symbol->text.size()));
  }
}

TEST(Encode, RefusesWithASentenceThatNamesWhatIsWrong) {
  constexpr Code kData = Code::bad_data;
  constexpr Code kParameter = Code::bad_parameter;
  struct Case {
    Options options;
    std::string_view data;
    Code code;
    const char* said;
  };
  const std::vector<Case> cases = {
      {with(code39), "AB\nC", kData, "0x0A at position 3"},
      {with(code39), "*ab*", kData, "'a' (0x61) at position 2"},
      {with(code39), "A*B", kData, "'*' (0x2A) at position 2"},
      {with(code39), "*A*B*", kData, "'*' (0x2A) at position 3"},
      {with(code39), "*", kData, "position 1"},
      {with(code39), "**", kData, "no data"},
      {with(codabar), "A123", kData, "'A' (0x41) at position 1"},
      {with(codabar), "12D", kData, "'D' (0x44) at position 3"},
      {with(codabar), "A1B2C", kData, "'B' (0x42) at position 3"},
      {with(codabar), "1 2", kData, "' ' (0x20) at position 2"},
      {with(codabar), "AB", kData, "no data"},
      {with(codabar), "A", kData, "'A' (0x41) at position 1"},
      {as_export(code39), "A", kData, "at least 2 characters; 1 given"},
      {with(itf), "12x4", kData, "'x' (0x78) at position 3"},
      {with(itf), "", kData, "no data"},
      {with(ean13), "4006381333930", kData,
       "check digit 0 at position 13 is wrong: these digits have the check digit 1"},
      {with(ean13), "01234567890", kData, "12 digits, or 13 with the check digit; 11 given"},
      {with(upca), "036000291453", kData, "check digit 3 at position 12"},
      {with(upca), "03600029145a", kData, "'a' (0x61) at position 12"},
      {with(ean8), "96385070", kData, "check digit 0 at position 8"},
      {with(upce), "01234560", kData, "check digit 0 at position 8"},
      {with(upce), "1123456", kData, "number system 0; 1 given"},
      {as_export(upce), "01234565", kData, "takes 6 digits; 8 given"},
      {with(sscc18), "006141411234567891", kData, "check digit 1 at position 18"},
      {as_export(sscc18), "006141411234567890", kData, "17 digits; 18 given"},
      {with(msi, Check::mod11), "6", kData, "10"},  // 2*6 = 1 mod 11
      {with(code93), "A\x80", kData, "0x80 at position 2"},
      {{.symbology = code128, .gs1 = true}, "10\xE9", kData, "0xE9 at position 3"},
      {{.symbology = code128, .gs1 = true, .gs1_checking = gs1::Checking::lenient},
       "10\xE9",
       kData,
       "bytes 0-255, or 0-127"},
      {with(code128_inband), ">I12345", kData, "'5' (0x35) at position 7"},
      {with(code128_inband), "A>", kData, "escape at position 2 is followed by nothing; > takes"},
      {{.symbology = code128_segments, .segments = 1}, "A01AB", kData, "position 5"},
      {{.symbology = code128_segments, .segments = 2}, "A01B0AAB", kData, "position 4"},
      {with(code128_segments), "A01A", kData, "at least one segment header"},
      {with(ean13, Check::mod10), "400638133393", kParameter, "does not offer"},
      {with(msi, Check::mod43), "1", kParameter, "does not offer"},
      {with(code39, Check::mod10), "1", kParameter, "does not offer"},
      {with_widths(code39, {1, 1, 0, 3}), "1", kParameter, "width of 0 modules"},
      {with_widths(code39, {1, 100, 3, 3}), "1", kParameter, "width of 100 modules"},
      {with_widths(ean13, {1, 1, 2, 2}), "400638133393", kParameter, "fixed"},
      {{.symbology = ean13, .gs1 = true}, "400638133393", kParameter, "gs1"},
      {{.symbology = code128, .segments = 1}, "A", kParameter, "segments"},
      {{.symbology = code128_segments, .segments = -1}, "A", kParameter, "-1"},
      {with(static_cast<Symbology>(17)), "1", kParameter, "symbology"},
      // Two things wrong: options are looked at before the data.
      {with(ean13, Check::mod10), "x", kParameter, "does not offer"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.data);
    const auto symbol = encode(c.options, c.data);
    ASSERT_FALSE(symbol) << "no error about: " << c.said;
    EXPECT_EQ(symbol.error().code, c.code);
    EXPECT_NE(symbol.error().message.find(c.said), std::string::npos) << symbol.error().message;
    EXPECT_EQ(symbol.error().message.back(), '.');
  }
}

TEST(Encode, DrawsTheExportsModulesUnlessThePublishedFormDiffers) {
  struct Case {
    Symbology symbology;
    const char* data;
    const char* standard;
    const char* korvex32;
  };
  const std::vector<Case> cases = {
      {msi, "9", "1101101001001101001", "110011010010011001001"},
      {code11, "1", "10110010110101101011001", "10110010110101101011001"},
      {addon, "12", "10110011001010010011", "10110011001010010011"},
  };
  for (const Case& c : cases) {
    Options options{.symbology = c.symbology};
    EXPECT_EQ(as_text(encode(options, c.data)->bars), c.standard);
    options.dialect = Dialect::korvex32;
    EXPECT_EQ(as_text(encode(options, c.data)->bars), c.korvex32);
  }
  // Code 11 has elements of one module whatever the ratio is: a gap of two belongs to the export alone.
  Options wide{.symbology = code11, .ratio = Ratio::five_to_two};
  EXPECT_EQ(encode(wide, "1")->bars.size(), 23);
  wide.dialect = Dialect::korvex32;
  EXPECT_EQ(encode(wide, "1")->bars.size(), 25);
}

TEST(Encode, MarksGuardBars) {
  const auto upce_symbol = encode(with(upce), "123456");
  EXPECT_EQ(as_text(upce_symbol->guards), "101" + std::string(42, '0') + "010101");
  EXPECT_EQ(encode(with(code128), "A")->guards.size(), 0);
}

TEST(Encode, QuietZonesAreCountedInNarrowElements) {
  EXPECT_EQ(quiet_zones(with(ean13)).left, 11);
  EXPECT_EQ(quiet_zones(with(ean13)).right, 7);
  EXPECT_EQ(quiet_zones({.symbology = itf, .ratio = Ratio::five_to_two}).left, 20);
  EXPECT_EQ(quiet_zones({.symbology = code128, .ratio = Ratio::five_to_two}).left, 10);
  EXPECT_EQ(quiet_zones(with_widths(code39, {2, 3, 6, 8})).right, 30);
}

}  // namespace
}  // namespace korvex::linear::test
