#include "qr/error_correction.hpp"

#include <gtest/gtest.h>

#include "support.hpp"

namespace korvex::qr {
namespace {

using test::Bytes;

Bytes sequence_of(SymbolType type, int version, Level level, const Bytes& data,
                  Dialect dialect = Dialect::standard) {
  CodewordBuffer in{};
  CodewordBuffer out;
  out.fill(0x55);
  std::ranges::copy(data, in.begin());
  write_sequence(type, version, level, dialect, in, out);
  const auto end = out.begin() + capacity(type, version, level).total_codewords;
  // Modules that the codewords leave over are drawn from here.
  EXPECT_TRUE(std::all_of(end, end + kZerosBehindSequence, [](auto byte) { return byte == 0; }));
  return {out.begin(), end};
}

/// Sum of coefficient * place^exponent in GF(256) modulo 0x11D, the first coefficient with the highest
/// exponent.
unsigned evaluate(const Bytes& coefficients, unsigned place) {
  unsigned value = 0;
  for (const std::uint8_t coefficient : coefficients) {
    unsigned product = 0;
    for (unsigned bit = 0; bit < 8; ++bit) {
      if ((place >> bit & 1U) != 0) product ^= value << bit;
    }
    for (int bit = 14; bit >= 8; --bit) {
      if ((product >> bit & 1U) != 0) product ^= 0x11DU << (bit - 8);
    }
    value = product ^ coefficient;
  }
  return value;
}

void expect_valid_block(const Bytes& block, int check_codewords) {
  unsigned root = 1;
  for (int i = 0; i < check_codewords; ++i) {
    ASSERT_EQ(evaluate(block, root), 0U) << "root " << i << " of " << test::to_hex(block);
    root = (root << 1) ^ (root >= 128 ? 0x11DU : 0U);
  }
}

// Takes every sequence apart as a reader does: the n-th codeword of each block in turn, short blocks passed
// over where they have ended; Model 1 block after block. All data must come back and all blocks be valid.
TEST(QrErrorCorrection, EverySymbolTakesApartIntoValidBlocks) {
  std::mt19937 random(20);
  test::for_each_symbol([&](SymbolType type, int version, Level level) {
    if (type == SymbolType::micro) return;
    const Capacity symbol = capacity(type, version, level);
    const Bytes data = test::random_bytes(random, static_cast<std::size_t>(symbol.data_codewords));
    const Bytes sequence = sequence_of(type, version, level, data);
    const auto count = static_cast<std::size_t>(symbol.blocks);
    std::vector<Bytes> blocks(count);
    const int check_codewords = (symbol.total_codewords - symbol.data_codewords) / symbol.blocks;
    const auto length = [&](std::size_t block) {
      const std::size_t shortest = data.size() / count;
      return shortest + (block >= count - data.size() % count ? 1 : 0);
    };
    std::size_t next = 0;
    if (type == SymbolType::model1) {
      for (auto& block : blocks) {
        for (std::size_t i = 0; i < data.size() / count; ++i) block.push_back(sequence[next++]);
      }
      for (auto& block : blocks) {
        for (int i = 0; i < check_codewords; ++i) block.push_back(sequence[next++]);
      }
      for (std::size_t i = 0; next < sequence.size(); ++i, ++next) {
        EXPECT_EQ(sequence[next], i % 2 == 0 ? 0xEC : 0x11) << "filler";
      }
    } else {
      for (std::size_t i = 0; i <= data.size() / count; ++i) {
        for (std::size_t block = 0; block < count; ++block) {
          if (i < length(block)) blocks[block].push_back(sequence[next++]);
        }
      }
      for (int i = 0; i < check_codewords; ++i) {
        for (auto& block : blocks) block.push_back(sequence[next++]);
      }
    }
    EXPECT_EQ(next, sequence.size());
    Bytes taken;
    for (auto& block : blocks) {
      expect_valid_block(block, check_codewords);
      taken.insert(taken.end(), block.begin(), block.end() - check_codewords);
    }
    EXPECT_EQ(taken, data);
  });
}

// ISO/IEC 18004, Annex I: 01234567 as M2-L.
TEST(QrErrorCorrection, MatchesTheWorkedExampleForM2) {
  const Bytes sequence = sequence_of(SymbolType::micro, 2, Level::low, test::from_hex("40 18 AC C3 00"));
  EXPECT_EQ(test::to_hex(sequence), "40 18 AC C3 00 86 0D 22 AE 30");
}

// In M1 and M3 the check codewords start in the middle of a byte. The standard divides the last data codeword
// as a number of 0 to 15, the old dialect as the high half of a byte.
TEST(QrErrorCorrection, ShortLastCodewordByDialect) {
  const struct {
    int version;
    Level level;
    const char* data;
  } cases[] = {{1, Level::low, "A3 DA D0"},
               {3, Level::low, "01 23 45 67 89 AB CD EF 01 23 40"},
               {3, Level::medium, "01 23 45 67 89 AB CD EF F0"}};
  for (const auto& [version, level, hex] : cases) {
    for (const Dialect dialect : {Dialect::standard, Dialect::korvex32}) {
      const Bytes data = test::from_hex(hex);
      const Bytes sequence = sequence_of(SymbolType::micro, version, level, data, dialect);
      Bytes block(data.begin(), data.end() - 1);
      block.push_back(dialect == Dialect::standard ? data.back() >> 4 : data.back());
      EXPECT_EQ(sequence[data.size() - 1] & 0xF0, data.back());
      for (std::size_t i = data.size() - 1; i + 1 < sequence.size(); ++i) {
        block.push_back(static_cast<std::uint8_t>(sequence[i] << 4 | sequence[i + 1] >> 4));
      }
      EXPECT_EQ(sequence.back() & 0x0F, 0);
      expect_valid_block(block, static_cast<int>(sequence.size() - data.size()));
    }
  }
}

}  // namespace
}  // namespace korvex::qr
