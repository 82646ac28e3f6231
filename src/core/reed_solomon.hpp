// Reed-Solomon check codewords over binary fields, whole remainders at a time.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "core/galois_field.hpp"

namespace korvex {

/// Coefficients of (x - a^FirstRoot)(x - a^(FirstRoot + 1)) ... with `Count` factors, a the field's root,
/// from the power Count - 1 down to 0; the leading 1 is left out.
template <class Field, int FirstRoot, int Count>
constexpr std::array<typename Field::Element, Count> generator_polynomial() {
  std::array<typename Field::Element, Count> coefficients{};
  coefficients[Count - 1] = 1;
  for (int factor = 0; factor < Count; ++factor) {
    const auto root = Field::power(FirstRoot + factor);
    for (std::size_t i = 0; i < Count; ++i) {
      coefficients[i] = Field::multiply(coefficients[i], root);
      if (i + 1 < Count) coefficients[i] ^= coefficients[i + 1];
    }
  }
  return coefficients;
}

/// The remainder of data * x^Count by the generator, as it grows codeword by codeword: eight coefficients a
/// word, the highest power in the most significant byte of the first.
template <class Field, int FirstRoot, int Count>
class ReedSolomon {
 public:
  static constexpr int kCheckCodewords = Count;

  void add(typename Field::Element codeword) {
    const auto& product = kProducts[static_cast<std::size_t>(remainder_[0] >> 56) ^ codeword];
    for (std::size_t word = 0; word + 1 < kWords; ++word) {
      remainder_[word] = (remainder_[word] << 8 | remainder_[word + 1] >> 56) ^ product[word];
    }
    remainder_[kWords - 1] = remainder_[kWords - 1] << 8 ^ product[kWords - 1];
  }

  /// Check codeword `index`, 0 the highest power.
  [[nodiscard]] typename Field::Element check(int index) const {
    return static_cast<typename Field::Element>(remainder_[static_cast<std::size_t>(index / 8)] >>
                                                (56 - index % 8 * 8));
  }

 private:
  static constexpr std::size_t kWords = (Count + 7) / 8;
  using Words = std::array<std::uint64_t, kWords>;

  // The generator times each element: times the powers of two, and all others by their sums, which the
  // compiler is quick to work out.
  static constexpr std::array<Words, Field::kOrder> make_products() {
    constexpr auto generator = generator_polynomial<Field, FirstRoot, Count>();
    std::array<Words, Field::kOrder> products{};
    for (std::size_t factor = 1; factor < products.size(); ++factor) {
      const std::size_t rest = factor & (factor - 1);
      if (rest != 0) {
        for (std::size_t word = 0; word < kWords; ++word) {
          products[factor][word] = products[rest][word] ^ products[factor ^ rest][word];
        }
        continue;
      }
      for (std::size_t i = 0; i < Count; ++i) {
        products[factor][i / 8] |=
            std::uint64_t{Field::multiply(generator[i], static_cast<typename Field::Element>(factor))}
            << (56 - i % 8 * 8);
      }
    }
    return products;
  }
  static constexpr std::array<Words, Field::kOrder> kProducts = make_products();

  Words remainder_{};
};

/// Writes the `Count` check codewords of `data` to `check`, highest power first. Codewords are elements of
/// the field: in fields of fewer than 256 elements they must be below its order.
template <class Field, int FirstRoot, int Count>
void reed_solomon(std::span<const typename Field::Element> data,
                  std::span<typename Field::Element, Count> check) {
  ReedSolomon<Field, FirstRoot, Count> division;
  for (const auto codeword : data) division.add(codeword);
  for (int i = 0; i < Count; ++i) check[static_cast<std::size_t>(i)] = division.check(i);
}

}  // namespace korvex
