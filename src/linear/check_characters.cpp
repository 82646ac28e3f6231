#include "linear/check_characters.hpp"

#include <cstddef>

namespace korvex::linear {
namespace {

int alternating_sum(std::span<const Value> values, int weight) {
  int weighted = 0;
  int plain = 0;
  std::size_t i = values.size();
  for (; i >= 2; i -= 2) {
    weighted += values[i - 1];
    plain += values[i - 2];
  }
  if (i == 1) weighted += values[0];
  return weight * weighted + plain;
}

int rising_sum(std::span<const Value> values, int weight) {
  int sum = 0;
  for (std::size_t i = values.size(); i-- > 0;) sum += values[i] * weight++;
  return sum;
}

/// Weights 1, 2 ... last, 1, 2 ... along the iterator's way.
template <class Iterator>
int cyclic_sum(Iterator begin, Iterator end, int last) {
  int sum = 0;
  int weight = 1;
  for (; begin != end; ++begin) {
    sum += *begin * weight;
    weight = weight == last ? 1 : weight + 1;
  }
  return sum;
}

int constant_sum(std::span<const Value> values, int weight) {
  int sum = 0;
  for (const int value : values) sum += value;
  return weight * sum;
}

int positional_sum(std::span<const Value> values) {
  int sum = values.empty() ? 0 : values[0];
  for (std::size_t i = 1; i < values.size(); ++i) sum += values[i] * static_cast<int>(i);
  return sum;
}

int weighted_sum(const CheckRule& rule, std::span<const Value> values) {
  switch (rule.method) {
    case CheckMethod::alternating:
      return alternating_sum(values, rule.weight);
    case CheckMethod::rising:
      return rising_sum(values, rule.weight);
    case CheckMethod::cyclic_right:
      return cyclic_sum(values.rbegin(), values.rend(), rule.weight);
    case CheckMethod::constant:
      return constant_sum(values, rule.weight);
    case CheckMethod::cyclic_left:
      return cyclic_sum(values.begin(), values.end(), rule.weight);
    case CheckMethod::positional:
      return positional_sum(values);
    case CheckMethod::none:
      break;
  }
  return 0;
}

}  // namespace

int check_character(const CheckRule& rule, std::span<const Value> values) {
  const int remainder = weighted_sum(rule, values) % rule.modulus;
  const int result = rule.no_complement != 0 ? remainder : rule.modulus - remainder;
  const int ten = rule.ten_substitute != 0 ? 1 : 0;
  const int eleven = rule.eleven_substitute != 0 ? 1 : 0;
  switch (rule.method) {
    case CheckMethod::alternating:
      return rule.no_complement == 0 && result == 10 ? ten : result;
    case CheckMethod::rising:
      return result == 10 ? ten : result == 11 ? eleven : result;
    default:
      return result;
  }
}

}  // namespace korvex::linear
