#include "frame/raster.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace korvex {
namespace {

using DevicePointer = std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)>;

DevicePointer device(int width = 0, int height = 0) {
  return {korvex_device_create(width, height), korvex_device_destroy};
}

std::vector<std::string> operations(const Korvex_Device* device) {
  std::vector<std::string> names;
  for (int i = 0; i < korvex_device_operation_count(device); ++i) {
    int repeats = 0;
    const std::string name = korvex_device_operation(device, i, &repeats);
    names.push_back(repeats == 1 ? name : name + "*" + std::to_string(repeats));
  }
  return names;
}

/// '#' dark, '.' light, ' ' unpainted, '?' any other colour.
std::string art(const Korvex_Device* device) {
  std::string text;
  for (int y = 0; y < korvex_device_height(device); ++y) {
    for (int x = 0; x < korvex_device_width(device); ++x) {
      const auto color = korvex_device_pixel(device, x, y);
      text += !korvex_device_is_painted(device, x, y) ? ' '
              : color == 0                            ? '#'
              : color == 0xFFFFFF                     ? '.'
                                                      : '?';
    }
    text += '\n';
  }
  return text;
}

ModuleMatrix random_matrix(int rows, int columns, unsigned seed) {
  std::mt19937 random(seed);
  ModuleMatrix matrix(rows, columns);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) matrix.set_dark(row, column, random() % 2 == 0);
  }
  return matrix;
}

TEST(Raster, PaintsEveryModuleAsABlockOfPixels) {
  ModuleMatrix symbol(2, 3);
  symbol.set_dark(0, 0, true);
  symbol.set_dark(1, 1, true);
  symbol.set_dark(1, 2, true);
  const auto picture = device();
  EXPECT_EQ(raster::paint(picture.get(), symbol, {.width = 3, .height = 2}), KORVEX_OK);
  EXPECT_EQ(art(picture.get()),
            "###......\n"
            "###......\n"
            "...######\n"
            "...######\n");
}

TEST(Raster, AgreesWithTheModulesAtEveryWidthAroundWordsAndBytes) {
  for (const int columns : {1, 7, 8, 9, 15, 16, 17, 63, 64, 65, 127, 129}) {
    for (const int module_width : {1, 2, 3, 5, 8, 9, 17}) {
      const auto symbol = random_matrix(5, columns, static_cast<unsigned>(columns * 100 + module_width));
      const auto picture = device();
      ASSERT_EQ(raster::paint(picture.get(), symbol, {.width = module_width, .height = 2}), KORVEX_OK);
      ASSERT_EQ(korvex_device_width(picture.get()), columns * module_width);
      ASSERT_EQ(korvex_device_height(picture.get()), 10);
      for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < columns * module_width; ++x) {
          ASSERT_EQ(korvex_device_pixel(picture.get(), x, y) == 0, symbol.dark(y / 2, x / module_width))
              << columns << " columns of " << module_width << " pixels, (" << x << ", " << y << ")";
        }
      }
    }
  }
}

TEST(Raster, TakesTheOperationsInTheirOrder) {
  const auto picture = device();
  korvex_device_record(picture.get(), 1);
  ASSERT_EQ(raster::paint(picture.get(), ModuleMatrix(3, 3), {}), KORVEX_OK);
  EXPECT_EQ(operations(picture.get()),
            (std::vector<std::string>{"CreateBitmap", "CreateCompatibleDC", "SelectObject", "BitBlt",
                                      "DeleteDC", "DeleteObject"}));
}

TEST(Raster, RefusesABitmapThatNoMemoryHoldsAndPaintsNothing) {
  for (const raster::ModulePixels module :
       {raster::ModulePixels{32767, 32767}, raster::ModulePixels{2'000'000'000, 1},
        raster::ModulePixels{1, 2'000'000'000}}) {
    const auto picture = device();
    korvex_device_record(picture.get(), 1);
    EXPECT_EQ(raster::paint(picture.get(), ModuleMatrix(144, 144), module), KORVEX_NO_SYMBOL);
    EXPECT_EQ(korvex_device_operation_count(picture.get()), 0);
    EXPECT_EQ(korvex_device_width(picture.get()), 0);
  }
}

TEST(Raster, StartsRowsOnSixteenBitBoundaries) {
  for (const auto& [width, stride] : {std::pair{1, 2}, {16, 2}, {17, 4}, {32, 4}, {33, 6}}) {
    EXPECT_EQ(raster::Bitmap(width, 1).stride(), stride) << width;
  }
}

TEST(Device, PaintsABitmapInTheTextAndBackgroundColours) {
  const auto picture = device();
  korvex_device_set_colors(picture.get(), 0x0000FF, 0x00FF00);
  ModuleMatrix symbol(1, 2);
  symbol.set_dark(0, 0, true);
  ASSERT_EQ(raster::paint(picture.get(), symbol, {}), KORVEX_OK);
  EXPECT_EQ(korvex_device_pixel(picture.get(), 0, 0), 0x0000FFU);
  EXPECT_EQ(korvex_device_pixel(picture.get(), 1, 0), 0x00FF00U);
}

TEST(Device, IsNotMadeForMorePixelsThanAnAddressSpaceHas) {
  constexpr bool k32Bits = sizeof(void*) == 4;  // where the product of these is as good as 0
  constexpr int kSide = k32Bits ? 65536 : std::numeric_limits<int>::max();
  EXPECT_EQ(device(kSide, kSide), nullptr);
}

TEST(Device, ClipsToAFixedSizeAndKeepsWhatWasThere) {
  const auto picture = device(4, 3);
  device::set_pixel(picture.get(), 3, 2, device::kBlack);
  device::set_pixel(picture.get(), 4, 0, device::kBlack);
  device::set_pixel(picture.get(), 0, 3, device::kBlack);
  device::set_pixel(picture.get(), -1, 0, device::kBlack);
  EXPECT_EQ(art(picture.get()), "    \n    \n   #\n");
  ASSERT_EQ(raster::paint(picture.get(), ModuleMatrix(2, 20), {}), KORVEX_OK);
  EXPECT_EQ(art(picture.get()), "....\n....\n   #\n");
}

TEST(Device, GrowsPixelByPixelInAnyOrderWithoutLosingOne) {
  const auto picture = device();
  korvex_device_record(picture.get(), 1);
  constexpr int kSide = 150;
  for (int i = 0; i < kSide * kSide; ++i) {
    const int place = i * 7 % (kSide * kSide);  // 7 and the side have no common factor: every place once
    const int x = place % kSide;
    const int y = place / kSide;
    device::set_pixel(picture.get(), x, y, (x ^ y) % 3 == 0 ? device::kBlack : device::kWhite);
  }
  EXPECT_EQ(operations(picture.get()), std::vector<std::string>{"SetPixel*22500"});
  int width = 0;
  int height = 0;
  korvex_device_painted_size(picture.get(), &width, &height);
  EXPECT_EQ(width, kSide);
  EXPECT_EQ(height, kSide);
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      ASSERT_EQ(korvex_device_pixel(picture.get(), x, y) == 0, (x ^ y) % 3 == 0) << x << ", " << y;
    }
  }
  EXPECT_EQ(korvex_device_failed(picture.get()), 0);
}

TEST(Device, RefusesSizesThatCannotBe) {
  EXPECT_EQ(korvex_device_create(-1, 5), nullptr);
  EXPECT_EQ(korvex_device_create(5, -1), nullptr);
  EXPECT_EQ(korvex_device_operation(device().get(), 0, nullptr), nullptr);
}

}  // namespace
}  // namespace korvex
