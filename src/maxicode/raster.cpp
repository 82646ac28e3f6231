// Modules to pixels: hexagons seven pixels apart, and the bull's-eye over them.
#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

#include "maxicode/raster.hpp"

namespace korvex::maxicode {
namespace {

constexpr int kPitchX = 7;  // pixels from module to module
constexpr int kPitchY = 6;  // pixels from row to row: hexagons reach into each other's rows

constexpr std::array<std::string_view, 8> kHexagon = {"0000000", "0001100", "0011110", "0111111",
                                                      "0111111", "0111111", "0011110", "0001100"};

/// The lower right quarter of the bull's-eye, from the centre outwards.
constexpr std::array<std::string_view, 31> kBullsEyeQuarter = {
    "0000111110000001111100000011111", "0000111110000001111100000011111", "0001111110000001111100000011111",
    "0011111100000001111100000011111", "1111111100000011111100000011111", "1111111000000011111000000011111",
    "1111110000000011111000000111110", "1111100000000111111000000111110", "1110000000000111110000000111110",
    "0000000000001111110000001111110", "0000000000011111100000001111100", "0000000000111111000000001111100",
    "0000000001111111000000011111000", "0000000111111110000000011111000", "0000111111111100000000111111000",
    "1111111111111000000001111110000", "1111111111100000000011111100000", "1111111111000000000011111100000",
    "1111111100000000000111111000000", "1111100000000000001111110000000", "0000000000000000111111100000000",
    "0000000000000001111111000000000", "0000000000000011111110000000000", "0000000000001111111100000000000",
    "0000000001111111111000000000000", "0000001111111111110000000000000", "1111111111111111000000000000000",
    "1111111111111110000000000000000", "1111111111110000000000000000000", "1111111111000000000000000000000",
    "1111110000000000000000000000000"};
static_assert(kBullsEyeQuarter.back().size() == kBullsEyeQuarter.size());

constexpr int kCentreX = 101;  // the centre lies between this pixel and the next
constexpr int kCentreY = 100;

void set_dark(PixelRow& row, int x) {
  row[static_cast<std::size_t>(x / 64)] |= std::uint64_t{1} << (63 - x % 64);
}

/// The hexagon's rows as numbers, leftmost pixel highest.
constexpr auto kHexagonBits = [] {
  std::array<std::uint64_t, kHexagon.size()> rows{};
  for (std::size_t y = 0; y < rows.size(); ++y) {
    for (const char pixel : kHexagon[y]) rows[y] = rows[y] << 1 | (pixel == '1' ? 1U : 0U);
  }
  return rows;
}();

void draw_bulls_eye(Pixels& pixels) {
  for (std::size_t r = 0; r < kBullsEyeQuarter.size(); ++r) {
    for (std::size_t c = 0; c < kBullsEyeQuarter.size(); ++c) {
      if (kBullsEyeQuarter[r][c] != '1') continue;
      for (const std::size_t y : {kCentreY + 1 + r, kCentreY - r}) {
        set_dark(pixels[y], kCentreX + 1 + static_cast<int>(c));
        set_dark(pixels[y], kCentreX - static_cast<int>(c));
      }
    }
  }
}

void draw_hexagon(Pixels& pixels, int row, int column) {
  const int x = kPitchX * column + (row % 2 != 0 ? 3 : 0);
  const auto word = static_cast<std::size_t>(x / 64);
  const int room = 64 - x % 64;
  for (std::size_t y = 0; y < kHexagonBits.size(); ++y) {
    PixelRow& pixel_row = pixels[static_cast<std::size_t>(kPitchY * row) + y];
    if (room >= kPitchX) {
      pixel_row[word] |= kHexagonBits[y] << (room - kPitchX);
    } else {
      pixel_row[word] |= kHexagonBits[y] >> (kPitchX - room);
      pixel_row[word + 1] |= kHexagonBits[y] << (64 - (kPitchX - room));
    }
  }
}

}  // namespace

Pixels pixels_of(const ModuleMatrix& modules) {
  Pixels pixels{};
  draw_bulls_eye(pixels);
  for (int row = 0; row < std::min(modules.rows(), kRows); ++row) {
    for (int column = 0; column < std::min(modules.columns(), kColumns); ++column) {
      if (modules.dark(row, column)) draw_hexagon(pixels, row, column);
    }
  }
  return pixels;
}

ModuleMatrix raster(const ModuleMatrix& modules) {
  const Pixels pixels = pixels_of(modules);
  ModuleMatrix picture(kPixelHeight, kPixelWidth);
  for (int y = 0; y < kPixelHeight; ++y) {
    const auto row = picture.row(y);
    for (std::size_t word = 0; word < row.size(); ++word)
      row[word] = pixels[static_cast<std::size_t>(y)][word];
  }
  return picture;
}

}  // namespace korvex::maxicode
