// 2D components, read back from the modules of whole symbols.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>

#include "composite/reader.hpp"
#include "korvex/composite.hpp"

namespace korvex::composite::test {
namespace {

struct Carrier {
  Symbology symbology;
  int columns;
  std::string linear;
  int longest_text;  // that the random texts may have
};

/// A linear component for each kind of 2D component; CC-C of 26 columns at most.
const Carrier kCarriers[] = {
    {Symbology::databar_stacked, 2, "0950110153000", 110},
    {Symbology::databar_limited, 3, "0950110153000", 260},
    {Symbology::databar_truncated, 4, "0950110153000", 400},
    {Symbology::gs1_128_cc_c, 0, "10ABCDEFGHIJKLMNOPQRST#21abcdefghijklmno", 1500},
};

/// Random texts break rules of GS1.
Result<Symbol> encode_with(const Carrier& carrier, const std::string& text) {
  return encode({.symbology = carrier.symbology, .gs1_checking = gs1::Checking::lenient},
                carrier.linear + "|" + text);
}

/// What the reader makes of it, or why it cannot.
std::string read_back(const Symbol& symbol) {
  try {
    return read_component(symbol).text;
  } catch (const std::exception& fault) {
    return std::string("FAULT: ") + fault.what();
  }
}

class Random {
 public:
  explicit Random(unsigned seed) : engine_(seed) {}
  int below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }
  std::string of(const std::string& characters, int count) {
    std::string text;
    for (; count > 0; --count)
      text += characters[static_cast<std::size_t>(below(static_cast<int>(characters.size())))];
    return text;
  }
  /// Runs of characters of one set: the schemes change at their ends.
  std::string runs(int length) {
    static const std::string kSets[] = {"0123456789", "0123456789",        "ABCXYZ*,-./",
                                        "abcxyz",     "!\"%&'()+:;<=>?_ ", "#"};
    std::string text;
    while (static_cast<int>(text.size()) < length) {
      const std::string& set = kSets[below(6)];
      text += of(set, set == "#" ? 1 : 1 + below(12));
    }
    text.resize(static_cast<std::size_t>(length), '7');
    if (!text.empty() && text.back() == '#') text.back() = 'e';  // readers drop FNC1 at the end
    return text;
  }
  std::string date() {
    const auto number = [this](int first, int count) {
      return std::to_string(100 + first + below(count)).substr(1);
    };
    return (below(2) == 0 ? "11" : "17") + number(0, 100) + number(1, 12) + number(0, 32);
  }

