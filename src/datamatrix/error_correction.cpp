#include "datamatrix/error_correction.hpp"

#include <array>
#include <cstddef>
#include <utility>

#include "core/reed_solomon.hpp"

namespace korvex::datamatrix {
namespace {

using Field = BinaryField<0x12D>;  // x^8 + x^5 + x^3 + x^2 + 1

/// For kSizes[Index]. Codeword i, be it data or check, belongs to block i modulo the number of blocks; the
/// data of 144 x 144 leaves its last two blocks a codeword shorter.
template <std::size_t Index>
void add(std::span<std::uint8_t> codewords) {
  constexpr SymbolSize kSize = kSizes[Index];
  constexpr int kBlocks = kSize.blocks();
  std::array<ReedSolomon<Field, 1, kSize.check_codewords / kBlocks>, kBlocks> blocks;
  const std::uint8_t* data = codewords.data();
  for (int i = 0; i < kSize.data_codewords / kBlocks; ++i) {
    for (auto& block : blocks) block.add(*data++);
  }
  for (int i = 0; i < kSize.data_codewords % kBlocks; ++i) blocks[static_cast<std::size_t>(i)].add(*data++);

  std::uint8_t* check = codewords.data() + kSize.data_codewords;
  for (int i = 0; i < kSize.check_codewords / kBlocks; ++i) {
    for (const auto& block : blocks) *check++ = block.check(i);
  }
}

template <std::size_t... Index>
constexpr auto functions(std::index_sequence<Index...>) {
  return std::array{&add<Index>...};
}
constexpr auto kAdd = functions(std::make_index_sequence<kSizes.size()>());

}  // namespace

void add_check_codewords(const SymbolSize& size, std::span<std::uint8_t> codewords) {
  kAdd[index_of(size)](codewords);
}

}  // namespace korvex::datamatrix
