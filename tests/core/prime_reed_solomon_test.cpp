#include "core/prime_reed_solomon.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <vector>

namespace korvex {
namespace {

using Codewords = std::vector<std::uint16_t>;
using Checks = PrimeReedSolomon<Gf929, 2, 4, 5, 7, 8, 9, 15, 16, 17, 50, 64, 512>;

TEST(PrimeReedSolomon, MatchesTheWorkedExampleOfIso15438ForPdf417AtLevel1) {  // the text PDF417
  Codewords check(4);
  Checks::check_codewords(Codewords{5, 453, 178, 121, 239}, check);
  EXPECT_EQ(check, (Codewords{452, 327, 657, 619}));
}

/// Data and check codewords together are zero at 3^1 ... 3^count: that is what a reader tests.
void expect_zero_syndromes(const Codewords& data, int count) {
  Codewords all = data;
  all.resize(data.size() + static_cast<std::size_t>(count));
  Checks::check_codewords(data, std::span(all).subspan(data.size()));
  unsigned root = 1;
  for (int i = 1; i <= count; ++i) {
    root = root * 3 % 929;
    unsigned value = 0;
    for (const unsigned codeword : all) {
      ASSERT_LT(codeword, 929U);
      value = (value * root + codeword) % 929;
    }
    ASSERT_EQ(value, 0U) << data.size() << " data, " << count << " check codewords, root " << i;
  }
}

TEST(PrimeReedSolomon, CodewordsVanishAtEveryRootOfTheGenerator) {
  std::mt19937 random(929);
  for (const int count : {2, 4, 5, 7, 8, 9, 15, 16, 17, 50, 64, 512}) {
    // Around every whole number of steps of eight, and the most that the field has room for.
    for (const std::size_t length : {0, 1, 7, 8, 9, 63, 64, 65, 200, 928 - count}) {
      Codewords data(length);
      for (auto& codeword : data) codeword = static_cast<std::uint16_t>(random() % 929);
      expect_zero_syndromes(data, count);
      expect_zero_syndromes(Codewords(length, 928), count);
    }
  }
}

}  // namespace
}  // namespace korvex
