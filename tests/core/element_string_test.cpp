// Bracketed application identifiers become the data that GS1 symbols carry.
#include <gtest/gtest.h>

#include <string>

#include "korvex/gs1.hpp"

namespace korvex {
namespace {

TEST(ElementString, SeparatorsStandBehindFieldsOfVariableLength) {
  const struct {
    const char* bracketed;
    const char* plain;
  } cases[] = {
      {"(01)09501101530003(17)261231", "010950110153000317261231"},
      {"(10)AB-123(17)261231",
       "10AB-123\x1D"
       "17261231"},
      {"(01)09501101530003(10)AB(21)42(3103)001750",
       "010950110153000310AB\x1D"
       "2142\x1D"
       "3103001750"},
      {"(10)A(B)C(7)", "10A(B)C(7)"},  // other brackets are data
      {"(00)095011015300000010(414)9501101020917", "000950110153000000104149501101020917"},
  };
  for (const auto& [bracketed, plain] : cases) {
    const Result<std::string> result = gs1::element_string(bracketed);
    EXPECT_TRUE(result && *result == plain) << bracketed;
  }
}

TEST(ElementString, FaultsAreNamed) {
  const struct {
    const char* bracketed;
    const char* part;
  } cases[] = {
      {"(01)09501101530004", "check digit 4 of (01) is wrong: these digits have the check digit 3"},
      {"(01)0950110153000", "(01) takes exactly 14 digits"},
      {"(17)26123A", "(17) takes exactly 6 digits"},
      {"(10)123456789012345678901", "(10) takes 1 to 20 characters; 21 given"},
      {"(10)", "(10) takes 1 to 20 characters; 0 given"},
      {"(10)A\x1D", "(10) cannot hold the character at position 6"},
      {"(10)A#", "position 6"},
      {"(05)1", "(05) at position 1 of the data is no application identifier"},
      {"(310)001750", "(310) at position 1 of the data is no application identifier"},
      {"10AB", "application identifier of 2 to 4 digits in brackets is due at position 1"},
  };
  for (const auto& [bracketed, part] : cases) {
    const Result<std::string> result = gs1::element_string(bracketed);
    ASSERT_FALSE(result) << bracketed;
    EXPECT_EQ(result.error().code, Code::bad_data);
    EXPECT_NE(result.error().message.find(part), std::string::npos) << result.error().message;
  }
}

}  // namespace
}  // namespace korvex
