#include "composite/component_sizes.hpp"

#include <algorithm>

namespace korvex::composite {
namespace {

constexpr Component kA = Component::cc_a;
constexpr Component kB = Component::cc_b;
/// CC-A rows step through the row address patterns by 32 where those of CC-B have an offset of their own.
constexpr int kCcAOffset = 32;

// ISO/IEC 24723: CC-A; ISO/IEC 24728: CC-B, which has the sizes of MicroPDF417.
constexpr auto kTwoColumns = std::to_array<ComponentSize>({
    // kind rows bits data check first offset
    {kA, 5, 59, 6, 4, 39, kCcAOffset},
    {kA, 6, 78, 8, 4, 1, kCcAOffset},
    {kA, 7, 88, 9, 5, 32, kCcAOffset},
    {kA, 8, 108, 11, 5, 8, kCcAOffset},
    {kA, 9, 118, 12, 6, 14, kCcAOffset},
    {kA, 10, 138, 14, 6, 43, kCcAOffset},
    {kA, 12, 167, 17, 7, 20, kCcAOffset},
    {kB, 17, 208, 24, 10, 36, 0},
    {kB, 20, 256, 29, 11, 19, 0},
    {kB, 23, 296, 33, 13, 9, 8},
    {kB, 26, 336, 37, 15, 27, 8},
});
constexpr auto kThreeColumns = std::to_array<ComponentSize>({
    {kA, 4, 78, 8, 4, 11, kCcAOffset},
    {kA, 5, 98, 10, 5, 1, kCcAOffset},
    {kA, 6, 118, 12, 6, 5, kCcAOffset},
    {kA, 7, 138, 14, 7, 15, kCcAOffset},
    {kA, 8, 167, 17, 7, 21, kCcAOffset},
    {kB, 15, 208, 24, 21, 37, 0},
    {kB, 20, 304, 34, 26, 1, 16},
    {kB, 26, 416, 46, 32, 1, 8},
    {kB, 32, 536, 58, 38, 21, 8},
    {kB, 38, 648, 70, 44, 15, 16},
    {kB, 44, 768, 82, 50, 1, 24},
});
constexpr auto kFourColumns = std::to_array<ComponentSize>({
    {kA, 3, 78, 8, 4, 40, kCcAOffset},
    {kA, 4, 108, 11, 5, 43, kCcAOffset},
    {kA, 5, 138, 14, 6, 46, kCcAOffset},
    {kA, 6, 167, 17, 7, 34, kCcAOffset},
    {kA, 7, 197, 20, 8, 29, kCcAOffset},
    {kB, 10, 208, 24, 16, 15, 0},
    {kB, 12, 264, 30, 18, 25, 0},
    {kB, 15, 352, 39, 21, 37, 0},
    {kB, 20, 496, 54, 26, 1, 16},
    {kB, 26, 672, 72, 32, 1, 8},
    {kB, 32, 840, 90, 38, 21, 8},
    {kB, 38, 1016, 108, 44, 15, 16},
    {kB, 44, 1184, 126, 50, 1, 24},
});

/// Data codewords of `bits` bits: those of base 928 in groups of 69 bits, or those of 8-bit bytes with the
/// two in front of them.
constexpr int data_codewords(Component kind, int bits) {
  if (kind == kA) return bits / 69 * 7 + (bits % 69 == 0 ? 0 : bits % 69 / 10 + 1);
  const int bytes = bits / 8;
  return 2 + bytes / 6 * 5 + bytes % 6;
}

template <std::size_t Count>
constexpr bool sizes_are_sound(const std::array<ComponentSize, Count>& sizes, int columns) {
  int last_bits = 0;
  for (const ComponentSize& size : sizes) {
    if (size.capacity_bits <= last_bits ||
        size.rows * columns != size.data_codewords + size.check_codewords) {
      return false;
    }
    if (size.kind == kB && size.capacity_bits % 8 != 0) return false;
    if (size.data_codewords != data_codewords(size.kind, size.capacity_bits)) return false;
    last_bits = size.capacity_bits;
  }
  return true;
}
static_assert(sizes_are_sound(kTwoColumns, 2) && sizes_are_sound(kThreeColumns, 3) &&
              sizes_are_sound(kFourColumns, 4));

constexpr int kMostCcCRows = 90;
constexpr int kLeastCcCRows = 3;
constexpr int kLeastFlatColumns = 4;

int rounded_up(int value, int divisor) {
  return (value + divisor - 1) / divisor;
}

/// 0 when there are too many data codewords.
int cc_c_check_codewords(int data_codewords) {
  if (data_codewords + 8 <= 48) return 8;
  if (data_codewords + 16 <= 176) return 16;
  if (data_codewords + 32 <= 352) return 32;
  if (data_codewords + 64 <= 927) return 64;
  return 0;
}

}  // namespace

std::span<const ComponentSize> component_sizes(int columns) {
  if (columns == 2) return kTwoColumns;
  if (columns == 3) return kThreeColumns;
  return kFourColumns;
}

int CcAOrBSizing::remaining_bits(int bits) {
  const auto fits = std::ranges::lower_bound(sizes_, bits, {}, &ComponentSize::capacity_bits);
  if (fits == sizes_.end()) return -1;
  chosen_ = &*fits;
  return fits->capacity_bits - bits;
}

int CcCSizing::remaining_bits(int bits) {
  const int bytes = rounded_up(bits, 8);
  const int data_codewords = bytes / 6 * 5 + bytes % 6;
  check_codewords_ = cc_c_check_codewords(data_codewords);
  if (check_codewords_ == 0) return -1;
  const int needed = data_codewords + check_codewords_ + kCcCHeaderCodewords;
  const auto rows_for = [needed](int columns) {
    return std::max(kLeastCcCRows, rounded_up(needed, columns));
  };

  rows_ = rows_for(columns_);
  if (rows_ > kMostCcCRows) return -1;
  if (dialect_ == Dialect::korvex32) {
    while (columns_ + 4 > 4 * rows_) {
      --columns_;
      rows_ = rows_for(columns_);
      if (rows_ > kMostCcCRows) return -1;
    }
    if (rows_ == kLeastCcCRows) columns_ = std::max(kLeastFlatColumns, rounded_up(needed, kLeastCcCRows));
  }

  const int capacity_codewords = columns_ * rows_ - kCcCHeaderCodewords - check_codewords_;
  const int capacity_bytes = capacity_codewords / 5 * 6 + capacity_codewords % 5;
  return capacity_bytes * 8 - bits;
}

}  // namespace korvex::composite
