#include "qr/error_correction.hpp"

#include <gtest/gtest.h>

#include "support.hpp"

namespace korvex::qr {
namespace {

using test::Bytes;

Bytes sequence_of(SymbolType type, int version, Level level, const Bytes& data) {
  CodewordBuffer in{};
  CodewordBuffer out;
  out.fill(0x55);
  std::ranges::copy(data, in.begin());
  write_sequence(type, version, level, in, out);
  const auto end = out.begin() + capacity(type, version, level).total_codewords;
  EXPECT_TRUE(std::all_of(end, end + kZerosBehindSequence, [](auto byte) { return byte == 0; }));
  return {out.begin(), end};
}

// Modules that the codewords leave over are drawn from what is behind them, and no reader looks at those.
TEST(QrErrorCorrection, ZerosStandBehindTheLastCodeword) {
  std::mt19937 random(20);
  test::for_each_symbol([&](SymbolType type, int version, Level level) {
    const int count = capacity(type, version, level).data_codewords;
    sequence_of(type, version, level, test::random_bytes(random, static_cast<std::size_t>(count)));
  });
}

// ISO/IEC 18004, Annex I: 01234567 as M2-L.
TEST(QrErrorCorrection, MatchesTheWorkedExampleForM2) {
  const Bytes sequence = sequence_of(SymbolType::micro, 2, Level::low, test::from_hex("40 18 AC C3 00"));
  EXPECT_EQ(test::to_hex(sequence), "40 18 AC C3 00 86 0D 22 AE 30");
}

// In M1 and M3 the check codewords start in the middle of a byte, and the division takes the half before them
// as a byte that ends in zeros.
TEST(QrErrorCorrection, ShortLastCodewordIsTheHighHalfOfAByte) {
  const struct {
    int version;
    Level level;
    const char* data;
  } cases[] = {{1, Level::low, "A3 DA D0"},
               {3, Level::low, "01 23 45 67 89 AB CD EF 01 23 40"},
               {3, Level::medium, "01 23 45 67 89 AB CD EF F0"}};
  for (const auto& [version, level, hex] : cases) {
    const Bytes data = test::from_hex(hex);
    const Bytes sequence = sequence_of(SymbolType::micro, version, level, data);
    Bytes block = data;
    EXPECT_EQ(sequence[data.size() - 1] & 0xF0, data.back());
    for (std::size_t i = data.size() - 1; i + 1 < sequence.size(); ++i) {
      block.push_back(static_cast<std::uint8_t>(sequence[i] << 4 | sequence[i + 1] >> 4));
    }
    EXPECT_EQ(sequence.back() & 0x0F, 0);
    EXPECT_TRUE(test::is_valid_block(block, static_cast<int>(sequence.size() - data.size()))) << hex;
  }
}

}  // namespace
}  // namespace korvex::qr
