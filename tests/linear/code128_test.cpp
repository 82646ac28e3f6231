#include <gtest/gtest.h>

#include <map>
#include <queue>
#include <random>
#include <string>
#include <tuple>
#include <vector>

#include "linear/code128_tables.hpp"
#include "linear/support.hpp"

namespace korvex::linear::test {
namespace {

using Values = std::vector<int>;

/// The values of a symbol's bars from the start character to before the check character, which must be right.
Values values_of(const std::string& bars) {
  std::map<std::string, int> value_of;
  for (int value = 0; value < 107; ++value) {
    const std::uint32_t word = std::uint32_t{code128::kModules[static_cast<std::size_t>(value)]} << 21;
    value_of[as_text(&word, 11)] = value;
  }
  EXPECT_EQ(bars.substr(bars.size() - 13), "1100011101011") << "stop character";
  Values values;
  for (std::size_t at = 0; at + 13 < bars.size(); at += 11)
    values.push_back(value_of.at(bars.substr(at, 11)));
  const int check_character = values.back();
  values.pop_back();
  int sum = values[0];
  for (std::size_t i = 1; i < values.size(); ++i) sum += static_cast<int>(i) * values[i];
  EXPECT_EQ(check_character, sum % 103);
  return values;
}

// One pattern in the place of another draws a symbol that reads as something else. This is the CRC-32 of the
// standard's table, a line of six widths for each value.
TEST(Code128, HasTheWidthsOfTheStandardsTable) {
  std::uint32_t crc = ~0U;
  for (const int widths : code128::kWidths) {
    for (const char character : std::to_string(widths) + '\n') {
      crc ^= static_cast<std::uint32_t>(character);
      for (int bit = 0; bit < 8; ++bit) crc = crc >> 1 ^ (crc % 2 != 0 ? 0xEDB88320U : 0U);
    }
  }
  EXPECT_EQ(~crc, 0x2522EB64U);
}

struct SyntaxCase {
  const char* data;
  Values values;  ///< none: refused
};

TEST(Code128, InBandEscapesChooseTheSetsAndNothingElsePasses) {
  const std::vector<SyntaxCase> cases = {
      {"", {104}},
      {"Ab1", {104, 33, 66, 17}},
      {">GA_", {103, 33, 63}},
      {">H`\x7F", {104, 64, 95}},
      {">I1234", {105, 12, 34}},
      {">I123", {105, 12, 30}},
      {">I1>F2", {105, 10, 102, 20}},  // FNC1 parts the pairs
      {">I12>D3>C45>E6", {105, 12, 100, 19, 99, 45, 101, 22}},
      {"A>@b", {104, 33, 96, 66}},  // byte 64 of an escape is FNC3
      {"> >A>B", {104, 64, 97, 98}},
      {">J>F>G", {}},
      {">J>F", {104, 30, 102}},
      {">E>D>E", {104, 101, 100, 101}},
      {">Ga", {}},
      {">G`", {}},
      {"\x1F", {}},
      {"\x80", {}},
      {">I1a", {}},
      {">I> ", {}},
      {">I>C", {}},
      {">I>J", {}},
      {">I>", {}},
      {"A>H", {}},
      {">K", {}},
      {"A>", {}},
      {">\x1F", {}},
  };
  for (const SyntaxCase& c : cases) {
    SCOPED_TRACE(c.data);
    const Answer answer = call({9, c.data});
    ASSERT_EQ(answer.result, c.values.empty() ? -3 : 0);
    if (!c.values.empty()) {
      EXPECT_EQ(values_of(answer.bars), c.values);
    }
  }
}

TEST(Code128, SegmentHeadersTellSetAndLength) {
  struct Case {
    int segments;
    SyntaxCase syntax;
  };
  const std::vector<Case> cases = {
      {1, {"A02`aB", {103, 102, 34}}},
      {1, {"A03`b`c`d", {103, 97, 96, 101}}},
      {1, {"B02`d>", {104, 100, 30}}},
      {3, {"B01C04A01x1234Y", {104, 88, 99, 12, 34, 101, 57}}},
      {1, {"C0312?1", {105, 12, 102}}},  // FNC1 takes the place of two digits, even past the length
      {1, {"C0512345", {105, 12, 34, 50}}},
      {1, {"C041?123", {105, 10, 102, 20}}},  // the data ends in "3", which belongs to no segment
      {1, {"B00", {104}}},
      {2, {"B00C02ABCD", {}}},
      {2, {"B00C0212", {104, 99, 12}}},
      {1,
       {"B30abcdefghijklmnopqrstuvwxyz0123", {104, 65, 66, 67, 68, 69, 70, 71, 72, 73, 74, 75, 76, 77, 78, 79,
                                              80,  81, 82, 83, 84, 85, 86, 87, 88, 89, 90, 16, 17, 18, 19}}},
      {0, {"A01A", {}}},
      {2, {"A02A03ABCDE", {}}},
      {2, {"A30B01ABCDEFGHIJKLMNOPQRSTUVWXYZ0123a", {}}},  // 31 in all
      {2, {"B02ab", {}}},
      {65535, {"B02ab", {}}},
      {1, {"D01A", {}}},
      {1, {"a01A", {}}},
      {1, {"B0:A", {}}},
      {1, {"B1", {}}},
      {1, {"B03ab", {}}},
      {1, {"B02a`", {}}},
      {1, {"B01`e", {}}},
      {1, {"A01a", {}}},
      {1, {"A01\x1F", {}}},
      {1, {"C01>", {}}},
      {1, {"C02?2", {}}},
      {1, {"C01?", {}}},
  };
  for (const auto& [segments, c] : cases) {
    SCOPED_TRACE(c.data);
    const Answer answer = call({13, c.data, {}, 0, segments});
    ASSERT_EQ(answer.result, c.values.empty() ? -3 : 0);
    if (!c.values.empty()) {
      EXPECT_EQ(values_of(answer.bars), c.values);
    }
  }
}

// ---- the automatic choice of code sets ----

constexpr int kFnc1 = 256;  // among bytes

/// What a reader of ISO/IEC 15417 is in, between two symbol characters.
struct Reader {
  int set = 1;  // 0 A, 1 B, 2 C
  bool shifted = false;
  bool upper = false;
  bool upper_once = false;

