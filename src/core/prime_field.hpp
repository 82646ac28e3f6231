// Fields of integers modulo a prime, made from the prime and a primitive root at compile time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvex {

/// The integers modulo the prime `Modulus`, whose powers of `Root` run through every element but 0.
template <unsigned Modulus, unsigned Root>
struct PrimeField {
  using Element = std::uint16_t;
  static constexpr int kOrder = Modulus;
  static_assert(Modulus > 2 && Modulus < 1U << 15);

  /// `Root` to the power of `exponent`, which is at least 0.
  static constexpr Element power(int exponent) {
    return kPowers[static_cast<std::size_t>(exponent % (kOrder - 1))];
  }
  static constexpr Element multiply(Element a, Element b) {
    return static_cast<Element>(unsigned{a} * b % Modulus);
  }
  static constexpr Element subtract(Element a, Element b) {
    return static_cast<Element>(a < b ? a + Modulus - b : unsigned{a} - b);
  }
  /// 1 / a; `a` is not 0.
  static constexpr Element inverse(Element a) {
    Element result = 1;  // a to the power of the order minus 2
    for (unsigned exponent = Modulus - 2; exponent > 0; exponent /= 2) {
      if (exponent % 2 != 0) result = multiply(result, a);
      a = multiply(a, a);
    }
    return result;
  }

 private:
  static constexpr auto kPowers = [] {
    std::array<Element, kOrder - 1> powers{};
    unsigned value = 1;
    for (Element& power : powers) {
      power = static_cast<Element>(value);
      value = value * Root % Modulus;
    }
    return powers;
  }();
  static constexpr bool kPrimitive = [] {
    for (std::size_t exponent = 1; exponent < kPowers.size(); ++exponent) {
      if (kPowers[exponent] == 1) return false;
    }
    return true;
  }();
  static_assert(kPrimitive, "the root must run through every element but 0");
};

/// ISO/IEC 15438: PDF417, MicroPDF417 and the two-dimensional components of composite symbols.
using Gf929 = PrimeField<929, 3>;

}  // namespace korvex
