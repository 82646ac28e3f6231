#include "qr/private_segment.hpp"

#include "qr/des.hpp"

namespace korvex::qr {
namespace {

constexpr std::uint32_t kPrivateIndicator = 0b0110;
constexpr std::size_t kBlockBytes = 8;

std::uint64_t load_block(const std::uint8_t* bytes) {
  std::uint64_t block = 0;
  for (std::size_t i = 0; i < kBlockBytes; ++i) block = block << 8 | bytes[i];
  return block;
}

void store_block(std::uint64_t block, std::uint8_t* bytes) {
  for (std::size_t i = 0; i < kBlockBytes; ++i) bytes[i] = static_cast<std::uint8_t>(block >> (56 - 8 * i));
}

/// Byte `index` of a word, 0 the most significant.
std::uint8_t byte_of(std::uint32_t word, std::size_t index) {
  return static_cast<std::uint8_t>(word >> (24 - 8 * index));
}

}  // namespace

void put_private_segment(const Options& options, int version, const Stream& stream, BitWriter& bits) {
  const std::array<std::uint8_t, 8>& key = options.private_data->key;
  Secret<CodewordBuffer> plaintext;
  Secret<BitWriter> writer{BitWriter(*plaintext)};
  put_stream(options, version, stream, *writer);
  while (writer->size_bits() < 8 * kLeastPrivateBytes) writer->put(0, 1);
  writer->flush();
  const auto stream_length = static_cast<std::size_t>(writer->size_bits() / 8);
  const std::uint16_t check = crc16_arc(key, crc16_arc(std::span(*plaintext).first(stream_length)));
  writer->put(check & 0xFFU, 8);
  writer->put(check >> 8, 8);
  const auto bytes = std::span(*plaintext).first(stream_length + kPrivateCheckBytes);
  encipher(bytes, key);

  bits.put(kPrivateIndicator, 4);
  bits.put(static_cast<std::uint32_t>(bytes.size()), version <= 9 ? 8 : 12);
  for (const std::uint8_t byte : bytes) bits.put(byte, 8);
  bits.flush();
}

void encipher(std::span<std::uint8_t> bytes, const std::array<std::uint8_t, 8>& key) {
  const Secret<std::uint64_t> key_block(load_block(key.data()));
  const Des des(*key_block);
  Secret<Des::RoundOutputs> outputs;
  std::uint64_t previous = 0;
  std::size_t at = 0;
  for (; at + kBlockBytes <= bytes.size(); at += kBlockBytes) {
    previous = des.encipher(load_block(&bytes[at]) ^ previous, *outputs);
    store_block(previous, &bytes[at]);
  }
  for (std::size_t i = 0; at + i < bytes.size(); ++i) {
    bytes[at + i] ^= static_cast<std::uint8_t>(previous >> (56 - 8 * i));
    for (std::size_t round = 0; round < outputs->size(); ++round) {
      bytes[at + i] ^= byte_of((*outputs)[round], (round + i) % 4);
    }
  }
}

std::uint16_t crc16_arc(std::span<const std::uint8_t> bytes, std::uint16_t crc) {
  for (const std::uint8_t byte : bytes) {
    crc ^= byte;
    for (int bit = 0; bit < 8; ++bit) {
      crc = static_cast<std::uint16_t>(crc >> 1 ^ ((crc & 1U) != 0 ? 0xA001 : 0));
    }
  }
  return crc;
}

}  // namespace korvex::qr