  /// Follows one value and adds what it reads; false where the value has no meaning here.
  bool read(int value, std::vector<int>& bytes) {
    if (shifted && value >= 96) return false;
    const int in_force = shifted ? 1 - set : set;
    shifted = false;
    if (in_force == 2 && value < 100) {
      bytes.push_back('0' + value / 10);
      bytes.push_back('0' + value % 10);
    } else if (value < 96) {
      const int low = in_force == 0 && value >= 64 ? value - 64 : value + 32;
      bytes.push_back(low + (upper != upper_once ? 128 : 0));
      upper_once = false;
    } else if (value == 102) {
      bytes.push_back(kFnc1);
    } else if (value == 98) {
      shifted = true;
    } else if (value == 101 - set && set != 2) {
      if (upper_once) upper = !upper;
      upper_once = !upper_once;
    } else if (value >= 99 && value <= 101) {
      set = 101 - value;
    } else {
      return false;
    }
    return true;
  }
  bool operator<(const Reader& other) const {
    return std::tie(set, shifted, upper, upper_once) <
           std::tie(other.set, other.shifted, other.upper, other.upper_once);
  }
};

std::vector<int> read(const Values& values) {
  Reader reader{values[0] - 103};
  std::vector<int> bytes;
  for (std::size_t i = 1; i < values.size(); ++i)
    EXPECT_TRUE(reader.read(values[i], bytes)) << "value " << values[i];
  return bytes;
}

/// The fewest values that read as `bytes`, start character included: all ways, one value after the other.
int fewest_values(const std::vector<int>& bytes) {
  using Place = std::pair<std::size_t, Reader>;
  std::map<Place, int> length;
  std::queue<Place> open;
  for (int set = 0; set < 3; ++set) {
    length[{0, Reader{set}}] = 1;
    open.push({0, Reader{set}});
  }
  for (;; open.pop()) {
    const auto [at, reader] = open.front();
    if (at == bytes.size()) return length[open.front()];
    for (int value = 0; value < 103; ++value) {
      Reader next = reader;
      std::vector<int> read;
      if (!next.read(value, read) || at + read.size() > bytes.size()) continue;
      // What FNC4 means to set C is nowhere said: no symbol of ours goes there with it on.
      if (next.set == 2 && (next.upper || next.upper_once)) continue;
      if (!std::equal(read.begin(), read.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at))) continue;
      const Place place{at + read.size(), next};
      if (length.emplace(place, length[open.front()] + 1).second) open.push(place);
    }
  }
}

TEST(Code128, AutomaticSetsReadBackAndNoneAreShorter) {
  struct Alphabet {
    const char* name;
    std::string bytes;
    bool gs1 = false;
  };
  const std::vector<Alphabet> alphabets = {
      {"digits and capitals", "00112233456789AZ"},
      {"digits and small letters", "0123456789az`"},
      {"controls and all sets", std::string("0123456\0\x1F\x7F"
                                            "Aa z",
                                            14)},
      {"controls and small letters alternate",
       "\x01\x02"
       "ab"},
      {"Latin-1", "01ab\t\xE4\xF6\xFC\x81\xC4"},
      {"Latin-1, few digits",
       "1\x80\xFF\x9F"
       "A"},
      {"GS1 with separators", "0123456789AB\x1D", true},
  };
  std::mt19937 random(128);
  for (const Alphabet& alphabet : alphabets) {
    SCOPED_TRACE(alphabet.name);
    for (int round = 0; round < 60; ++round) {
      std::string data;
      std::vector<int> expected;
      if (alphabet.gs1) expected.push_back(kFnc1);
      for (std::size_t i = 0, length = 1 + random() % 14; i < length; ++i) {
        data += alphabet.bytes[random() % alphabet.bytes.size()];
      }
      if (alphabet.gs1) data = gs1::parse("1" + data, gs1::Checking::lenient)->plain;
      for (const char c : data) {
        const int byte = static_cast<unsigned char>(c);
        expected.push_back(alphabet.gs1 && byte == 0x1D ? kFnc1 : byte);
      }
      const auto symbol = encode(
          {.symbology = Symbology::code128, .gs1 = alphabet.gs1, .gs1_checking = gs1::Checking::lenient},
          data);
      ASSERT_TRUE(symbol);
      const Values values = values_of(as_text(symbol->bars));
      EXPECT_EQ(read(values), expected);
      EXPECT_EQ(static_cast<int>(values.size()), fewest_values(expected)) << testing::PrintToString(data);
    }
  }
}

TEST(Code128, AutomaticSetsAreTheUsualOnesWhereSeveralAreAsShort) {
  const std::vector<std::pair<const char*, Values>> cases = {
      {"12", {105, 12}},
      {"123", {104, 17, 18, 19}},
      {"12AB", {104, 17, 18, 33, 34}},
      {"A12345", {104, 33, 17, 99, 23, 45}},
      {"a\tb", {104, 65, 98, 73, 66}},
      {"\t\n", {103, 73, 74}},
      {"\xE4", {104, 100, 68}},
  };
  for (const auto& [data, values] : cases) {
    const auto symbol = encode({.symbology = Symbology::code128}, data);
    ASSERT_TRUE(symbol);
    EXPECT_EQ(values_of(as_text(symbol->bars)), values) << data;
  }
}

// FNC4 once is for one character, twice for all that follow: the text goes with both.
TEST(Code128, TextBeyondAsciiIsWhatWasEncoded) {
  for (const auto& [bytes, text] : std::initializer_list<std::pair<std::string_view, std::string_view>>{
           {"caf\xE9", "caf\xC3\xA9"},
           {"\xC4\xD6\xDC\xE4\xF6\xFC\xDF", "\xC3\x84\xC3\x96\xC3\x9C\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F"},
           {"\xE4\xF6\xFC\xDF\xE4"
            "A"
            "\xF6\xFC\xDF"
            "12345678",
            "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F\xC3\xA4"
            "A"
            "\xC3\xB6\xC3\xBC\xC3\x9F"
            "12345678"},
           {"ab\tcd", "ab cd"},
       }) {
    const auto symbol = encode({.symbology = Symbology::code128}, bytes);
    ASSERT_TRUE(symbol);
    EXPECT_EQ(symbol->text, text);
  }
}

TEST(Code128, TheLongestDataThatFitsIsDrawn) {
  const Options options{.symbology = Symbology::code128};
  EXPECT_EQ(encode(options, std::string(499, 'A'))->bars.size(), 501 * 11 + 13);
  EXPECT_FALSE(encode(options, std::string(500, 'A')));
  EXPECT_EQ(encode(options, std::string(512, '7'))->bars.size(), 258 * 11 + 13);
  // Every byte needs FNC4, a Shift and a character, or changes of set: the most values there can be.
  std::string worst;
  while (worst.size() < 512)
    worst +=
        "\x81"
        "a\xE1\x01";
  EXPECT_EQ(encode(options, worst).error().code, Code::bad_data);
}

}  // namespace
}  // namespace korvex::linear::test
