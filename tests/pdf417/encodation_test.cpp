#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvex/pdf417.hpp"

namespace korvex::pdf417 {
namespace {

using namespace std::string_literals;
using Values = std::vector<std::uint16_t>;

/// One column at level 0: so many rows leave `rows - 3` codewords for the message.
Options room_for(int codewords) {
  return {.columns = 1, .rows = codewords + 3, .ecc_level = 0};
}

/// Data codewords, pads included, without the length descriptor.
std::span<const std::uint16_t> data_codewords(const Codewords& codewords, Kind kind) {
  const auto all = std::span(codewords.values);
  const std::size_t descriptor = kind == Kind::micro ? 0 : 1;
  return all.first(all.size() - static_cast<std::size_t>(codewords.check_codewords)).subspan(descriptor);
}

/// The codewords of the message alone.
Values message_codewords(const Options& options, const std::string& message) {
  const auto result = codewords(options, message);
  if (!result) return {999};
  const auto data = data_codewords(*result, options.kind);
  return {data.begin(), data.end() - result->pad_codewords};
}

struct Case {
  std::string message;
  Values expected;
};

void expect(const Options& options, const std::vector<Case>& cases) {
  for (const auto& [message, values] : cases) {
    EXPECT_EQ(message_codewords(options, message), values) << testing::PrintToString(message);
  }
}

// Behind a case stand its text values, two to a codeword: 30 x first + second.
TEST(Pdf417Encodation, ChoosesSubModesOfText) {
  expect({}, {
                 {"PDF417", {453, 178, 121, 239}},      // 15 3 5 28 4 1 7 29: ISO/IEC 15438's example
                 {"a,b", {810, 883, 59}},               // 27 0 29 13 1 29
                 {"aABCD", {810, 810, 811, 812, 813}},  // 27 0 27 0 27 1 27 2 27 3
                 {"aABCDE", {810, 868, 1, 63, 149}},    // 27 0 28 28 0 1 2 3 4 29
                 {"aABC D", {810, 868, 1, 86, 119}},    // 27 0 28 28 0 1 2 26 3 29
                 {"A;;;", {29, 29, 29, 29}},            // 0 29 0 29 0 29 0 29
                 {"A;;;;", {28, 750, 0, 29}},           // 0 28 25 0 0 0 0 29
                 {"1;;;A", {841, 870, 870, 870, 840}},  // 28 1 29 0 29 0 29 0 28 0
                 {"1;;;;A", {841, 750, 0, 29, 29}},     // 28 1 25 0 0 0 0 29 0 29
                 {";;;;1a", {865, 0, 0, 898, 57, 29}},  // 28 25 0 0 0 0 29 28 1 27 0 29
                 {"ABCDEFGHIJ", {1, 63, 125, 187, 249}},
             });
}

TEST(Pdf417Encodation, ChoosesCompactionModes) {
  // 10^44 and 10 in base 900.
  const Values zeros = {902, 437, 111, 716, 132, 444, 118, 179, 92, 496, 847, 486, 144, 523, 411, 100, 10};
  expect({}, {
                 {"", {}},
                 {"1234567", {841, 63, 125, 187}},
                 {"12345678", {902, 138, 628, 478}},
                 {"12345678A", {841, 63, 125, 187, 268, 29}},
                 {"12345678\x80", {902, 138, 628, 478, 901, 128}},
                 {std::string(13, '1') + "A", {841, 31, 31, 31, 31, 31, 31, 840}},
                 {std::string(14, '1') + "A", {902, 169, 315, 711, 223, 411, 900, 29}},
                 {"AB" + std::string(14, '1'), {1, 902, 169, 315, 711, 223, 411}},
                 {std::string(45, '0'), zeros},
                 {"\x80"s, {913, 128}},
                 {"\x80\x81"s, {901, 128, 129}},
                 {std::string(6, '\x80'), {924, 215, 312, 558, 104, 768}},
                 {std::string(7, '\x80'), {901, 215, 312, 558, 104, 768, 128}},
                 {"AB\x80"s, {901, 65, 66, 128}},
                 {"\x80"
                  "ABCD"s,
                  {901, 128, 65, 66, 67, 68}},
                 {"\x80\x81"
                  "ABCDE"s,
                  {901, 128, 129, 900, 1, 63, 149}},
                 // The sub-mode outlasts a byte shift; an odd value's pad is a latch only in punctuation.
                 {"abcde\x80"
                  "fghij"s,
                  {810, 32, 94, 913, 128, 156, 218, 299}},
                 {";;;;\x80"
                  "ABCDE"s,
                  {901, 59, 59, 59, 59, 128, 900, 1, 63, 149}},
                 {";;;;;;\x80"
                  "ABCDE"s,
                  {865, 0, 0, 0, 913, 128, 870, 32, 94}},
                 {";;;;;\x80"
                  "ABCDE"s,
                  {865, 0, 0, 29, 913, 128, 1, 63, 149}},
             });
  expect({.byte_only = true},
         {{"A", {901, 65}}, {"1234567890AB", {924, 82, 399, 748, 339, 234, 92, 484, 717, 433, 302}}});
}

TEST(Pdf417Encodation, BeginsInByteCompactionInMicroPdf417) {
  expect({.kind = Kind::micro}, {
                                    {"", {}},
                                    {"A", {900, 29}},
                                    {"1", {902, 11}},
                                    {"12A", {900, 841, 88, 29}},
                                    {"\x80"s, {901, 128}},
                                    {"ABCDE\x80"
                                     "FGHIJ"s,
                                     {900, 1, 63, 149, 913, 128, 156, 218, 299}},
                                });
}

TEST(Pdf417Encodation, LooksAtTheRoomLeft) {
  // The 14th digit is also the 16th character that eight codewords could hold: the digits leave the text run.
  expect(room_for(8), {{"AB" + std::string(14, '1'), {1, 902, 169, 315, 711, 223, 411}}});
  // One character more, and the run ends with the 13th.
  EXPECT_FALSE(encode(room_for(8), "ABC" + std::string(14, '1')));
  // The last byte of the limit is also the fifth text character: the text leaves the byte run.
  expect(room_for(8), {{"\x80\x80\x80"
                        "ABCDE"s,
                        {901, 128, 128, 128, 900, 1, 63, 149}}});
  // Run by run 14 codewords, as bytes 13.
  const std::string twice =
      "\x80\x81"
      "ABCDE"
      "\x80\x81"
      "ABCDE"s;
  expect(room_for(14), {{twice, {901, 128, 129, 900, 1, 63, 149, 901, 128, 129, 900, 1, 63, 149}}});
  expect(room_for(13), {{twice, {901, 215, 317, 50, 553, 448, 116, 426, 89, 642, 299, 68, 69}}});

  struct Limit {
    Options options;
    char character;
    int most;  // that fit
  };
  const Limit limits[] = {
      {room_for(6), '1', 14},
      {room_for(5), 'A', 10},
      {room_for(5), '\x80', 4},
      {room_for(6), '\x80', 6},
      {{.ecc_level = 0}, '1', 2710},
      {{.ecc_level = 0}, 'A', 1850},
      {{.ecc_level = 0}, '\x80', 1108},
      {{.ecc_level = 8}, 'A', 830},
      {{.rows = 10, .ecc_level = 0}, 'A', 594},    // 30 columns
      {{.columns = 5, .ecc_level = 0}, 'A', 894},  // 90 rows
      {{.kind = Kind::truncated, .ecc_level = 0}, 'A', 1850},
      {{.kind = Kind::micro}, '1', 366},
      {{.kind = Kind::micro}, 'A', 250},
      {{.kind = Kind::micro}, '\x80', 150},
  };
  for (const auto& [options, character, most] : limits) {
    EXPECT_TRUE(encode(options, std::string(static_cast<std::size_t>(most), character))) << most;
    const auto over = encode(options, std::string(static_cast<std::size_t>(most) + 1, character));
    ASSERT_FALSE(over) << most;
    EXPECT_EQ(over.error().code, Code::no_symbol) << most;
  }
}

TEST(Pdf417Encodation, RunsCoverTheMessageAndItsCodewordsWithoutAGap) {
  const std::string message =
      "Korvex\x80\x81 12345678901234567890 a\x82"
      "b"s;
  for (const Options& options : {Options{}, {.kind = Kind::micro}, {.byte_only = true}}) {
    const auto result = codewords(options, message);
    ASSERT_TRUE(result);
    int byte = 0;
    int codeword = options.kind == Kind::micro ? 0 : 1;
    for (const auto& run : result->runs) {
      EXPECT_EQ(run.first_byte, byte);
      EXPECT_EQ(run.first_codeword, codeword);
      byte += run.byte_count;
      codeword += run.codeword_count;
    }
    EXPECT_EQ(byte, static_cast<int>(message.size()));
    EXPECT_EQ(codeword,
              static_cast<int>(result->values.size()) - result->pad_codewords - result->check_codewords);
  }
}

}  // namespace
}  // namespace korvex::pdf417
