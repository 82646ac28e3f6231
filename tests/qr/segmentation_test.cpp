#include "qr/segmentation.hpp"

#include <gtest/gtest.h>

#include "support.hpp"

namespace korvex::qr {
namespace {

using test::bytes;
using test::from_hex;

std::string split(const Options& options, std::span<const std::uint8_t> data) {
  SegmentList segments;
  EXPECT_EQ(analyse(options, data, segments), Analysis::done);
  int end = 0;
  for (const Segment& segment : segments.all()) {
    EXPECT_EQ(segment.offset, end);
    end += segment.length;
  }
  EXPECT_EQ(end, static_cast<int>(data.size()));
  return test::segment_text(segments.all());
}

std::string repeated(std::string_view text, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += text;
  return result;
}

// Worked out by hand. In versions 1-9 a segment's header has 14 (N), 13 (A), 12 (B) or 12 (K) bits.
TEST(QrSegmentation, MergesRunsWhereThatSavesBits) {
  const struct {
    std::string data;
    const char* segments;
    const char* why;
  } cases[] = {
      {"12345678", "N8", "one run"},
      {"AB12", "A4", "35 bits against 24 + 21"},
      {"abc123", "B6", "60 against 36 + 24: equal cost merges"},
      {"abc1234", "B3 N4", "68 against 36 + 28"},
      {"1234ab", "N4 B2", "60 against 28 + 28"},
      {"ABC1234567", "A10", "68 against 30 + 38: equal cost merges"},
      {"ABC12345678", "A3 N8", "74 against 30 + 41"},
      {"a1A", "B3", "36 against 20 + 18 + 19"},
      {"a123456789A", "B1 N9 A1", "100 against 20 + 44 + 19, and 68 for the last two against 63"},
      {"1234567890a1234567890", "N10 B1 N10", "180 against 48 + 20 + 48"},
      {"aA1BCDEFGHIJKL", "B1 A13",
       "A1 waits for the capitals: 20 + 85 against 36 + 74 when it joins the byte"},
      {"12345678901234aABc", "N14 B4",
       "the capitals cost 24 of their own, 16 between bytes; the digits stay: 61 against 124"},
  };
  for (const auto& [data, segments, why] : cases)
    EXPECT_EQ(split({}, bytes(data)), segments) << data << ": " << why;
}

TEST(QrSegmentation, CountsPercentAsGs1WritesIt) {
  // In alphanumeric mode the separator is "%", 5.5 bits; a "%" of the data is two of them, 11 bits against 8
  // in byte mode.
  const Options gs1{.type = SymbolType::gs1};
  EXPECT_EQ(split(gs1, bytes("10LOTABCDEF\x1D"
                             "21SNABCDEF")),
            "A22");
  EXPECT_EQ(split({}, bytes("10LOTABCDEF\x1D"
                            "21SNABCDEF")),
            "A11 B1 A10");
  EXPECT_EQ(split(gs1, bytes("ab%%%%%%%%%%%%")), "B14");
  EXPECT_EQ(split({}, bytes("ab%%%%%%%%%%%%")), "B2 A12");
}

TEST(QrSegmentation, TellsKanjiFromBytes) {
  const struct {
    const char* data;
    const char* segments;
  } cases[] = {
      {"88 9F", "K2"},
      {"88 9F 93 5F", "K4"},
      {"EB BF", "K2"},  // the last pair
      {"EB C0", "B2"},
      {"88", "B1"},
      {"88 7F", "B2"},  // no trail byte
      {"88 3F", "B2"},
      {"88 FD", "B2"},
      {"80 9F", "B2"},  // 0x80 leads nothing
      {"A0 40", "B2"},
      {"DF 88 9F", "B3"},
      {"E0 40 EA FC", "K4"},  // half-width katakana are bytes
      {"88 9F 61", "B3"},
      {"81 40 81 40 81 40 81 40 61", "B9"},            // 84 against 64 + 20
      {"81 40 81 40 81 40 81 40 81 40 61", "K10 B1"},  // 100 against 77 + 20
  };
  for (const auto& [data, segments] : cases) EXPECT_EQ(split({}, from_hex(data)), segments) << data;
}

// Six digits between letters are worth 34 bits and a second byte header of 12 in small versions, for 48 bits
// as bytes; from version 10 on they would take 36 and 20.
TEST(QrSegmentation, SplitsAgainForTheVersionThatTheDataNeeds) {
  const std::string tail = "abc" + repeated("x", 60) + "123456" + repeated("y", 60);
  Options options{.level = Level::high};
  const std::string small = split({.level = Level::low}, bytes(tail));
  const std::string large = split(options, bytes(tail + repeated("z", 300)));
  EXPECT_EQ(small, "B63 N6 B60");
  EXPECT_EQ(large, "B429");
}

// M1 has digits alone, so letters start from M2's indicators; where nothing fits the estimate goes to the
// largest.
TEST(QrSegmentation, EstimatesSmallSymbolsByTheirOwnIndicators) {
  const auto micro = [](std::string_view data, Level level) {
    return split({.type = SymbolType::micro, .level = level}, bytes(data));
  };
  EXPECT_EQ(micro("12345", Level::low), "N5");
  EXPECT_EQ(micro("12A", Level::low), "A3");                                    // M2: 21 bits against 12 + 10
  EXPECT_EQ(micro("12345A", Level::low), "N5 A1");                              // 37 against 22 + 10
  EXPECT_EQ(micro("123456789012345678901234567890abc", Level::low), "N30 B3");  // fits nowhere
  const auto rmqr = [](std::string_view data, int rows) {
    return split({.type = SymbolType::rmqr, .rmqr_rows = rows}, bytes(data));
  };
  EXPECT_EQ(rmqr("1abc", 7), "B4");      // R7x43: 38 bits against 11 + 30
  EXPECT_EQ(rmqr("12abc", 7), "N2 B3");  // 46 against 14 + 30
}

TEST(QrSegmentation, RefusesMoreThanTheEncoderTakes) {
  SegmentList segments;
  const auto outcome = [&](const Options& options, const std::string& data) {
    return analyse(options, bytes(data), segments);
  };
  const Options byte_mode{.mode = Mode::byte};
  EXPECT_EQ(outcome({}, repeated("7", 7366)), Analysis::done);
  EXPECT_EQ(outcome({}, repeated("7", 7367)), Analysis::too_many_characters);
  EXPECT_EQ(outcome(byte_mode, repeated("7", 7366)), Analysis::done);
  EXPECT_EQ(outcome(byte_mode, repeated("7", 7367)), Analysis::too_many_characters);
  // A Kanji character counts one, except in a fixed mode, where bytes count.
  EXPECT_EQ(outcome({}, repeated("\x88\x9F", 7366)), Analysis::done);
  EXPECT_EQ(outcome({.mode = Mode::kanji}, repeated("\x88\x9F", 3684)), Analysis::too_many_characters);

  const std::string two_segments = "12345678901234567890abcdefghijklmnopqrst";
  EXPECT_EQ(outcome({}, repeated(two_segments, 100)), Analysis::done);
  EXPECT_EQ(segments.all().size(), 200U);
  EXPECT_EQ(outcome({}, repeated(two_segments, 100) + "1234567890"), Analysis::too_many_segments);
}

}  // namespace
}  // namespace korvex::qr
