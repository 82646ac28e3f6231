#include "qr/error_correction.hpp"

#include <algorithm>
#include <cassert>

#include "core/reed_solomon.hpp"

namespace korvex::qr {
namespace {

using Field = BinaryField<0x11D>;  // ISO/IEC 18004:2015, 7.5.2: x^8 + x^4 + x^3 + x^2 + 1

/// Writes the check codewords of one block, highest power first.
using BlockEncoder = void (*)(std::span<const std::uint8_t> data, std::uint8_t* check);

template <int Count>
void encode_block(std::span<const std::uint8_t> data, std::uint8_t* check) {
  reed_solomon<Field, 0, Count>(data, std::span<std::uint8_t, Count>(check, Count));
}

using BlockEncoders = std::array<BlockEncoder, kMostCheckCodewords + 1>;  // by number of check codewords
template <int... Counts>
constexpr BlockEncoders block_encoders() {
  BlockEncoders encoders{};
  ((encoders[Counts] = encode_block<Counts>), ...);
  return encoders;
}
constexpr BlockEncoders kBlockEncoders =
    block_encoders<2, 5, 6, 7, 8, 9, 10, 12, 13, 14, 15, 16, 17, 18, 20, 22, 24, 26, 28, 30, 32, 34, 36, 40,
                   42, 44, 46, 48, 50, 52, 54, 56, 58, 60, 62, 64, 66, 68>();

void encode(std::span<const std::uint8_t> data, int check_codewords, std::uint8_t* check) {
  assert(kBlockEncoders[static_cast<std::size_t>(check_codewords)] != nullptr);
  kBlockEncoders[static_cast<std::size_t>(check_codewords)](data, check);
}

void write_interleaved(const Capacity& symbol, const CodewordBuffer& data, CodewordBuffer& sequence) {
  const int blocks = symbol.blocks;
  const int check_codewords = (symbol.total_codewords - symbol.data_codewords) / blocks;
  const int short_length = symbol.data_codewords / blocks;
  const int short_blocks = blocks - symbol.data_codewords % blocks;  // they come first
  const std::uint8_t* block_data = data.data();
  std::uint8_t* const all_checks = &sequence[static_cast<std::size_t>(symbol.data_codewords)];
  for (int block = 0; block < blocks; ++block) {
    const int length = short_length + (block >= short_blocks ? 1 : 0);
    for (int i = 0; i < short_length; ++i)
      sequence[static_cast<std::size_t>(i * blocks + block)] = block_data[i];
    if (length > short_length) {
      sequence[static_cast<std::size_t>(short_length * blocks + block - short_blocks)] =
          block_data[short_length];
    }
    std::array<std::uint8_t, kMostCheckCodewords> check;
    encode({block_data, static_cast<std::size_t>(length)}, check_codewords, check.data());
    for (int i = 0; i < check_codewords; ++i)
      all_checks[i * blocks + block] = check[static_cast<std::size_t>(i)];
    block_data += length;
  }
}

void write_in_order(const Capacity& symbol, const CodewordBuffer& data, CodewordBuffer& sequence) {
  const int length = symbol.data_codewords / symbol.blocks;
  const int check_codewords = (symbol.total_codewords - symbol.data_codewords) / symbol.blocks;
  std::copy_n(data.data(), symbol.data_codewords, sequence.data());
  std::uint8_t* check = &sequence[static_cast<std::size_t>(symbol.data_codewords)];
  for (int block = 0; block < symbol.blocks; ++block, check += check_codewords) {
    encode({data.data() + block * length, static_cast<std::size_t>(length)}, check_codewords, check);
  }
  // Codewords that the blocks leave over.
  std::uint8_t* const end = sequence.data() + symbol.total_codewords;
  for (std::uint8_t filler = 0xEC; check < end; filler ^= 0xEC ^ 0x11) *check++ = filler;
}

void write_micro(const Capacity& symbol, bool short_last_codeword, const CodewordBuffer& data,
                 CodewordBuffer& sequence) {
  const auto data_codewords = static_cast<std::size_t>(symbol.data_codewords);
  const int check_codewords = symbol.total_codewords - symbol.data_codewords;
  std::copy_n(data.data(), data_codewords, sequence.data());
  std::array<std::uint8_t, kMostCheckCodewords> check;
  encode(std::span(sequence).first(data_codewords), check_codewords, check.data());

  const int shift = short_last_codeword ? 4 : 0;
  std::uint8_t* out = &sequence[data_codewords] - (short_last_codeword ? 1 : 0);
  if (shift == 0) *out = 0;
  for (int i = 0; i < check_codewords; ++i) {
    const std::uint8_t codeword = check[static_cast<std::size_t>(i)];
    *out++ |= static_cast<std::uint8_t>(codeword >> shift);
    *out = static_cast<std::uint8_t>(codeword << (8 - shift));
  }
}

}  // namespace

void write_sequence(SymbolType type, int version, Level level, const CodewordBuffer& data,
                    CodewordBuffer& sequence) {
  const Capacity symbol = capacity(type, version, level);
  std::fill_n(&sequence[static_cast<std::size_t>(symbol.total_codewords)], kZerosBehindSequence, 0);
  if (type == SymbolType::model1) return write_in_order(symbol, data, sequence);
  if (type == SymbolType::micro) {
    return write_micro(symbol, has_short_last_codeword(type, version), data, sequence);
  }
  write_interleaved(symbol, data, sequence);
}

}  // namespace korvex::qr
