// Bits of general-purpose compaction, method fields and DataBar Expanded, worked out by hand.
#include "composite/encodation.hpp"

#include <gtest/gtest.h>

#include <string>

#include "composite/expanded_encodation.hpp"
#include "composite/method_field.hpp"

namespace korvex::composite {
namespace {

/// A symbol of one size.
class OneSize final : public Sizing {
 public:
  explicit OneSize(int capacity) : capacity_(capacity) {}
  int remaining_bits(int bits) override { return capacity_ - bits; }

 private:
  int capacity_;
};

Bytes bytes_of(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string bits_of(std::span<const std::uint8_t> bytes, int count) {
  std::string bits;
  for (int i = 0; i < count; ++i) {
    bits += (bytes[static_cast<std::size_t>(i / 8)] >> (7 - i % 8) & 1) != 0 ? '1' : '0';
  }
  return bits;
}

std::string without_blanks(std::string text) {
  std::erase(text, ' ');
  return text;
}

/// The bits of `text` from `mode` on, padding included.
std::string compacted(const std::string& text, Mode mode, int capacity) {
  ElementText element_text(bytes_of(text));
  OneSize sizing(capacity);
  Compaction compaction(element_text, sizing, kMostBits);
  compaction.set_mode(mode);
  if (!compaction.finish()) return "does not fit";
  EXPECT_EQ(compaction.bytes().size(), static_cast<std::size_t>((capacity + 7) / 8));
  return bits_of(compaction.bytes(), capacity);
}

struct Case {
  const char* text;
  Mode mode;
  std::string bits;  // blanks between codewords; they fill the size
};

std::string times(int count, const std::string& bits) {
  std::string all;
  for (; count > 0; --count) all += bits;
  return all;
}

void expect_bits(const Case& row) {
  const std::string bits = without_blanks(row.bits);
  EXPECT_EQ(compacted(row.text, row.mode, static_cast<int>(bits.size())), bits) << row.text;
}

TEST(CompositeEncodation, ALastDigitTakesFourBitsOnlyWhereAPairDoesNotFit) {
  // 5 is 0110 in 4 bits, with FNC1 5 * 11 + 18 = 73; four zeros follow where there is room, then padding.
  for (const Case& row : {
           Case{"5", Mode::numeric, "0110"},
           Case{"5", Mode::numeric, "0110 0"},
           Case{"5", Mode::numeric, "0110 00"},
           Case{"5", Mode::numeric, "1001001"},
           Case{"5", Mode::numeric, "1001001 00"},
           Case{"5", Mode::numeric, "1001001 0000"},
           Case{"5", Mode::numeric, "1001001 0000 00100 001"},
           Case{"125", Mode::numeric, "0010101 0110"},
           Case{"12", Mode::numeric, "0010101 0000 00100 0010"},
           Case{"12", Mode::numeric, "0010101 00"},
       }) {
    expect_bits(row);
  }
  EXPECT_EQ(compacted("5", Mode::numeric, 3), "does not fit");
}

TEST(CompositeEncodation, SchemesChangeWhereTheLookAheadSaysSo) {
  for (const Case& row : {
           // FNC1 pairs with a digit on either side, not with another FNC1 and not with the end.
           Case{"1#", Mode::numeric, "0011101"},
           Case{"#1", Mode::numeric, "1110111"},
           Case{"##1#", Mode::numeric, "0000 01111 1110111 0000 01111 0000"},
           // Six digits, or four that reach the end, leave the alphanumeric scheme; FNC1 counts, but not
           // after one.
           Case{"A1234", Mode::alphanumeric, "100000 000 0010101 0101101"},
           Case{"A123", Mode::alphanumeric, "100000 00110 00111 01000"},
           Case{"A12345B", Mode::alphanumeric, "100000 00110 00111 01000 01001 01010 100001"},
           Case{"A123456B", Mode::alphanumeric, "100000 000 0010101 0101101 1000101 0000 100001"},
           Case{"A12#45B", Mode::alphanumeric, "100000 00110 00111 01111 0111001 0000 100001"},
           Case{"A12#456B", Mode::alphanumeric, "100000 000 0010101 1111010 1000101 0000 100001"},
           Case{"A1#2345", Mode::alphanumeric, "100000 00110 01111 0100001 0111001"},
           Case{"^1", Mode::alphanumeric, "111111 0010"},
           Case{"Aa", Mode::alphanumeric, "100000 00100 1011010"},
           // Back from ISO/IEC 646: four digits or five others to the end, or ten characters of the smaller
           // sets.
           Case{"a1234", Mode::iso646, "1011010 000 0010101 0101101"},
           Case{"a123", Mode::iso646, "1011010 00110 00111 01000"},
           Case{"aABCD", Mode::iso646, "1011010 1000000 1000001 1000010 1000011"},
           Case{"aABCDE", Mode::iso646, "1011010 00100 100000 100001 100010 100011 100100"},
           Case{"1234a", Mode::iso646, "00110 00111 01000 01001 1011010"},
           Case{"AAAAAAAAAa", Mode::iso646, times(9, "1000000") + "1011010"},
           Case{"AAAAAAAAAAa", Mode::iso646, "00100" + times(10, "100000") + "00100 1011010"},
           Case{"^1", Mode::iso646, "11111101 0010"},
           Case{"*a ", Mode::iso646, "11101111 1011010 11111100"},
       }) {
    expect_bits(row);
  }
}

/// The method field of a 2D component, its data included, or the reason why there is none.
std::string method_bits(const std::string& text, Dialect dialect = Dialect::standard) {
  ElementText element_text(bytes_of(text));
  OneSize sizing(160);
  Compaction compaction(element_text, sizing, kMostBits);
  Method method = Method::general;
  if (const Fault fault = put_method_field(dialect, element_text, compaction, method)) {
    return "reason " + std::to_string(static_cast<int>(fault.reason));
  }
  if (!compaction.finish()) return "does not fit";
  return bits_of(compaction.bytes(), compaction.data_bits());
}

TEST(CompositeEncodation, MethodFieldsAreAsWorkedOutByHand) {
  struct Row {
    const char* text;
    const char* bits;
  };
  for (const Row& row : {
           Row{"12", "0 0010101 0000"},
           // 26 * 384 + 11 * 32 + 31 = 10367; AI 10 is implied, and where there is none FNC1 says so.
           Row{"1726123110AB", "10 0010100001111111 1 0000 100000 100001"},
           Row{"1126123110", "10 0010100001111111 0 0000"},
           // An empty AI 10 is not: FNC1 1, 0 FNC1, 1 and half a pair.
           Row{"1726123110#1", "10 0010100001111111 1 1110111 0010010 0011101 0000"},
           Row{"17261231", "10 0010100001111111 1 0000 01111 0000"},
           Row{"172612", "0 0011010 0100100 0010101 0000"},  // too short for a date: 17 26 12
           // AI 90: scheme, AI after it, number and letter, data.
           Row{"903KABC", "11 11 0 00011 0101 00000 00001 00010 11111 0000"},
           Row{"90Q1A", "11 0 0 00000 1001 00110 100000"},
           Row{"90A1A", "11 0 0 11111 0000000000 00000 00110 100000"},
           Row{"9031B12", "11 10 0 11111 0000011111 00001 0010101 0000"},
           Row{"90B1#2145", "11 10 10 00000 0000 0011101 0111001 0000"},
           Row{"90B12#21456", "11 10 10 00000 0000 0010101 1111010 1000101 0000"},  // 12, FNC1 4, 56
           Row{"90B12#8004AB", "11 10 11 00000 0000 0010101 0000 01111 0000 100000 100001"},
       }) {
    EXPECT_EQ(method_bits(row.text), without_blanks(row.bits)) << row.text;
  }
}

TEST(CompositeEncodation, DialectsDifferInWhatNoReaderGivesBack) {
  const auto bits = [](const std::string& text) { return method_bits(text, Dialect::korvex32); };
  // Month 00 of year 00 is day 5 - 32, in sixteen bits; the standard refuses it.
  EXPECT_EQ(bits("17000005"), without_blanks("10 1111111111100101 1 0000 01111 0000"));
  EXPECT_EQ(method_bits("17000005"), "reason " + std::to_string(static_cast<int>(Reason::impossible_date)));
  EXPECT_EQ(method_bits("17001332"), method_bits("17000005"));
  EXPECT_EQ(bits("1726A231"), "reason " + std::to_string(static_cast<int>(Reason::date_not_digits)));
  // 007 loses its zeros in the field for AI 90; the standard's general method keeps them.
  EXPECT_EQ(bits("90007B1"), without_blanks("11 10 0 00111 0000 0011101 0000"));
  EXPECT_EQ(method_bits("90007B1").substr(0, 8), without_blanks("0 1101011"));  // 9 * 11 + 0 + 8
}

std::string expanded_bits(const std::string& text, bool linked = false) {
  Request request;
  request.segments_per_row = 22;
  request.linear = bytes_of(text);
  if (linked) request.component = Bytes();
  ExpandedData data;
  if (const Fault fault = encode_expanded(request, data))
    return "reason " + std::to_string(static_cast<int>(fault.reason));
  std::string bits;
  for (int i = 0; i < data.count; ++i) {
    for (int bit = 11; bit >= 0; --bit)
      bits += (data.values[static_cast<std::size_t>(i)] >> bit & 1) != 0 ? '1' : '0';
  }
  return bits;
}

TEST(CompositeEncodation, ExpandedMethodsAreAsWorkedOutByHand) {
  // The item number 9 001 234 567 890 and 8; in the methods for one AI the 9 is implied.
  const std::string item = "0190012345678908";
  const std::string digits = " 0000000001 0011101010 1000110111 1101111010 ";  // 001 234 567 890
  struct Row {
    std::string rest;
    std::string bits;
  };
  for (const Row& row : {
           // 48 bits, an odd number of characters with the check character: the first bit for the size is
           // set.
           Row{"", "0 110 1001" + digits},
           Row{"3103001750", "0 0100" + digits + "000011011010110"},
           Row{"3103032768", "0 0111000" + digits + "0101 0001001111100000 1001011000000000"},  // 332768
           Row{"3202009999", "0 0101" + digits + "010011100001111"},
           Row{"3203022767", "0 0101" + digits + "111111111111111"},
           Row{"392200", "0 0110000" + digits + "10 0001000 000"},  // two places, the price 00
           Row{"393384012", "0 0110110" + digits + "11 1101001000 0010101 0000 0"},
           Row{"3932EUR12", "0 110 1001" + digits + "0110010 0101011 0000 100100 110100 110001 00110 00111"},
           Row{"310500000117261231", "0 0111110" + digits + "0111 1010000100100001 0010100001111111"},
           Row{"320500000111261231", "0 0111001" + digits + "0111 1010000100100001 0010100001111111"},
       }) {
    const std::string expected = without_blanks(row.bits);
    EXPECT_EQ(expanded_bits(item + row.rest).substr(0, expected.size()), expected) << row.rest;
  }
  EXPECT_EQ(expanded_bits(item, true).substr(0, 4), "1110");
}

}  // namespace
}  // namespace korvex::composite
