// The check digit of GS1 numbers (GS1 General Specifications, section 7.9).
#pragma once

namespace korvex {

/// The check digit of a range of digits, '0' to '9', the last of which has the weight 3; 0 to 9.
constexpr int check_digit(const auto& digits) {
  int sum = 0;
  int weight = digits.size() % 2 == 0 ? 1 : 3;
  for (const auto digit : digits) {
    sum += (digit - '0') * weight;
    weight = 4 - weight;
  }
  return (10 - sum % 10) % 10;
}

}  // namespace korvex
