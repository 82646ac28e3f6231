#include "korvex/veri.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "core/crc16.hpp"
#include "korvex/korvex32.h"
#include "veri/reader.hpp"

namespace korvex::veri {
namespace {

using Bytes = std::vector<std::uint8_t>;
constexpr Correction kCorrections[] = {Correction::none, Correction::two, Correction::four};

Bytes random_bytes(std::mt19937& random, int count) {
  Bytes bytes(static_cast<std::size_t>(count));
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

TEST(VeriEncodation, ChecksWithTheKnownRemainder) {
  const std::string digits = "123456789";
  EXPECT_EQ(crc16({reinterpret_cast<const std::uint8_t*>(digits.data()), digits.size()}), 0xFEE8);
}

TEST(VeriEncodation, HoldsWhatTheSizeLeavesOver) {
  const struct {
    int size;
    int none, two, four;
  } rows[] = {
      {3, -2, -2, -2},  // an interior of one module
      {6, 0, -2, -2},   // two bytes: the check value alone
      {9, 4, 2, 0},     // six bytes, one short block
      {10, 6, 4, 2},   {18, 30, 22, 14}, {25, 64, 46, 30}, {92, 1010, 756, 502},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(capacity_bytes(row.size, Correction::none), row.none) << row.size;
    EXPECT_EQ(capacity_bytes(row.size, Correction::two), row.two) << row.size;
    EXPECT_EQ(capacity_bytes(row.size, Correction::four), row.four) << row.size;
  }
}

TEST(VeriConstruction, EveryModuleOfEveryInteriorHasItsPlace) {
  for (int interior = 1; interior <= kMaxSize - 2; ++interior) {
    std::set<std::pair<int, int>> seen;
    for (const auto& symbol : test::symbol_places(interior)) {
      for (const auto place : symbol) {
        if (place.row < interior && place.column < interior) seen.insert({place.row, place.column});
      }
    }
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(interior * interior)) << interior;
  }
}

TEST(Veri, EverySizeAndModeReadsBackFullEmptyAndInBetween) {
  std::mt19937 random(81);
  for (int size = kMinSize; size <= kMaxSize; ++size) {
    for (const Correction correction : kCorrections) {
      const int capacity = capacity_bytes(size, correction);
      if (capacity < 0) {
        EXPECT_FALSE(encode({.size = size, .correction = correction}, Bytes{}).has_value()) << size;
        continue;
      }
      for (const int length : {0, capacity / 2, capacity}) {
        Bytes data = random_bytes(random, length);
        const auto symbol = encode({.size = size, .correction = correction}, data);
        ASSERT_TRUE(symbol.has_value()) << symbol.error().message;
        data.resize(static_cast<std::size_t>(capacity));
        EXPECT_EQ(test::read(symbol->modules, static_cast<int>(correction)), data)
            << size << " of " << length;
        if (size % 2 != 0) {
          EXPECT_FALSE(symbol->modules.dark(size - 2, size - 2)) << "corner of " << size;
        }
      }
      EXPECT_FALSE(
          encode({.size = size, .correction = correction}, random_bytes(random, capacity + 1)).has_value());
    }
  }
}

/// Darkens or lightens modules of `wrong` symbols in every block of a symbol.
void damage(ModuleMatrix& modules, int wrong, std::mt19937& random) {
  const int side = modules.rows() - 2;
  const auto places = test::symbol_places(side);
  const auto blocks = test::symbol_blocks(side * side / 4);
  std::vector<int> left(blocks.size(), wrong);
  std::vector<std::size_t> order(blocks.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::shuffle(order.begin(), order.end(), random);
  for (const std::size_t i : order) {
    if (left[static_cast<std::size_t>(blocks[i])]-- <= 0) continue;
    const unsigned flips = 1 + static_cast<unsigned>(random() % 15);
    for (std::size_t bit = 0; bit < 4; ++bit) {
      const auto place = places[i][bit];
      if ((flips >> bit & 1) == 0 || place.row >= side || place.column >= side) continue;
      modules.set_dark(place.row + 1, place.column + 1, !modules.dark(place.row + 1, place.column + 1));
    }
  }
}

TEST(VeriErrorCorrection, ForgivesAsManyWrongSymbolsABlockAsThereAreCheckBytes) {
  std::mt19937 random(82);
  for (const Correction correction : {Correction::two, Correction::four}) {
    const int strength = static_cast<int>(correction);
    for (const int size : {9, 10, 18, 25, 30, 41}) {
      const Bytes data = random_bytes(random, capacity_bytes(size, correction));
      const auto symbol = encode({.size = size, .correction = correction}, data);
      ASSERT_TRUE(symbol.has_value());
      ModuleMatrix damaged = symbol->modules;
      damage(damaged, strength, random);
      ASSERT_NE(damaged, symbol->modules);
      EXPECT_EQ(test::read(damaged, strength), data) << size << " with " << strength;
      ModuleMatrix beyond = symbol->modules;
      damage(beyond, strength + 1, random);
      EXPECT_NE(test::read(beyond, strength), data)
          << size << " with " << strength << " cannot have corrected this";
    }
  }
}

TEST(Veri, TakesTheSmallestSizeThatHoldsTheData) {
  for (const Correction correction : kCorrections) {
    for (const std::size_t length : {0U, 1U, 30U, 31U, 400U, 502U}) {
      const auto symbol = encode({.correction = correction}, Bytes(length));
      ASSERT_TRUE(symbol.has_value()) << symbol.error().message;
      const int size = symbol->modules.rows();
      EXPECT_GE(capacity_bytes(size, correction), static_cast<int>(length));
      EXPECT_LT(capacity_bytes(size - 1, correction), static_cast<int>(length));
    }
  }
}

TEST(Veri, SaysWhatIsWrong) {
  EXPECT_EQ(encode({.size = 93}, "x").error().message,
            "The size is 93 modules; allowed are 3 to 92, or 0 for the smallest that holds the data.");
  EXPECT_EQ(
      encode({.size = 10}, "xxx").error().message,
      "The data has 3 bytes; a VERI symbol of 10 x 10 modules with 4 check bytes a block holds at most 2.");
  EXPECT_EQ(encode({}, Bytes(503)).error().code, Code::no_symbol);
}

// ---- the C entry ----

struct Answer {
  std::int16_t result;
  Symbol_Size size;
  std::string operations;
};

Answer call(VERI_Params params, const Bytes& data, Korvex_Device* device) {
  params.data = data.data();
  if (params.data_length == 0) params.data_length = static_cast<std::int16_t>(data.size());
  korvex_device_record(device, 1);
  Answer answer{0, {-1, -1}, ""};
  answer.result = VERI_Encode(device, &params, &answer.size);
  int repeats = 0;
  for (int i = 0; const char* name = korvex_device_operation(device, i, &repeats); ++i) {
    answer.operations += name + ("*" + std::to_string(repeats)) + ' ';
  }
  return answer;
}

TEST(VeriEntry, AnswersInTheOrderOfItsSteps) {
  const Bytes two = {1, 2};
  const Bytes three = {1, 2, 3};
  const struct {
    const char* what;
    VERI_Params params;
    const Bytes& data;
    int result;
    int width;
  } rows[] = {
      {"fits", {10, 4, 3, 3, nullptr, 0}, two, 0, 30},
      {"one byte too many", {10, 4, 3, 3, nullptr, 0}, three, -2, -1},
      {"too long wins over unequal modules", {10, 4, 4, 5, nullptr, 0}, three, -2, -1},
      {"unequal modules", {10, 4, 4, 5, nullptr, 0}, two, -1, -1},
      {"both out of range: both become 3", {10, 4, 2, 11, nullptr, 0}, two, 0, 30},
      {"one out of range: 3 and 4", {10, 4, 2, 4, nullptr, 0}, two, -1, -1},
      {"largest module", {10, 4, 10, 10, nullptr, 0}, two, 0, 100},
      {"mode 3 is none", {10, 3, 3, 3, nullptr, 0}, three, 0, 30},
      {"negative length", {10, 4, 3, 3, nullptr, -1}, two, -2, -1},
      {"size 2", {2, 0, 3, 3, nullptr, 0}, two, -2, -1},
      {"size 93", {93, 0, 3, 3, nullptr, 0}, two, -2, -1},
      {"size -10, whose square would do", {-10, 0, 3, 3, nullptr, 0}, two, -2, -1},
  };
  for (const auto& row : rows) {
    const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                  korvex_device_destroy);
    const Answer answer = call(row.params, row.data, device.get());
    EXPECT_EQ(answer.result, row.result) << row.what;
    EXPECT_EQ(answer.size.width, row.width) << row.what;
    EXPECT_EQ(answer.size.height, row.width) << row.what;
    EXPECT_EQ(answer.operations.empty(), row.result != 0) << row.what;
    EXPECT_EQ(korvex_device_width(device.get()), std::max(row.width, 0)) << row.what;
  }
  EXPECT_EQ(VERI_Encode(nullptr, nullptr, nullptr), -1);
}

TEST(VeriEntry, PaintsTheModulesPixelByPixelOverTheBlackRows) {
  const Bytes data = {'K', 'o'};
  const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                korvex_device_destroy);
  const Answer answer = call({10, 4, 4, 4, nullptr, 0}, data, device.get());
  ASSERT_EQ(answer.result, 0);
  // 10 rows of 40 x 4 black pixels, and 8 of them once more: nine modules of each.
  EXPECT_EQ(answer.operations, "SetPixel*" + std::to_string(10 * 160 + 8 * 9 * 16) + " ");
  const auto symbol = encode({.size = 10}, data);
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 40; ++x) {
      EXPECT_EQ(korvex_device_pixel(device.get(), x, y) == 0, symbol->modules.dark(y / 4, x / 4));
    }
  }
}

}  // namespace
}  // namespace korvex::veri
