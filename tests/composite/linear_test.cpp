// Texts of linear components: EAN/UPC numbers, GS1-128 symbol characters, bracketed identifiers, dialects.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "korvex/composite.hpp"

namespace korvex::composite {
namespace {

constexpr auto kKorvex32 = Dialect::korvex32;

TEST(CompositeLinear, UpcESuppressesTheZerosOfTheFirstRuleThatFits) {
  struct Row {
    const char* upca;  // twelve digits, a zero in front and no check digit
    const char* upce;  // number system, six digits, check digit; empty: cannot be suppressed
  };
  for (const Row& row : {
           Row{"001200000345", "01234505"},  // ends in 0, 1 or 2: the manufacturer's third digit
           Row{"001220000345", "01234523"},
           Row{"001230000045", "01234531"},  // two digits of the item
           Row{"001234000005", "01234543"},  // one
           Row{"001234500006", "01234565"},  // the item itself, 5 to 9
           Row{"001234500004", ""},
           Row{"001210000345", "01234514"},
           Row{"001200010345", ""},
           Row{"001234100015", ""},
       }) {
    const Result<Details> details = explain({.symbology = Symbology::upce}, row.upca);
    EXPECT_EQ(details ? details->linear_text : "", row.upce) << row.upca;
  }
}

TEST(CompositeLinear, Gs1128ChoosesCodeSetsAsItAlwaysDid) {
  using Values = std::vector<int>;
  const auto values = [](const std::string& text, Dialect dialect = Dialect::standard) {
    const Result<Details> details = explain({.symbology = Symbology::gs1_128, .dialect = dialect}, text);
    if (!details) return Values{};
    return Values(details->linear_values.begin(), details->linear_values.end() - 2);  // check character, stop
  };
  EXPECT_EQ(values("1234"), (Values{105, 102, 12, 34}));
  EXPECT_EQ(values("#1234"), (Values{105, 102, 12, 34}));  // FNC1 is there already
  EXPECT_EQ(values("12"), (Values{105, 102, 12}));
  EXPECT_EQ(values("123"), (Values{103, 102, 17, 18, 19}));  // an odd number: the end asks for code set A
  EXPECT_EQ(values("10AB"), (Values{103, 102, 17, 16, 33, 34}));
  EXPECT_EQ(values("10Ab"), (Values{104, 102, 17, 16, 33, 66}));  // the first that only A or B has: b
  EXPECT_EQ(values("10A1234#2"), (Values{103, 102, 17, 16, 33, 99, 12, 34, 102, 101, 18}));
  EXPECT_EQ(values("10A12345"), (Values{103, 102, 17, 16, 33, 17, 99, 23, 45}));
  EXPECT_EQ(values("1234a\x02z"), (Values{105, 102, 12, 34, 100, 65, 101, 66, 100, 90}));
  EXPECT_EQ(values("\x80\x82\x83\x84"), (Values{103, 102, 64, 97, 96, 101}));  // NUL, FNC2, FNC3, FNC4
  EXPECT_EQ(values("a\x84"), (Values{104, 102, 65, 100}));
  const std::string long_text = "10ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQR";  // 46 characters
  EXPECT_EQ(values(long_text, kKorvex32).size(), 43U);
  EXPECT_TRUE(values(long_text).empty());
}

TEST(CompositeLinear, TheLinkageCharacterTellsTheKindOf2dComponent) {
  const auto linkage = [](Symbology symbology, const std::string& text) {
    const Result<Details> details = explain({.symbology = symbology}, text + "|");
    return details ? details->linear_values.end()[-3] : -1;
  };
  EXPECT_EQ(linkage(Symbology::gs1_128, "10ABCDEFGH"), 100);  // in code set A, B, C
  EXPECT_EQ(linkage(Symbology::gs1_128, "10abcdefgh"), 99);
  EXPECT_EQ(linkage(Symbology::gs1_128, "0109501101530003"), 101);
  EXPECT_EQ(linkage(Symbology::gs1_128_cc_c, "10ABCDEFGH"), 99);
  EXPECT_EQ(linkage(Symbology::gs1_128_cc_c, "10abcdefgh"), 101);
  EXPECT_EQ(linkage(Symbology::gs1_128_cc_c, "0109501101530003"), 100);
}

TEST(CompositeLinear, BracketedIdentifiersAreVerifiedAndTakenApart) {
  using enum Symbology;
  struct Row {
    Symbology symbology;
    const char* data;
    const char* said;  // or part of the sentence
  };
  for (const Row& row : {
           Row{databar, "(01)09501101530003", "0109501101530003"},
           Row{databar, "(01)09501101530004",
               "check digit 4 of (01) is wrong: these digits have the check digit 3"},
           Row{databar, "(01)0950110153000", "(01) takes exactly 14 digits; \"0950110153000\" given"},
           Row{databar, "(01)09501101530003(10)A", "one item number"},
           Row{ean13, "(01)04006381333931", "4006381333931"},
           Row{ean13, "(01)14006381333938", "begin with 0; this one begins with 1"},
           Row{upca, "(01)00036000291452", "036000291452"},
           Row{ean8, "(01)00000096385074", "96385074"},
           Row{databar_expanded, "(01)09501101530003(17)261231(10)AB-123",
               "01095011015300031726123110AB-123"},
           Row{gs1_128, "(01)09501101530003(10)AB(21)7", "010950110153000310AB#217"},
           Row{gs1_128, "(10)A(1)B(21)7", "10A(1)B#217"},  // one digit is no identifier
           Row{gs1_128, "(10)A(21)", "(21) takes 1 to 20 characters; 0 given"},
           Row{gs1_128, "(10)A#B", "the character at position 6"},
           Row{gs1_128, "(310)001750",
               "(310) at position 1 of the linear component's text is no application identifier"},
           Row{gs1_128, "(17)26123", "(17) takes exactly 6 digits"},
           Row{ean13, "400638133393|x(10)", "4006381333931"},
           Row{ean13, "400638133393|(10)A(1", "4006381333931"},
           Row{ean13, "400638133393|(",
               "An application identifier of 2 to 4 digits in brackets is due at position 1 of the 2D"},
       }) {
    const Result<Details> details = explain({.symbology = row.symbology}, row.data);
    if (details) {
      EXPECT_EQ(details->linear_text, row.said) << row.data;
    } else {
      EXPECT_NE(details.error().message.find(row.said), std::string::npos) << details.error().message;
    }
  }
  const Result<Details> as_always = explain({.symbology = gs1_128, .dialect = kKorvex32}, "(10)A");
  EXPECT_EQ(as_always ? as_always->linear_text : "", "(10)A");
}

TEST(CompositeLinear, TheStandardRefusesWhatNoReaderGivesBack) {
  using enum Symbology;
  struct Row {
    Symbology symbology;
    const char* data;
    const char* sentence;
  };
  for (const Row& row : {
           Row{ean8, "12345678", "EAN-8 holds 7 digits"},
           Row{upce, "101200000345", "number system 0"},
           Row{upce, "011200000345", "number system 0"},
           Row{upca, "412345678901", "the first of which is no 0"},
           Row{databar_expanded, "0109501101530004", "check digit 4 at position 16"},
           Row{databar_expanded,
               "01900123456789083100000001"
               "17261331",
               "date at position 29"},
           Row{databar_expanded, "010950110153000310ABCDEF", "an even number is allowed, or 9 for one row"},
           Row{databar, "0950110153000|11261232", "date at position 3 of the 2D"},
           Row{gs1_128, "10ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQR", "more than 43 symbol characters"},
       }) {
    const Options options{.symbology = row.symbology, .segments_per_row = 3};
    const Result<Symbol> symbol = encode(options, row.data);
    EXPECT_NE((symbol ? "" : symbol.error().message).find(row.sentence), std::string::npos) << row.data;
    Options as_always = options;
    as_always.dialect = kKorvex32;
    EXPECT_TRUE(encode(as_always, row.data)) << row.data;
  }
}

}  // namespace
}  // namespace korvex::composite
