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
    const char* upca;  // eleven digits, no check digit
    const char* upce;  // number system, six digits, check digit; empty: cannot be suppressed
  };
  for (const Row& row : {
           Row{"01200000345", "01234505"},  // ends in 0, 1 or 2: the manufacturer's third digit
           Row{"01220000345", "01234523"},
           Row{"01230000045", "01234531"},  // two digits of the item
           Row{"01234000005", "01234543"},  // one
           Row{"01234500006", "01234565"},  // the item itself, 5 to 9
           Row{"01234500004", ""},
           Row{"01210000345", "01234514"},
           Row{"01200010345", ""},
           Row{"01234100015", ""},
       }) {
    const Result<Details> details = explain({.symbology = Symbology::upce}, row.upca);
    EXPECT_EQ(details ? details->linear_text : "", row.upce) << row.upca;
  }
}

TEST(CompositeLinear, Gs1128ChoosesCodeSetsAsItAlwaysDid) {
  using Values = std::vector<int>;
  const auto values = [](const std::string& text, Dialect dialect = Dialect::standard) {
    const Result<Details> details = explain(
        {.symbology = Symbology::gs1_128, .dialect = dialect, .gs1_checking = gs1::Checking::lenient}, text);
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

TEST(CompositeLinear, NumbersComeWithOrWithoutTheirCheckDigit) {
  using enum Symbology;
  struct Row {
    Symbology symbology;
    std::vector<const char*> numbers;
    const char* said;  // of the linear component, or part of the sentence
  };
  for (const Row& row : {
           Row{databar,
               {"0950110153000", "09501101530003", "0109501101530003", "(01)09501101530003",
                "[01]09501101530003"},
               "0109501101530003"},
           Row{databar_limited,
               {"1950110153000", "19501101530000", "(01)19501101530000"},
               "0119501101530000"},
           Row{databar,
               {"09501101530004", "0109501101530004", "(01)09501101530004"},
               "have the check digit 3."},
           Row{databar_limited, {"19501101530001"}, "have the check digit 0."},
           Row{databar, {"", "950110153000", "095011015300034"}, "takes 13 digits, 14 with the check digit"},
           Row{databar, {"(01)0950110153000"}, "takes exactly 14 digits; 13 given"},
           Row{databar, {"(01)09501101530003(10)A", "(02)09501101530003"}, "one item number, (01)"},
           Row{ean13, {"400638133393", "4006381333931", "(01)04006381333931"}, "4006381333931"},
           Row{ean13, {"4006381333932", "0104006381333932"}, "have the check digit 1."},
           Row{ean13, {"40063813339", "40063813339310"}, "takes 12 digits, 13 with the check digit"},
           Row{ean13, {"(01)14006381333938"}, "14 digits begin with 1 zero; 14006381333938 given"},
           Row{upca, {"03600029145", "036000291452", "(01)00036000291452"}, "036000291452"},
           Row{upca, {"036000291453"}, "have the check digit 2."},
           Row{upca, {"0036000291452"}, "takes 11 digits, 12 with the check digit"},
           Row{ean8, {"9638507", "96385074", "[01]00000096385074"}, "96385074"},
           Row{ean8, {"963850"}, "takes 7 digits, 8 with the check digit"},
           Row{ean8, {"(01)00000196385073"}, "14 digits begin with 6 zeros"},
           // the same item as UPC-E, with its number system and check digit, and as UPC-A
           Row{upce,
               {"425261", "0425261", "04252614", "04210000526", "042100005264", "(01)00042100005264"},
               "04252614"},
           Row{upce, {"123453"}, "01234531"},  // the zeros by the last digit: 0 12300 00045
           Row{upce, {"123454"}, "01234543"},  // 0 12340 00005
           Row{upce, {"123456"}, "01234565"},  // 0 12345 00006
           Row{upce, {"04252615", "042100005265"}, "have the check digit 4."},
           Row{upce, {"1425261"}, "begins with its number system 0; 1425261 given"},
           Row{upce, {"42526", "425261000"}, "takes 6 to 8 digits, or of the UPC-A number 11"},
       }) {
    for (const char* const number : row.numbers) {
      const Result<Details> details =
          explain({.symbology = row.symbology, .gs1_checking = gs1::Checking::lenient}, number);
      if (details) {
        EXPECT_EQ(details->linear_text, row.said) << number;
      } else {
        EXPECT_NE(details.error().message.find(row.said), std::string::npos) << details.error().message;
      }
    }
  }
}

TEST(CompositeLinear, ElementStringsAreCheckedInBothComponents) {
  using enum Symbology;
  struct Row {
    Symbology symbology;
    const char* data;
    const char* said;  // of the linear component, or part of the sentence
  };
  for (const Row& row : {
           Row{databar_expanded, "[01]09501101530003[17]261231[10]AB-123",
               "01095011015300031726123110AB-123"},
           Row{databar_expanded, "(01)09501101530003(8010)1234#5", "no '#' (0x23) for the data of (8010)"},
           Row{gs1_128, "(01)09501101530003(10)AB(21)7", "010950110153000310AB#217"},
           Row{gs1_128, "10AB#217", "10AB#217"},
           Row{gs1_128, "(8010)1234#5", "80101234#5"},
           Row{gs1_128, "(17)269999", "(17) at position 1 of the data has the date"},
           Row{gs1_128, "hello|(10)A", "is due at position 1 of the linear component's text"},
           Row{ean13, "400638133393|", "4006381333931"},
           Row{ean13, "400638133393|10A#21B", "4006381333931"},
           Row{ean13, "400638133393|(10)A(21)",
               "(21) at position 6 of the 2D component's text takes 1 to 20"},
       }) {
    const Result<Details> details = explain({.symbology = row.symbology}, row.data);
    if (details) {
      EXPECT_EQ(details->linear_text, row.said) << row.data;
    } else {
      EXPECT_NE(details.error().message.find(row.said), std::string::npos) << details.error().message;
    }
  }
  EXPECT_FALSE(encode({.symbology = gs1_128}, std::string("(10)A\0(21)B", 11)));
  EXPECT_FALSE(
      encode({.symbology = gs1_128, .gs1_checking = gs1::Checking::lenient}, std::string("(10)A\0", 6)));

  const Options lenient{.symbology = gs1_128, .gs1_checking = gs1::Checking::lenient};
  const Result<Details> details = explain(lenient, "(01)09501101530004(10)A(21)B|(10)a b(12)x");
  ASSERT_TRUE(details);
  EXPECT_EQ(details->linear_text, "010950110153000410A#21B");
  EXPECT_EQ(details->warnings.size(), 3U);
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
           Row{ean8, "963850", "takes 7 digits"},
           Row{upce, "10120000034", "number system 0"},
           Row{databar_expanded, "0109501101530004", "check digit 4 at position 16"},
           Row{databar_expanded,
               "01900123456789083100000001"
               "17261331",
               "date at position 29"},
           Row{databar_expanded, "010950110153000310ABCDEF", "an even number is allowed, or 9 for one row"},
           Row{databar, "0950110153000|11261232", "date at position 3 of the 2D"},
           Row{gs1_128, "10ABCDEFGHIJKLMNOPQRSTUVWXYZABCDEFGHIJKLMNOPQR", "more than 43 symbol characters"},
       }) {
    const Options options{
        .symbology = row.symbology, .segments_per_row = 3, .gs1_checking = gs1::Checking::lenient};
    const Result<Symbol> symbol = encode(options, row.data);
    EXPECT_NE((symbol ? "" : symbol.error().message).find(row.sentence), std::string::npos) << row.data;
    Options as_always = options;
    as_always.dialect = kKorvex32;
    EXPECT_TRUE(encode(as_always, row.data)) << row.data;
  }
}

}  // namespace
}  // namespace korvex::composite
