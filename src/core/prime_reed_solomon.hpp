// Reed-Solomon check codewords over prime fields, eight codewords and eight coefficients at a time.
#pragma once

#include <algorithm>
#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/prime_field.hpp"

namespace korvex {

/// Coefficients of (x - Root)(x - Root^2) ... with `Count` factors, from the power Count - 1 down to 0; the
/// leading 1 is left out.
///
/// The roots are a geometric series, so the product is a Gaussian binomial: each coefficient follows from the
/// one before. Multiplying 512 factors out is more than compilers are ready to do beforehand.
template <class Field, int Count>
constexpr std::array<typename Field::Element, Count> prime_generator_polynomial() {
  std::array<typename Field::Element, Count> coefficients{};
  typename Field::Element coefficient = 1;
  for (int i = 1; i <= Count; ++i) {
    const auto root = Field::power(i);
    const auto ratio = Field::multiply(Field::subtract(Field::power(Count - i + 1), 1),
                                       Field::inverse(Field::subtract(root, 1)));
    coefficient = Field::multiply(coefficient, Field::multiply(Field::subtract(0, root), ratio));
    coefficients[static_cast<std::size_t>(i - 1)] = coefficient;
  }
  return coefficients;
}

/// Check codewords for any of the listed counts: minus the remainder of data * x^count by the generator with
/// the roots Root^1 ... Root^count.
///
/// The division takes eight codewords a step. With `head` the codewords at its front, what a step adds to the
/// rest of the dividend is the sum over a of head[a] * (x^(count + 7 - a) mod generator): all eight rows of
/// remainders are known beforehand, so nothing but the step itself waits for the one before. Everything is in
/// 16-bit lanes, which compilers turn into vector instructions.
template <class Field, int... Counts>
class PrimeReedSolomon {
 public:
  using Element = typename Field::Element;

  /// Fills `check`, highest power first. Its size is one of `Counts`; data and check codewords together are
  /// fewer than the field's elements.
  static void check_codewords(std::span<const Element> data, std::span<Element> check) {
    [[maybe_unused]] const bool listed =
        ((check.size() == Counts ? (divide(data, check, kTable<Counts>), true) : false) || ...);
    assert(listed);
  }

 private:
  static constexpr std::size_t kLanes = 8;
  static constexpr unsigned kModulus = Field::kOrder;
  static constexpr unsigned kReciprocal = (1U << 16) / kModulus;

  using Lanes = std::array<std::uint16_t, kLanes>;

  /// Eight neighbouring coefficients of each row of remainders. With floor(coefficient * 2^16 / prime) known,
  /// a coefficient times t needs no division: t times that, without its low 16 bits, is the quotient or one
  /// less.
  struct Column {
    std::array<Lanes, kLanes> coefficients{};
    std::array<Lanes, kLanes> quotients{};
  };

  // A step leaves lanes below `kLaneBound`, not below the prime; its sums stay within 16 bits all the same.
  static constexpr unsigned kLaneBound = 2 * kModulus;
  static constexpr unsigned kProductBound = kModulus + (kModulus * kLaneBound >> 16) + 1;
  static constexpr unsigned kSumBound = kLaneBound + kLanes * kProductBound;
  static_assert(kSumBound < 1U << 16);
  static_assert(kSumBound * ((1U << 16) - kReciprocal * kModulus) / (1U << 16) + kModulus < kLaneBound,
                "the reciprocal is too coarse for one reduction a step");

  template <std::size_t Columns>
  static constexpr auto make_table(std::span<const Element> generator) {
    std::array<Column, Columns> table{};
    std::array<Element, Columns * kLanes> remainder{};  // of x^(count + 7 - row), from the highest power down
    for (std::size_t i = 0; i < generator.size(); ++i) remainder[i] = Field::subtract(0, generator[i]);
    for (std::size_t row = kLanes; row-- > 0;) {
      for (std::size_t i = 0; i < generator.size(); ++i) {
        Column& column = table[i / kLanes];
        column.coefficients[row][i % kLanes] = remainder[i];
        column.quotients[row][i % kLanes] = static_cast<std::uint16_t>((remainder[i] << 16) / kModulus);
      }
      const unsigned minus_top = Field::subtract(0, remainder[0]);
      for (std::size_t i = 0; i < generator.size(); ++i) {
        const unsigned shifted = i + 1 < generator.size() ? remainder[i + 1] : 0U;
        remainder[i] = static_cast<Element>((shifted + minus_top * generator[i]) % kModulus);
      }
    }
    return table;
  }
  template <int Count>
  static constexpr auto kTable =
      make_table<(Count + kLanes - 1) / kLanes>(prime_generator_polynomial<Field, Count>());

  /// Adds to the eight lanes at `rest` the products of `head` with one column of remainders.
  static void step(Element* rest, const Lanes& head, const Column& column) {
    Lanes sums;
    for (std::size_t lane = 0; lane < kLanes; ++lane) {
      std::uint16_t products = rest[lane];
      std::uint16_t quotients = 0;
      for (std::size_t row = 0; row < kLanes; ++row) {
        products = static_cast<std::uint16_t>(products + column.coefficients[row][lane] * head[row]);
        quotients = static_cast<std::uint16_t>(
            quotients + (std::uint32_t{column.quotients[row][lane]} * head[row] >> 16));
      }
      const auto sum = static_cast<std::uint16_t>(products - quotients * kModulus);
      sums[lane] = static_cast<std::uint16_t>(sum - (sum * kReciprocal >> 16) * kModulus);
    }
    std::ranges::copy(sums, rest);
  }

  static void divide(std::span<const Element> data, std::span<Element> check, std::span<const Column> table) {
    // Zeros in front make the data a whole number of steps. The dividend is divided in place: a step leaves
    // the codewords that it found and changes what follows them.
    alignas(16) std::array<Element, (Field::kOrder / kLanes + 3) * kLanes> dividend;
    const std::size_t head_end = (data.size() + kLanes - 1) / kLanes * kLanes;
    const std::size_t rest_end = head_end + table.size() * kLanes;
    assert(rest_end <= dividend.size());
    std::fill_n(dividend.data(), kLanes, Element{0});
    std::ranges::copy(data, dividend.data() + (head_end - data.size()));
    std::fill(dividend.data() + head_end, dividend.data() + rest_end, Element{0});

    for (std::size_t at = 0; at < head_end; at += kLanes) {
      Lanes head;
      std::copy_n(dividend.data() + at, kLanes, head.data());
      Element* rest = dividend.data() + at;
      for (const Column& column : table) step(rest += kLanes, head, column);
    }
    for (std::size_t i = 0; i < check.size(); ++i) {
      const unsigned remainder = dividend[head_end + i] % kModulus;
      check[i] = Field::subtract(0, static_cast<Element>(remainder));
    }
  }
};

}  // namespace korvex
