#include "datamatrix/construction.hpp"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "datamatrix/placement.hpp"

namespace korvex::datamatrix {
namespace {

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

/// The bits with these numbers behind a dark module, one after the other.
template <std::size_t... Column>
std::uint64_t gather(const std::uint8_t* bits, const BitNumber* number,
                     std::index_sequence<Column...> /*unused*/) {
  std::uint64_t modules = 1;
  ((modules = 2 * modules + bits[number[Column]]), ...);
  return modules;
}

/// Fills the symbol with the bits, a byte each by bit number. For kSizes[Index].
template <std::size_t Index>
void place(const std::uint8_t* bits, ModuleMatrix& symbol) {
  constexpr std::uint64_t kAlternating = 0xAAAA'AAAA'AAAA'AAAA;
  constexpr std::uint64_t kDark = ~std::uint64_t{0};
  constexpr SymbolSize kSize = kSizes[Index];
  constexpr int kRegionHeight = kSize.rows / kSize.region_rows;
  constexpr int kRegionWidth = kSize.columns / kSize.region_columns;
  constexpr std::size_t kDataWidth = kRegionWidth - 2;
  static constexpr auto kPlacement = PlacementWalk<kSize.mapping_rows(), kSize.mapping_columns()>::run();
  static_assert(kPlacement.codewords == kSize.codewords());

  const BitNumber* number = kPlacement.bits.data();
  for (int top = 0; top < kSize.rows; top += kRegionHeight) {
    fill_row(symbol.row(top), kSize.columns, kAlternating);
    for (int row = top + 1; row < top + kRegionHeight - 1; ++row) {
      RowWriter writer(symbol.row(row));
      for (int region = 0; region < kSize.region_columns; ++region) {
        // The finder's dark column, the codewords' modules, the timing column.
        const std::uint64_t modules = gather(bits, number, std::make_index_sequence<kDataWidth>());
        writer.put(modules << 1 | static_cast<std::uint64_t>(row % 2), kRegionWidth);
        number += kDataWidth;
      }
      writer.finish();
    }
    fill_row(symbol.row(top + kRegionHeight - 1), kSize.columns, kDark);
  }
}

template <std::size_t... Index>
constexpr auto functions(std::index_sequence<Index...>) {
  return std::array{&place<Index>...};
}
constexpr auto kPlace = functions(std::make_index_sequence<kSizes.size()>());

}  // namespace

ModuleMatrix place_modules(const SymbolSize& size, std::span<const std::uint8_t> codewords) {
  std::array<std::uint8_t, 8 * kMaxCodewords + 2> bits;  // a byte each, by bit number
  std::uint8_t* bit = bits.data();
  for (const std::uint8_t codeword : codewords) {
    std::memcpy(bit, kBitsOfByte[codeword].data(), 8);
    bit += 8;
  }
  bit[0] = 0;
  bit[1] = 1;

  ModuleMatrix symbol(size.rows, size.columns);
  kPlace[index_of(size)](bits.data(), symbol);
  return symbol;
}

}  // namespace korvex::datamatrix
