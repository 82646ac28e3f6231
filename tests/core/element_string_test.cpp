// Element strings in all their forms, and what the application identifiers say of their data.
#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "korvex/gs1.hpp"

namespace korvex::gs1 {
namespace {

/// With | for the separator, which the eye can see.
std::string visible(std::string text) {
  for (char& c : text) c = c == kSeparator ? '|' : c;
  return text;
}
/// The plain form, or the sentence on what is wrong.
std::string read(std::string_view text) {
  const Result<ElementString> result = parse(text);
  return result ? visible(result->plain) : result.error().message;
}

TEST(ElementString, ThreeFormsAreReadAlike) {
  const struct {
    std::string_view text;
    const char* plain;
  } cases[] = {
      {"(01)09501101530003(17)261231", "010950110153000317261231"},
      {"[01]09501101530003[17]261231", "010950110153000317261231"},
      {"010950110153000317261231", "010950110153000317261231"},
      // A separator where data of variable length go on, and nowhere else
      {"(10)AB-123(17)261231", "10AB-123|17261231"},
      {"(01)09501101530003(10)AB(21)42(3103)001750", "010950110153000310AB|2142|3103001750"},
      {"010950110153000310AB\x1D"
       "2142{GS}3103001750",
       "010950110153000310AB|2142|3103001750"},
      {"010950110153000310AB#2142#3103001750", "010950110153000310AB|2142|3103001750"},
      {"#0109501101530003{GS}17261231\x1D", "010950110153000317261231"},
      // One length, but not one that the first two digits tell
      {"(422)276(8005)001299(7003)2612312359(90)X", "422276|8005001299|70032612312359|90X"},
      {"(00)095011015300000010(414)9501101020917(20)01(90)X", "000950110153000000104149501101020917200190X"},
      // Brackets and hashes as data
      {"(10)A(B)C(7)", "10A(B)C(7)"},
      {"[10]A(21)B", "10A(21)B"},
      {"10A(21)B", "10A(21)B"},
      {"(8010)1234#5(21)A", "80101234#5|21A"},
      {"80101234#5\x1D"
       "21A#10B",
       "80101234#5|21A|10B"},
  };
  for (const auto& [text, plain] : cases) {
    EXPECT_EQ(read(text), plain) << text;
    const Result<std::string> once = element_string(text);
    EXPECT_TRUE(once && read(*once) == plain) << text;  // the plain form stands for itself
  }
}

TEST(ElementString, ElementsHaveTheirTitles) {
  const Result<ElementString> result = parse(
      "0109501101530003"
      "3105000017"
      "10AB{GS}99X");
  ASSERT_TRUE(result);
  std::string all;
  for (const Element& element : result->elements) {
    all.append(element.identifier).append("=").append(element.data).append(" ").append(element.title) += ';';
  }
  EXPECT_EQ(all, "01=09501101530003 GTIN;3105=000017 NET WEIGHT (kg);10=AB BATCH/LOT;99=X INTERNAL;");
  EXPECT_EQ(bracketed(result->elements), "(01)09501101530003(3105)000017(10)AB(99)X");
}

TEST(ElementString, FaultsAreNamed) {
  const struct {
    std::string_view text;
    const char* part;
  } cases[] = {
      {"", "The data is empty"},
      {"#", "The data is empty"},
      {"hello", "due at position 1 of the data; \"hell\" begins with none"},
      {"(hello)", "in brackets is due at position 1 of the data."},
      {"(1)09501101530003", "in brackets is due at position 1"},
      {"(05)1", "(05) at position 1 of the data is no application identifier."},
      {"(310)001750", "(310) at position 1"},
      {"(3106)001750", "(3106) at position 1"},
      {"(01)09501101530003[10]A", "takes exactly 14 digits; 19 given"},
      {"01095011015300034AB", "due at position 17 of the data; \"4AB\""},
      {"10AB\x1D\x1D"
       "21C",
       "due at position 6 of the data; \"\\x1D21C\" begins with none"},
      {"4", "due at position 1"},
      {"31(2001750", "due at position 1 of the data; \"31(2\""},
      {"310", "due at position 1"},
      {"(01)0950110153000", "(01) at position 1 of the data takes exactly 14 digits; 13 given."},
      {"17261231"
       "010950110153000",
       "(01) at position 9 of the data takes exactly 14 digits; 13 given."},
      {"1726\x1D"
       "1231",
       "(17) at position 1 of the data takes exactly 6 digits; 2 given."},
      {"(10)", "takes 1 to 20 characters; 0 given"},
      {"10ABC2112345678901234567", "takes 1 to 20 characters; 22 given"},  // a separator is missing
      {"(253)950110102091", "takes 13 digits and perhaps up to 17 characters; 12 given"},
      {"(17)26123A", "cannot hold the byte 'A' (0x41) at position 10; there it takes digits."},
      {"(10)A B", "byte ' ' (0x20) at position 6; there it takes letters, digits and !"},
      {"(10)A\xC3\xA4", "byte 0xC3 at position 6"},
      {"(01)09501101530004", "the check digit 4, which is wrong: these digits have the check digit 3."},
  };
  for (const auto& [text, part] : cases) {
    EXPECT_NE(read(text).find(part), std::string::npos) << text << ": " << read(text);
    const Result<ElementString> result = parse(text);
    EXPECT_TRUE(!result && result.error().code == Code::bad_data && result.error().message.size() <= 300);
  }
}

TEST(ElementString, DataAreWhatTheirIdentifierSays) {
  const struct {
    const char* identifier;
    std::vector<const char*> right;
    std::vector<const char*> wrong;
  } cases[] = {
      // Check digits, of the first component alone
      {"(402)", {"95011015300000010"}, {"95011015300000019"}},
      {"(253)", {"9501101020917", "9501101020917A1"}, {"9501101020918A1"}},
      {"(255)", {"9501101020917123"}, {"9501101020917A"}},
      {"(8003)", {"09501101530003", "09501101530003X1"}, {"19501101530000", "09501101530004X1", "12345"}},
      {"(8006)",
       {"095011015300030102", "095011015300030202"},
       {"095011015300030201", "095011015300030002", "095011015300030000", "095011015300040102"}},
      {"(8018)", {"950110153000000014"}, {"950110153000000019"}},
      // Check characters: DE89 3704 0044 0532 0130 00 is the example of ISO 13616
      {"(8007)",
       {"DE89370400440532013000", "GB82WEST12345698765432"},
       {"DE88370400440532013000", "de89370400440532013000", "DE8937040044053201300-",
        "D189370400440532013000", "DE89", "89"}},
      // the example of the General Specifications
      {"(8013)",
       {"1987654Ad4X4bL5ttr2310c2K"},
       {"1987654Ad4X4bL5ttr2310c2L", "1987654Bd4X4bL5ttr2310c2K", "A2", "2"}},
      {"(8004)", {"9501", "9501A-1"}, {"950", "950A1"}},
      // Dates
      {"(17)",
       {"260228", "240229", "000229", "260200", "991231"},
       {"260229", "261301", "260001", "260431", "261232", "260000"}},
      {"(7006)", {"260228"}, {"260200"}},
      {"(7007)", {"260101", "260101261231"}, {"260101261301", "2601012612", "261301260101"}},
      {"(7011)", {"260101", "2601012359"}, {"26010123", "2601012400", "2601012360"}},
      {"(7003)", {"2612312359"}, {"2612002359", "2612312459"}},
      {"(4324)", {"2612002359", "2612312359"}, {"2612312360"}},
      {"(8008)",
       {"26123123", "2612312359", "261231235959"},
       {"26123124", "261231235960", "261231235", "26123100600"}},
      {"(7250)", {"19960229", "20000229"}, {"19970229", "19000229", "19961301"}},
      {"(7251)", {"199602292359"}, {"199602292460"}},
      // Codes
      {"(422)", {"276"}, {"000", "275A", "277", "999"}},
      {"(423)", {"276", "276756", "276756040056250"}, {"27675", "276999", "276756040056250276"}},
      {"(421)", {"276X"}, {"277X", "276"}},
      {"(7030)", {"276X", "999X"}, {"998X"}},
      {"(4307)", {"DE"}, {"de", "XX", "D1"}},
      {"(3912)", {"9781"}, {"0001", "978"}},
      {"(3932)",
       {"0361"},
       {"277"
        "1"}},
      // Percent encoding, on which nothing is said of other identifiers
      {"(4300)", {"a%20b", "%C3%a4", "100%25"}, {"%", "a%2", "%G0", "%0G"}},
      {"(10)", {"100%"}, {}},
      // Characters
      {"(8010)", {"1234#-/A"}, {"1234a", "1234_", "123#"}},
      {"(8030)", {"aZ0-_", "aZ=="}, {"a=Z", "a+", "a/"}},
      {"(4330)", {"001250", "001250-"}, {"001250+", "-001250", "00125-"}},
      // Values
      {"(4309)", {"18000000003600000000"}, {"18000000010000000000", "00000000003600000001"}},
      {"(4321)", {"0", "1"}, {"2"}},
      {"(7241)", {"01", "10", "80", "99"}, {"00", "11", "79"}},
      {"(7252)", {"0", "1", "2", "9"}, {"3", "8"}},
      {"(7258)", {"1/2", "2/2"}, {"0/2", "3/2", "1-2", "1/0"}},
      {"(8001)",
       {"12345678901201", "12345678901211", "12345678901291"},
       {"12345678901221", "12345678901281"}},
      {"(8011)", {"0", "10"}, {"01"}},
  };
  for (const auto& [identifier, right, wrong] : cases) {
    for (const char* const data : right) {
      EXPECT_TRUE(parse(std::string(identifier) + data)) << read(std::string(identifier) + data);
    }
    for (const char* const data : wrong)
      EXPECT_FALSE(parse(std::string(identifier) + data)) << identifier << data;
  }
}

TEST(ElementString, LenientDrawsWhatItWarnsOf) {
  const struct {
    std::string_view text;
    const char* plain;
    std::size_t warnings;
  } cases[] = {
      {"hello", "hello", 1},
      {"(hello", "(hello", 1},
      {"", "", 1},
      {"(01)09501101530004(10)A B(21)C", "010950110153000410A B|21C", 2},
      {"(05)12(21)C", "0512|21C", 1},  // five digits or more could follow
      {"(18)12(21)C", "181221C", 1},   // no identifier, but its length is known
      {"010950110153000410A B#21C##X\x1D", "010950110153000410A B|21C||X|", 4},
      {"17261231#10A#", "1726123110A", 0},
  };
  for (const auto& [text, plain, warnings] : cases) {
    const Result<ElementString> result = parse(text, Checking::lenient);
    ASSERT_TRUE(result);
    EXPECT_EQ(visible(result->plain), plain) << text;
    EXPECT_EQ(result->warnings.size(), warnings) << text;
  }
}

}  // namespace
}  // namespace korvex::gs1
