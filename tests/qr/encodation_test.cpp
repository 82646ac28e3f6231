#include "qr/encodation.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>

#include "support.hpp"

namespace korvex::qr {
namespace {

using test::bytes;
using test::from_hex;

/// The data codewords of a symbol that holds `data`.
test::Bytes codewords(const Options& options, int version, std::span<const std::uint8_t> data) {
  Stream stream;
  stream.data = data;
  EXPECT_EQ(analyse(options, data, stream.segments), Analysis::done);
  stream.size = stream_size(options, stream.segments.all(), data);
  EXPECT_TRUE(holds(options, version, stream.size, nullptr));
  CodewordBuffer buffer;
  buffer.fill(0x55);
  write_data_codewords(options, version, stream, nullptr, buffer);
  const int count = capacity(options.type, version, options.level).data_codewords;
  return {buffer.begin(), buffer.begin() + count};
}

std::string bits_of(const test::Bytes& codewords) {
  std::string bits;
  for (const std::uint8_t codeword : codewords) {
    for (int bit = 7; bit >= 0; --bit) bits += (codeword >> bit & 1) != 0 ? '1' : '0';
  }
  return bits;
}

std::string without_spaces(std::string_view text) {
  std::string result;
  std::ranges::copy_if(text, std::back_inserter(result), [](char c) { return c != ' '; });
  return result;
}

/// As many of the first bits of the data codewords as `expected` has.
#define EXPECT_FIRST_BITS(codewords, expected) \
  EXPECT_EQ(bits_of(codewords).substr(0, without_spaces(expected).size()), without_spaces(expected))
#define EXPECT_LAST_BITS(codewords, expected)                         \
  EXPECT_TRUE(bits_of(codewords).ends_with(without_spaces(expected))) \
      << test::to_hex(codewords) << " should end in " << (expected)

constexpr Level kLow = Level::low;

TEST(QrEncodation, MatchesTheWorkedExamplesOfIso18004) {
  // Annex I: 01234567 as version 1-M and as M2-L.
  EXPECT_EQ(test::to_hex(codewords({}, 1, bytes("01234567"))),
            "10 20 0C 56 61 80 EC 11 EC 11 EC 11 EC 11 EC 11");
  EXPECT_EQ(test::to_hex(codewords({.type = SymbolType::micro, .level = kLow}, 2, bytes("01234567"))),
            "40 18 AC C3 00");
  // 7.4.4 and 7.4.6
  EXPECT_FIRST_BITS(codewords({}, 1, bytes("AC-42")), "0010 000000101 00111001110 11100111001 000010 0000");
  EXPECT_FIRST_BITS(codewords({}, 1, from_hex("93 5F E4 AA")),
                    "1000 00000010 0110110011111 1101010101010 0000");
}

TEST(QrEncodation, HeadersByTypeAndVersion) {
  const struct {
    Options options;
    int version;
    std::string data;
    const char* bits;
  } cases[] = {
      {{}, 9, "7", "0001 0000000001 0111 0000 00 11101100"},
      {{}, 10, "7", "0001 000000000001 0111 0000 11101100"},
      {{}, 27, "7", "0001 00000000000001 0111 0000 000000 11101100"},
      {{.type = SymbolType::model1}, 1, "7", "0000 0001 0000000001 0111 0000 000000 11101100"},
      // ISO/IEC 18004:2015, 8.2: the third of seven symbols has the sequence indicator 0010 0110.
      {{.append = StructuredAppend{3, 7, 0xA5}}, 1, "7", "0011 0010 0110 10100101 0001 0000000001 0111 0000"},
      {{.type = SymbolType::model1, .append = StructuredAppend{16, 16, 0x5A}},
       2,
       "7",
       "0000 0011 1111 1111 01011010 0001 0000000001 0111 0000"},
      {{.type = SymbolType::gs1}, 1, "7", "0101 0001 0000000001 0111 0000 000000 11101100"},
      {{.type = SymbolType::micro, .level = kLow}, 1, "7", "001 0111 000"},
      {{.type = SymbolType::micro, .level = kLow}, 2, "A", "1 001 001010 00000 0 11101100"},
      {{.type = SymbolType::micro, .level = kLow}, 3, "A", "01 0001 001010 0000000 00000 11101100"},
      {{.type = SymbolType::micro, .level = kLow}, 4, "a", "010 00001 01100001 000000000 0000000 11101100"},
      {{.type = SymbolType::micro, .level = kLow},
       4,
       "\x93\x5F",
       "011 0001 0110110011111 000000000 000 11101100"},
      {{.type = SymbolType::rmqr, .rmqr_rows = 7}, 1, "7", "001 0001 0111 000 00 11101100"},
      {{.type = SymbolType::rmqr, .rmqr_rows = 17}, 32, "A", "010 00000001 001010 000 0000 11101100"},
      {{.type = SymbolType::rmqr, .rmqr_rows = 17}, 32, "a", "011 00000001 01100001 000 00 11101100"},
      {{.type = SymbolType::rmqr, .rmqr_rows = 17},
       32,
       "\x93\x5F",
       "100 0000001 0110110011111 000 000000 11101100"},
  };
  for (const auto& [options, version, data, bits] : cases) {
    SCOPED_TRACE("type " + std::to_string(static_cast<int>(options.type)) + ", version " +
                 std::to_string(version));
    EXPECT_FIRST_BITS(codewords(options, version, bytes(data)), bits);
  }
}

TEST(QrEncodation, ClosesTheStreamAtItsEnd) {
  const Options one_m{.mode = Mode::byte};  // 128 bits
  EXPECT_LAST_BITS(codewords(one_m, 1, bytes("abcdefghijklmn")),
                   "01101110 0000");  // n, all of the terminator
  EXPECT_LAST_BITS(codewords(one_m, 1, bytes("abcdefghijklm")),
                   "01101101 0000 11101100");  // m, a pad codeword
  EXPECT_LAST_BITS(codewords({}, 1, bytes("1234567890123456789012345678901234")),
                   "0001111011 0100");  // 123 and 4 fill it

  const Options m3{.type = SymbolType::micro,
                   .level = kLow};  // 84 bits, in a byte four more that are not used
  EXPECT_LAST_BITS(codewords(m3, 3, bytes("12345678901234567890123")), "0010111 0000");  // 23, no terminator
  EXPECT_LAST_BITS(codewords(m3, 3, bytes("1234567890123456789012")),
                   "0010 000 0000");  // 2, three bits of it
}

// The last data codeword of M1 and M3 has four bits: a pad codeword there is 0000, or in the old dialect the
// high half of 0xEC or 0x11.
TEST(QrEncodation, ShortLastCodewordIsPaddedByDialect) {
  const struct {
    int version;
    Level level;
    std::string data;
    const char* standard;
    const char* korvex32;
  } cases[] = {
      {1, kLow, "1", "22 00 00", "22 00 E0"},      // 001 0001 000: ten bits, two codewords
      {1, kLow, "12345", "A3 DA D0", "A3 DA D0"},  // 101 0001111011 0101101: twenty bits
      {3, Level::medium, "1", "02 20 00 EC 11 EC 11 EC 00", "02 20 00 EC 11 EC 11 EC 10"},
  };
  for (const auto& [version, level, data, standard, korvex32] : cases) {
    Options options{.type = SymbolType::micro, .level = level};
    EXPECT_EQ(test::to_hex(codewords(options, version, bytes(data))), standard) << data;
    options.dialect = Dialect::korvex32;
    EXPECT_EQ(test::to_hex(codewords(options, version, bytes(data))), korvex32) << data;
  }
}

// In FNC1 mode a "%" of the data is written "%%" in alphanumeric segments, and the count says so.
TEST(QrEncodation, DoublesPercentInGs1AlphanumericSegments) {
  Options options{.type = SymbolType::gs1};
  EXPECT_FIRST_BITS(codewords(options, 1, bytes("A%B")), "0101 0010 000000100 00111101000 11010111001 0000");
  options.dialect = Dialect::korvex32;
  EXPECT_FIRST_BITS(codewords(options, 1, bytes("A%B")), "0101 0010 000000011 00111101000 001011 0000");
}

TEST(QrEncodation, FixedModesPackUnfitDataByTheirFormulas) {
  const auto packed = [](Mode mode, std::string_view hex) {
    const auto data = from_hex(hex);
    return test::to_hex(codewords({.mode = mode, .dialect = Dialect::korvex32}, 1, data)).substr(0, 17);
  };
  EXPECT_EQ(packed(Mode::alphanumeric, "61 62"), packed(Mode::alphanumeric, "41 42")) << "small letters";
  EXPECT_EQ(packed(Mode::kanji, "88 9F 41"), packed(Mode::kanji, "88 9F")) << "a byte without a second one";
  EXPECT_EQ(packed(Mode::numeric, "3A"), "10 06 80 EC 11 EC") << "digit ten in four bits";
  EXPECT_EQ(first_unfit_byte(Mode::numeric, bytes("12a")), 2);
  EXPECT_EQ(first_unfit_byte(Mode::alphanumeric, bytes("09AZ $%*+-./:a")), 13);
  EXPECT_EQ(first_unfit_byte(Mode::kanji, from_hex("88 9F 88")), 2);
  EXPECT_EQ(first_unfit_byte(Mode::byte, from_hex("00 FF")), -1);
}

}  // namespace
}  // namespace korvex::qr
