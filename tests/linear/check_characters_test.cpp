#include "linear/types.hpp"

#include <gtest/gtest.h>

#include <vector>

namespace korvex::linear {
namespace {

using enum CheckMethod;

using Values = std::vector<Value>;

TEST(CheckCharacters, SixMethodsGiveTheValuesWorkedOutByHand) {
  struct Case {
    const char* sum;  // as worked out
    CheckRule rule;   // enabled, method, modulus, weight, no-complement, ten, eleven
    Values values;
    int expected;
  };
  const std::vector<Case> cases = {
      {"3*5+4+3*3+2+3*1 = 33", {1, alternating, 10, 3}, {1, 2, 3, 4, 5}, 7},
      {"33, remainder itself", {1, alternating, 10, 3, 1}, {1, 2, 3, 4, 5}, 3},
      {"3*4+3+3*2+1 = 22, an even count", {1, alternating, 10, 3}, {1, 2, 3, 4}, 8},
      {"3*5+5 = 20, the 10 is a 0", {1, alternating, 10, 3}, {5, 5}, 0},
      {"20, the 10 is a 1", {1, alternating, 10, 3, 0, 1}, {5, 5}, 1},
      {"2*5+3*4+4*3+5*2+6*1 = 50 = 6 mod 11", {1, rising, 11, 2}, {1, 2, 3, 4, 5}, 5},
      {"50, remainder itself", {1, rising, 11, 2, 1}, {1, 2, 3, 4, 5}, 6},
      {"weights go on past the modulus: 2+3+...+13 = 90 = 2",
       {1, rising, 11, 2},
       {1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1, 1},
       9},
      {"2*6 = 12 = 1, the 10 is a 0", {1, rising, 11, 2, 0, 0, 1}, {6}, 0},
      {"12, the 10 is a 1", {1, rising, 11, 2, 0, 1, 0}, {6}, 1},
      {"2*5 = 10, remainder itself, the 10 is a 1", {1, rising, 11, 2, 1, 1, 0}, {5}, 1},
      {"0, the 11 is a 0", {1, rising, 11, 2, 0, 1, 0}, {0}, 0},
      {"0, the 11 is a 1", {1, rising, 11, 2, 0, 0, 1}, {0}, 1},
      {"1*5+2*4+3*3+1*2+2*1 = 26", {1, cyclic_right, 47, 3, 1}, {1, 2, 3, 4, 5}, 26},
      {"26, complement", {1, cyclic_right, 47, 3}, {1, 2, 3, 4, 5}, 21},
      {"0: the complement is the modulus", {1, cyclic_right, 47, 3}, {0}, 47},
      {"2*15 = 30", {1, constant, 43, 2, 1}, {1, 2, 3, 4, 5}, 30},
      {"30, complement", {1, constant, 43, 2}, {1, 2, 3, 4, 5}, 13},
      {"1*1+2*2+3*3+1*4+2*5 = 28 = 6 mod 11", {1, cyclic_left, 11, 3, 1}, {1, 2, 3, 4, 5}, 6},
      {"28, complement", {1, cyclic_left, 11, 3}, {1, 2, 3, 4, 5}, 5},
      {"1*1+1*2+2*3+3*4+4*5 = 41", {1, positional, 103, 103, 1}, {1, 2, 3, 4, 5}, 41},
      {"41, complement", {1, positional, 103, 103}, {1, 2, 3, 4, 5}, 62},
      {"104+33+2*66+3*17 = 320 = 11 mod 103, Code 128 of Ab1", kCode128CheckCharacter, {104, 33, 66, 17}, 11},
      {"1+2+...+20 + 1 = 211 = 23 mod 47, Code 93", kTypes[12].rules.first, Values(21, 1), 23},
      {"1+2+...+15 + 1 = 121 = 27 mod 47", kTypes[12].rules.second, Values(16, 1), 27},
      {"4006381333931", kGs1CheckDigit, {4, 0, 0, 6, 3, 8, 1, 3, 3, 3, 9, 3}, 1},
  };
  for (const Case& c : cases) EXPECT_EQ(check_character(c.rule, c.values), c.expected) << c.sum;
}

}  // namespace
}  // namespace korvex::linear
