#include "datamatrix/construction.hpp"

#include <algorithm>
#include <cstring>
#include <utility>

#include "datamatrix/placement.hpp"

namespace korvex::datamatrix {
namespace {

template <std::size_t Index>
constexpr auto kPlacement =
    PlacementWalk<kSizes[Index].mapping_rows(), kSizes[Index].mapping_columns()>::run();

template <std::size_t... Index>
constexpr auto placements(std::index_sequence<Index...>) {
  static_assert(((kPlacement<Index>.codewords == kSizes[Index].codewords()) && ...));
  return std::array{std::span<const BitNumber>(kPlacement<Index>.bits)...};
}
/// The bit numbers of the mapping matrices of kSizes.
constexpr auto kPlacements = placements(std::make_index_sequence<kSizes.size()>());

/// The bits of a byte, one each, most significant first.
constexpr auto kBitsOfByte = [] {
  std::array<std::array<std::uint8_t, 8>, 256> bits{};
  for (std::size_t byte = 0; byte < bits.size(); ++byte) {
    for (std::size_t bit = 0; bit < 8; ++bit) bits[byte][bit] = byte >> (7 - bit) & 1;
  }
  return bits;
}();

/// Writes the modules of a row from left to right.
class RowWriter {
 public:
  explicit RowWriter(std::span<std::uint64_t> row) : next_(row.data()) {}

  /// Appends the low `count` bits of `modules`, which has no others; the highest one stands leftmost.
  void put(std::uint64_t modules, int count) {
    room_ -= count;
    if (room_ >= 0) {
      word_ |= modules << room_;
      return;
    }
    *next_++ = word_ | modules >> -room_;
    room_ += 64;
    word_ = modules << room_;
  }
  void finish() { *next_ = word_; }

 private:
  std::uint64_t* next_;
  std::uint64_t word_ = 0;
  int room_ = 64;  // modules that the word has room for
};

/// Fills a row with a pattern of 64 modules.
void fill_row(std::span<std::uint64_t> row, int columns, std::uint64_t pattern) {
  std::ranges::fill(row, pattern);
  if (columns % 64 != 0) row.back() &= ~std::uint64_t{0} << (64 - columns % 64);
}

}  // namespace

ModuleMatrix place_modules(const SymbolSize& size, std::span<const std::uint8_t> codewords) {
  constexpr std::uint64_t kAlternating = 0xAAAA'AAAA'AAAA'AAAA;
  constexpr std::uint64_t kDark = ~std::uint64_t{0};

  std::array<std::uint8_t, 8 * kMaxCodewords + 2> bits;  // a byte each, by bit number
  std::uint8_t* bit = bits.data();
  for (const std::uint8_t codeword : codewords) {
    std::memcpy(bit, kBitsOfByte[codeword].data(), 8);
    bit += 8;
  }
  bit[0] = 0;
  bit[1] = 1;

  ModuleMatrix symbol(size.rows, size.columns);
  const BitNumber* number = kPlacements[index_of(size)].data();
  const int region_height = size.rows / size.region_rows;
  const int region_width = size.columns / size.region_columns;
  for (int row = 0; row < size.rows; ++row) {
    const auto modules = symbol.row(row);
    const int row_in_region = row % region_height;
    if (row_in_region == 0) {
      fill_row(modules, size.columns, kAlternating);
      continue;
    }
    if (row_in_region == region_height - 1) {
      fill_row(modules, size.columns, kDark);
      continue;
    }
    RowWriter writer(modules);
    for (int region = 0; region < size.region_columns; ++region) {
      std::uint64_t run = 1;  // the finder's dark column
      const BitNumber* const end = number + region_width - 2;
      if (region_width % 4 == 0) {  // widths are even: two, then four at a time
        run = run << 2 | (bits[number[0]] * 2U + bits[number[1]]);
        number += 2;
      }
      for (; number < end; number += 4) {
        run =
            run << 4 | (bits[number[0]] * 8U + bits[number[1]] * 4U + bits[number[2]] * 2U + bits[number[3]]);
      }
      run = run << 1 | static_cast<std::uint64_t>(row % 2);  // the timing column
      writer.put(run, region_width);
    }
    writer.finish();
  }
  return symbol;
}

}  // namespace korvex::datamatrix