 private:
  std::mt19937 engine_;
};

const std::string kDigits = "0123456789";
const std::string kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";

std::string some_text(Random& random, int length) {
  switch (random.below(7)) {
    case 0:
      return random.date() + (length > 0 ? "10" + random.of("0123456789ABC", length) : "");
    case 1: {  // another AI after the date, so FNC1 is encoded
      const std::string next = random.runs(length);
      return random.date() + (next.starts_with("10") || next.starts_with("#") ? "21" : "") + next;
    }
    case 2:
    case 3: {  // AI 90, with each AI that may be implied after it
      static const std::string kNext[] = {"", "#21", "#8004", "#2", "#800", "#10"};
      const std::string number = random.below(2) == 0 ? "" : std::to_string(1 + random.below(999));
      const std::string sets[] = {kDigits,           kLetters, kLetters + kDigits,
                                  "ABC0123456789-/", "ab1",    kLetters + "0"};
      const std::string& next = kNext[random.below(6)];
      const std::string data = random.of(sets[random.below(6)], length / 2);
      return "90" + number + random.of(kLetters, 1) + data + next +
             (next.empty() ? "" : random.runs(1 + length / 2));
    }
    case 4:
      return std::string(1, '3') + random.of(kDigits, length);  // not a date
    default:
      return "21" + random.runs(length);
  }
}

TEST(CompositeComponent, EveryMethodSchemeAndSizeReadsBack) {
  Random random(2026);
  std::map<int, std::set<int>> rows_met;
  for (int i = 0; i < 6000; ++i) {
    const Carrier& carrier = kCarriers[i % 4];
    const std::string text = some_text(random, random.below(1 + random.below(carrier.longest_text)));
    const Result<Symbol> symbol = encode_with(carrier, text);
    if (!symbol) {
      const bool hash_in_data = text.find("#8010") != std::string::npos;  // of which # is no separator
      const char* const part = hash_in_data ? "no '#'" : "too long";
      EXPECT_NE(symbol.error().message.find(part), std::string::npos) << text;
      continue;
    }
    rows_met[carrier.columns].insert(symbol->component_rows);
    ASSERT_EQ(read_back(*symbol), text) << i;
  }
  EXPECT_EQ(rows_met[2], (std::set{5, 6, 7, 8, 9, 10, 12, 17, 20, 23, 26}));
  EXPECT_EQ(rows_met[3], (std::set{4, 5, 6, 7, 8, 15, 20, 26, 32, 38, 44}));
  EXPECT_EQ(rows_met[4], (std::set{3, 4, 5, 6, 7, 10, 12, 15, 20, 26, 32, 38, 44}));
  EXPECT_GT(rows_met[0].size(), 20U);
}

TEST(CompositeComponent, AnEmptyTextGivesTheSmallestSize) {
  const int rows[] = {5, 4, 3, 3};
  for (int i = 0; i < 4; ++i) {
    const Result<Symbol> symbol = encode_with(kCarriers[i], "");
    ASSERT_TRUE(symbol);
    EXPECT_EQ(symbol->component_rows, rows[i]);
    EXPECT_EQ(read_back(*symbol), "");
  }
}

TEST(CompositeComponent, ASizeIsFilledToItsLastBit) {
  // One bit says that the method is general; two digits are 7 bits, one more is 4 if that fills the size.
  const auto rows = [](const Carrier& carrier, int digits) {
    const Result<Symbol> symbol = encode_with(carrier, std::string(static_cast<std::size_t>(digits), '5'));
    if (!symbol) return -1;
    EXPECT_EQ(read_back(*symbol), std::string(static_cast<std::size_t>(digits), '5'));
    return symbol->component_rows;
  };
  EXPECT_EQ(rows(kCarriers[0], 16), 5);  // 57 of 59 bits
  EXPECT_EQ(rows(kCarriers[0], 17), 6);
  EXPECT_EQ(rows(kCarriers[2], 22), 3);  // all 78
  EXPECT_EQ(rows(kCarriers[2], 23), 4);
  EXPECT_EQ(rows(kCarriers[2], 338), 44);  // all 1184
  EXPECT_EQ(rows(kCarriers[2], 339), -1);
  const Carrier sixteen_columns{Symbology::gs1_128_cc_c, 16, "10ABCDEFGHIJKLMNOPQRSTUVW", 0};
  EXPECT_EQ(rows(sixteen_columns, 2360), 58);  // 8261 of 8264, 928 codewords
  EXPECT_EQ(rows(sixteen_columns, 2361), -1);
}

TEST(CompositeComponent, CcCIsAsWideAsItsLinearComponentOrLessFlat) {
  for (const char* const linear : {"1", "0109501101530003", "10ABCDEFGHIJKLMNOPQRST#21abcdefghijklmno"}) {
    int last_rows = 0;
    for (int length = 1; length < 600; length += 7) {
      const Result<Symbol> symbol = encode_with({Symbology::gs1_128_cc_c, 0, linear, 0},
                                                std::string(static_cast<std::size_t>(length), 'x'));
      if (!symbol) break;
      EXPECT_GE(4 * symbol->component_rows, symbol->component_columns + 4);
      EXPECT_LE(17 * (symbol->component_columns + 4) + 6, symbol->modules.columns());
      EXPECT_GE(symbol->component_rows, last_rows == 90 ? 90 : 3);
      last_rows = symbol->component_rows;
      EXPECT_EQ(read_back(*symbol), std::string(static_cast<std::size_t>(length), 'x'));
    }
    EXPECT_EQ(std::string_view(linear) == "1", last_rows == 0);  // too narrow for one column
  }
}

}  // namespace
}  // namespace korvex::composite::test
