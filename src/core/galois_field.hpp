// Finite fields, made from their defining number at compile time.
#pragma once

#include <array>
#include <bit>
#include <cstdint>

namespace korvex {

/// A field of 2^m elements, m at most 8: polynomials over GF(2) modulo `Polynomial`, which has degree m and
/// the primitive root x. An element's bits are the coefficients, the highest power first.
template <unsigned Polynomial>
struct BinaryField {
  using Element = std::uint8_t;
  static constexpr int kBits = std::bit_width(Polynomial) - 1;
  static constexpr int kOrder = 1 << kBits;
  static_assert(kBits >= 2 && kBits <= 8);

  /// x to the power of `exponent`, which is at least 0.
  static constexpr Element power(int exponent) {
    return kTables.power[static_cast<std::size_t>(exponent % (kOrder - 1))];
  }
  static constexpr Element multiply(Element a, Element b) {
    if (a == 0 || b == 0) return 0;
    return power(kTables.logarithm[a] + kTables.logarithm[b]);
  }

 private:
  struct Tables {
    std::array<Element, kOrder - 1> power{};
    std::array<std::uint8_t, kOrder> logarithm{};  // that of 0 is never asked for
    bool primitive = true;
  };
  static constexpr Tables make_tables() {
    Tables tables;
    unsigned value = 1;
    for (int exponent = 0; exponent < kOrder - 1; ++exponent) {
      if (exponent > 0 && value == 1) tables.primitive = false;
      tables.power[static_cast<std::size_t>(exponent)] = static_cast<Element>(value);
      tables.logarithm[value] = static_cast<std::uint8_t>(exponent);
      value <<= 1;
      if ((value & kOrder) != 0) value ^= Polynomial;
    }
    return tables;
  }
  static constexpr Tables kTables = make_tables();
  static_assert(kTables.primitive, "x must run through every element but 0");
};

}  // namespace korvex
