#include "core/reed_solomon.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <vector>

#include "core/bit_writer.hpp"

namespace korvex {
namespace {

using QrField = BinaryField<0x11D>;

TEST(ReedSolomon, MatchesTheWorkedExampleOfIso18004ForVersion1M) {  // the digits 01234567
  const std::vector<std::uint8_t> data = {0x10, 0x20, 0x0C, 0x56, 0x61, 0x80, 0xEC, 0x11,
                                          0xEC, 0x11, 0xEC, 0x11, 0xEC, 0x11, 0xEC, 0x11};
  std::array<std::uint8_t, 10> check{};
  reed_solomon<QrField, 0, 10>(data, check);
  EXPECT_EQ(check,
            (std::array<std::uint8_t, 10>{0xA5, 0x24, 0xD4, 0xC1, 0xED, 0x36, 0xC7, 0x87, 0x2C, 0x55}));
}

/// Value of the polynomial with the given coefficients, highest power first, at `place`, with a
/// multiplication of its own.
template <unsigned Polynomial>
unsigned evaluate(const std::vector<std::uint8_t>& coefficients, unsigned place) {
  const auto multiply = [](unsigned a, unsigned b) {
    unsigned product = 0;
    for (; b != 0; b >>= 1, a <<= 1) {
      if ((a & BinaryField<Polynomial>::kOrder) != 0) a ^= Polynomial;
      if ((b & 1) != 0) product ^= a;
    }
    return product;
  };
  unsigned value = 0;
  for (const auto coefficient : coefficients) value = multiply(value, place) ^ coefficient;
  return value;
}

/// Data and check codewords together are zero at every root, whatever the data: that is what a reader tests.
template <unsigned Polynomial, int FirstRoot, int Count>
void expect_zero_syndromes() {
  using Field = BinaryField<Polynomial>;
  std::mt19937 random(20);
  for (int length = 0; length + Count < Field::kOrder; length += 3) {
    std::vector<std::uint8_t> codewords(static_cast<std::size_t>(length));
    for (auto& codeword : codewords) codeword = static_cast<std::uint8_t>(random() % Field::kOrder);
    std::array<std::uint8_t, Count> check{};
    reed_solomon<Field, FirstRoot, Count>(codewords, check);
    codewords.insert(codewords.end(), check.begin(), check.end());
    unsigned root = 1;
    for (int i = 0; i < FirstRoot + Count; ++i) {
      if (i >= FirstRoot) {
        EXPECT_EQ(evaluate<Polynomial>(codewords, root), 0U) << length << " data codewords, root " << i;
      }
      root <<= 1;
      if ((root & Field::kOrder) != 0) root ^= Polynomial;
    }
  }
}

TEST(ReedSolomon, CodewordsVanishAtEveryRootOfTheGenerator) {
  expect_zero_syndromes<0x11D, 0, 7>();
  expect_zero_syndromes<0x11D, 0, 30>();
  expect_zero_syndromes<0x12D, 1, 8>();
  expect_zero_syndromes<0x12D, 1, 68>();
  expect_zero_syndromes<0x43, 1, 20>();
  expect_zero_syndromes<0x13, 1, 7>();
}

TEST(BitWriter, AppendsFieldsAcrossBytesAndFillsTheLastOne) {
  std::array<std::uint8_t, 6> bytes{};
  BitWriter bits(bytes);
  bits.put(0b101, 3);
  bits.put(0, 0);
  bits.put(0xFFFF0001, 32);
  bits.put(1, 1);
  EXPECT_EQ(bits.size_bits(), 36);
  bits.flush();
  bits.flush();
  EXPECT_EQ(bytes, (std::array<std::uint8_t, 6>{0b10111111, 0xFF, 0b11100000, 0, 0b00110000, 0}));
}

}  // namespace
}  // namespace korvex
