#include "qr/des.hpp"

#include <bit>

namespace korvex::qr {
namespace {

// Tables of FIPS 46-3. Bits count from 1, the most significant; entry k of a permutation names the input bit
// that becomes output bit k + 1.
// clang-format off

// IP: initial permutation.
constexpr std::array<std::uint8_t, 64> kInitialPermutation = {
    58, 50, 42, 34, 26, 18, 10,  2,
    60, 52, 44, 36, 28, 20, 12,  4,
    62, 54, 46, 38, 30, 22, 14,  6,
    64, 56, 48, 40, 32, 24, 16,  8,
    57, 49, 41, 33, 25, 17,  9,  1,
    59, 51, 43, 35, 27, 19, 11,  3,
    61, 53, 45, 37, 29, 21, 13,  5,
    63, 55, 47, 39, 31, 23, 15,  7,
};

// IP^-1: what undoes it at the end.
constexpr std::array<std::uint8_t, 64> kFinalPermutation = {
    40,  8, 48, 16, 56, 24, 64, 32,
    39,  7, 47, 15, 55, 23, 63, 31,
    38,  6, 46, 14, 54, 22, 62, 30,
    37,  5, 45, 13, 53, 21, 61, 29,
    36,  4, 44, 12, 52, 20, 60, 28,
    35,  3, 43, 11, 51, 19, 59, 27,
    34,  2, 42, 10, 50, 18, 58, 26,
    33,  1, 41,  9, 49, 17, 57, 25,
};

// P: permutes the substituted bits of a round.
constexpr std::array<std::uint8_t, 32> kRoundPermutation = {
    16,  7, 20, 21, 29, 12, 28, 17,
     1, 15, 23, 26,  5, 18, 31, 10,
     2,  8, 24, 14, 32, 27,  3,  9,
    19, 13, 30,  6, 22, 11,  4, 25,
};

// PC-1 and PC-2: permuted choices of the key schedule.
constexpr std::array<std::uint8_t, 56> kPermutedChoice1 = {
    57, 49, 41, 33, 25, 17,  9,
     1, 58, 50, 42, 34, 26, 18,
    10,  2, 59, 51, 43, 35, 27,
    19, 11,  3, 60, 52, 44, 36,
    63, 55, 47, 39, 31, 23, 15,
     7, 62, 54, 46, 38, 30, 22,
    14,  6, 61, 53, 45, 37, 29,
    21, 13,  5, 28, 20, 12,  4,
};
constexpr std::array<std::uint8_t, 48> kPermutedChoice2 = {
    14, 17, 11, 24,  1,  5,
     3, 28, 15,  6, 21, 10,
    23, 19, 12,  4, 26,  8,
    16,  7, 27, 20, 13,  2,
    41, 52, 31, 37, 47, 55,
    30, 40, 51, 45, 33, 48,
    44, 49, 39, 56, 34, 53,
    46, 42, 50, 36, 29, 32,
};

// Left rotations of the key halves before each round.
constexpr std::array<std::uint8_t, 16> kRotations = {
     1,  1,  2,  2,  2,  2,  2,  2,  1,  2,  2,  2,  2,  2,  2,  1,
};

// S1 to S8: rows by the outer two of the six input bits, columns by the inner four.
constexpr std::array<std::array<std::uint8_t, 64>, 8> kSubstitutions = {{
    {
        14,  4, 13,  1,  2, 15, 11,  8,  3, 10,  6, 12,  5,  9,  0,  7,
         0, 15,  7,  4, 14,  2, 13,  1, 10,  6, 12, 11,  9,  5,  3,  8,
         4,  1, 14,  8, 13,  6,  2, 11, 15, 12,  9,  7,  3, 10,  5,  0,
        15, 12,  8,  2,  4,  9,  1,  7,  5, 11,  3, 14, 10,  0,  6, 13,
    },
    {
        15,  1,  8, 14,  6, 11,  3,  4,  9,  7,  2, 13, 12,  0,  5, 10,
         3, 13,  4,  7, 15,  2,  8, 14, 12,  0,  1, 10,  6,  9, 11,  5,
         0, 14,  7, 11, 10,  4, 13,  1,  5,  8, 12,  6,  9,  3,  2, 15,
        13,  8, 10,  1,  3, 15,  4,  2, 11,  6,  7, 12,  0,  5, 14,  9,
    },
    {
        10,  0,  9, 14,  6,  3, 15,  5,  1, 13, 12,  7, 11,  4,  2,  8,
        13,  7,  0,  9,  3,  4,  6, 10,  2,  8,  5, 14, 12, 11, 15,  1,
        13,  6,  4,  9,  8, 15,  3,  0, 11,  1,  2, 12,  5, 10, 14,  7,
         1, 10, 13,  0,  6,  9,  8,  7,  4, 15, 14,  3, 11,  5,  2, 12,
    },
    {
         7, 13, 14,  3,  0,  6,  9, 10,  1,  2,  8,  5, 11, 12,  4, 15,
        13,  8, 11,  5,  6, 15,  0,  3,  4,  7,  2, 12,  1, 10, 14,  9,
        10,  6,  9,  0, 12, 11,  7, 13, 15,  1,  3, 14,  5,  2,  8,  4,
         3, 15,  0,  6, 10,  1, 13,  8,  9,  4,  5, 11, 12,  7,  2, 14,
    },
    {
         2, 12,  4,  1,  7, 10, 11,  6,  8,  5,  3, 15, 13,  0, 14,  9,
        14, 11,  2, 12,  4,  7, 13,  1,  5,  0, 15, 10,  3,  9,  8,  6,
         4,  2,  1, 11, 10, 13,  7,  8, 15,  9, 12,  5,  6,  3,  0, 14,
        11,  8, 12,  7,  1, 14,  2, 13,  6, 15,  0,  9, 10,  4,  5,  3,
    },
    {
        12,  1, 10, 15,  9,  2,  6,  8,  0, 13,  3,  4, 14,  7,  5, 11,
        10, 15,  4,  2,  7, 12,  9,  5,  6,  1, 13, 14,  0, 11,  3,  8,
         9, 14, 15,  5,  2,  8, 12,  3,  7,  0,  4, 10,  1, 13, 11,  6,
         4,  3,  2, 12,  9,  5, 15, 10, 11, 14,  1,  7,  6,  0,  8, 13,
    },
    {
         4, 11,  2, 14, 15,  0,  8, 13,  3, 12,  9,  7,  5, 10,  6,  1,
        13,  0, 11,  7,  4,  9,  1, 10, 14,  3,  5, 12,  2, 15,  8,  6,
         1,  4, 11, 13, 12,  3,  7, 14, 10, 15,  6,  8,  0,  5,  9,  2,
         6, 11, 13,  8,  1,  4, 10,  7,  9,  5,  0, 15, 14,  2,  3, 12,
    },
    {
        13,  2,  8,  4,  6, 15, 11,  1, 10,  9,  3, 14,  5,  0, 12,  7,
         1, 15, 13,  8, 10,  3,  7,  4, 12,  5,  6, 11,  0, 14,  9,  2,
         7, 11,  4,  1,  9, 12, 14,  2,  0,  6, 10, 13, 15,  3,  5,  8,
         2,  1, 14,  7,  4, 10,  8, 13, 15, 12,  9,  0,  3,  5,  6, 11,
    },
}};

// clang-format on

/// The bits of `value`, which has `width` of them, that `table` names.
template <std::size_t Count>
constexpr std::uint64_t permute(std::uint64_t value, int width,
                                const std::array<std::uint8_t, Count>& table) {
  std::uint64_t result = 0;
  for (const std::uint8_t bit : table) result = result << 1 | (value >> (width - bit) & 1U);
  return result;
}

// What each substitution box adds to the output of a round: its four bits, already permuted.
using RoundTables = std::array<std::array<std::uint32_t, 64>, 8>;
constexpr RoundTables make_round_tables() {
  RoundTables tables{};
  for (std::size_t box = 0; box < tables.size(); ++box) {
    for (std::size_t input = 0; input < 64; ++input) {
      const std::size_t row = (input >> 4 & 2) | (input & 1);
      const std::size_t column = input >> 1 & 15;
      const std::uint64_t bits = std::uint64_t{kSubstitutions[box][row * 16 + column]} << (28 - 4 * box);
      tables[box][input] = static_cast<std::uint32_t>(permute(bits, 32, kRoundPermutation));
    }
  }
  return tables;
}
constexpr RoundTables kRoundTables = make_round_tables();

std::uint32_t round_function(std::uint32_t half, std::uint64_t round_key) {
  std::uint32_t output = 0;
  for (std::size_t box = 0; box < kRoundTables.size(); ++box) {
    // The expansion E gives each box its four bits and the neighbour on either side.
    const std::uint32_t expanded = std::rotl(half, static_cast<int>(4 * box + 5));
    const auto key = static_cast<std::uint32_t>(round_key >> (42 - 6 * box));
    output |= kRoundTables[box][(expanded ^ key) & 63];
  }
  return output;
}

}  // namespace

Des::Des(std::uint64_t key) {
  constexpr std::uint32_t kHalfMask = (1U << 28) - 1;
  const std::uint64_t chosen = permute(key, 64, kPermutedChoice1);
  auto c = static_cast<std::uint32_t>(chosen >> 28);
  auto d = static_cast<std::uint32_t>(chosen) & kHalfMask;
  for (std::size_t round = 0; round < 16; ++round) {
    const int rotation = kRotations[round];
    c = (c << rotation | c >> (28 - rotation)) & kHalfMask;
    d = (d << rotation | d >> (28 - rotation)) & kHalfMask;
    (*round_keys_)[round] = permute(std::uint64_t{c} << 28 | d, 56, kPermutedChoice2);
  }
}

std::uint64_t Des::encipher(std::uint64_t block, RoundOutputs& outputs) const {
  const std::uint64_t permuted = permute(block, 64, kInitialPermutation);
  auto left = static_cast<std::uint32_t>(permuted >> 32);
  auto right = static_cast<std::uint32_t>(permuted);
  for (std::size_t round = 0; round < 16; ++round) {
    outputs[round] = round_function(right, (*round_keys_)[round]);
    const std::uint32_t next = left ^ outputs[round];
    left = right;
    right = next;
  }
  return permute(std::uint64_t{right} << 32 | left, 64, kFinalPermutation);  // the halves change places
}

}  // namespace korvex::qr
