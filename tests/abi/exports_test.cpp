#include <gtest/gtest.h>

#include <array>
#include <cstdint>

extern "C" int korvex_call_each_with_nothing(std::int16_t* results);

namespace {

TEST(Exports, AllThirteenRefuseMissingRecordsFromC) {
  std::array<std::int16_t, 13> results{};
  EXPECT_EQ(korvex_call_each_with_nothing(results.data()), 1) << "size pair or device touched";
  EXPECT_EQ(results[0], -3);
  for (std::size_t i = 0; i < results.size(); ++i) {
    EXPECT_LT(results[i], 0) << "export " << i;
    if (i % 2 == 1) {
      EXPECT_EQ(results[i], results[i - 1]) << "the twin of export " << i - 1;
    }
  }
}

}  // namespace
