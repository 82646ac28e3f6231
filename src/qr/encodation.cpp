#include "qr/encodation.hpp"

#include <string_view>

#include "qr/private_segment.hpp"
#include "qr/secret.hpp"

namespace korvex::qr {
namespace {

// ISO/IEC 18004:2015, Table 2 and 7.4.9; ISO/IEC 23941:2022 for rMQR.
constexpr std::array<std::uint32_t, 4> kModeIndicators = {0b0001, 0b0010, 0b0100, 0b1000};
constexpr std::array<std::uint32_t, 4> kMicroModeIndicators = {0, 1, 2, 3};
constexpr std::array<std::uint32_t, 4> kRmqrModeIndicators = {0b001, 0b010, 0b011, 0b100};
constexpr std::uint32_t kFnc1InFirstPosition = 0b0101;
constexpr std::uint32_t kStructuredAppend = 0b0011;
constexpr std::array<std::uint8_t, 2> kPadCodewords = {0xEC, 0x11};

/// Values of the alphanumeric characters, ISO/IEC 18004:2015, Table 5. A small letter is not one of them, but
/// the old dialect packs it as its capital.
struct AlphanumericValues {
  std::array<std::uint8_t, 256> value{};  // 0 also for bytes that have none
  std::array<bool, 256> valid{};
};
constexpr AlphanumericValues make_alphanumeric_values() {
  AlphanumericValues values;
  constexpr std::string_view kCharacters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:";
  static_assert(kCharacters.size() == 45);
  for (std::size_t i = 0; i < kCharacters.size(); ++i) {
    const auto character = static_cast<unsigned char>(kCharacters[i]);
    values.value[character] = static_cast<std::uint8_t>(i);
    values.valid[character] = true;
    if (character >= 'A' && character <= 'Z') {
      values.value[character + 0x20U] = static_cast<std::uint8_t>(i);
    }
  }
  return values;
}
constexpr AlphanumericValues kAlphanumeric = make_alphanumeric_values();

std::uint32_t mode_indicator(SymbolType type, Mode mode) {
  const auto index = static_cast<std::size_t>(mode);
  if (type == SymbolType::micro) return kMicroModeIndicators[index];
  return type == SymbolType::rmqr ? kRmqrModeIndicators[index] : kModeIndicators[index];
}

// Fixed modes may meet bytes that they cannot pack: the formulas apply, and a field keeps its low bits.
void put_low_bits(std::uint32_t value, int count_bits, BitWriter& bits) {
  bits.put(value & ((1U << count_bits) - 1), count_bits);
}

void put_numeric(std::span<const std::uint8_t> digits, BitWriter& bits) {
  const auto digit = [&](std::size_t at) { return static_cast<std::uint32_t>(digits[at]) - '0'; };
  std::size_t at = 0;
  for (; at + 3 <= digits.size(); at += 3) {
    put_low_bits(100 * digit(at) + 10 * digit(at + 1) + digit(at + 2), 10, bits);
  }
  if (digits.size() - at == 2) put_low_bits(10 * digit(at) + digit(at + 1), 7, bits);
  if (digits.size() - at == 1) put_low_bits(digit(at), 4, bits);
}

/// Where "%" separates element strings it stands for the separator, and two of them for a "%" of the data.
void put_alphanumeric(std::span<const std::uint8_t> characters, bool percent_separates, BitWriter& bits) {
  const std::uint32_t percent = kAlphanumeric.value['%'];
  constexpr std::uint32_t kNone = 45;
  std::uint32_t first = kNone;  // of a pair
  const auto put_character = [&](std::uint32_t value) {
    if (first == kNone) {
      first = value;
    } else {
      bits.put(45 * first + value, 11);
      first = kNone;
    }
  };
  for (const std::uint8_t character : characters) {
    put_character(character == kSeparator ? percent : kAlphanumeric.value[character]);
    if (percent_separates && character == '%') put_character(percent);
  }
  if (first != kNone) bits.put(first, 6);
}

void put_bytes(std::span<const std::uint8_t> bytes, BitWriter& bits) {
  std::size_t at = 0;
  for (; at + 4 <= bytes.size(); at += 4) {
    bits.put(std::uint32_t{bytes[at]} << 24 | std::uint32_t{bytes[at + 1]} << 16 |
                 std::uint32_t{bytes[at + 2]} << 8 | bytes[at + 3],
             32);
  }
  for (; at < bytes.size(); ++at) bits.put(bytes[at], 8);
}

void put_kanji(std::span<const std::uint8_t> pairs, BitWriter& bits) {
  for (std::size_t at = 0; at + 2 <= pairs.size(); at += 2) {
    const std::uint32_t lead = pairs[at];
    const std::uint32_t row = lead - (lead < 0xA0 ? 0x81 : 0xC1);
    put_low_bits(row * 0xC0 + pairs[at + 1] - 0x40, 13, bits);
  }
}

void put_prefix(const Options& options, BitWriter& bits) {
  if (options.type == SymbolType::model1) bits.put(0, 4);
  if (options.append) {
    bits.put(kStructuredAppend, 4);
    bits.put(static_cast<std::uint32_t>((options.append->index - 1) * 16 + options.append->count - 1), 8);
    bits.put(options.append->parity, 8);
  }
  if (options.type == SymbolType::gs1) bits.put(kFnc1InFirstPosition, 4);
}

void put_segment(const Options& options, int version, Mode mode, std::span<const std::uint8_t> bytes,
                 BitWriter& bits) {
  auto characters = static_cast<int>(bytes.size());
  if (mode == Mode::alphanumeric) characters += doubled_characters(options, bytes);
  if (mode == Mode::kanji) characters /= 2;
  bits.put(mode_indicator(options.type, mode), mode_indicator_bits(options.type, version));
  bits.put(static_cast<std::uint32_t>(characters),
           count_bits(options.type, version)[static_cast<std::size_t>(mode)]);
  switch (mode) {
    case Mode::numeric:
      return put_numeric(bytes, bits);
    case Mode::alphanumeric:
      return put_alphanumeric(bytes, percent_separates(options), bits);
    case Mode::byte:
      return put_bytes(bytes, bits);
    case Mode::kanji:
      return put_kanji(bytes, bits);
  }
}

}  // namespace

void put_stream(const Options& options, int version, const Stream& stream, BitWriter& bits) {
  put_prefix(options, bits);
  for (const auto& [mode, offset, length] : stream.segments.all()) {
    put_segment(options, version, mode,
                stream.data.subspan(static_cast<std::size_t>(offset), static_cast<std::size_t>(length)),
                bits);
  }
}

void write_data_codewords(const Options& options, int version, const Stream& public_stream,
                          const Stream* private_stream, CodewordBuffer& codewords) {
  BitWriter bits(codewords);
  put_stream(options, version, public_stream, bits);
  // All of it, also where it passes the end of the data: what is too much is cut below.
  bits.put(0, terminator_bits(options.type, version));
  bits.flush();
  if (private_stream != nullptr) {
    put_private_segment(options, version, *private_stream, bits);
    wipe_stack_below();
  }

  const int data_codewords = capacity(options.type, version, options.level).data_codewords;
  const int used = bits.size_bits() / 8;
  for (int i = used; i < data_codewords; ++i) {
    codewords[static_cast<std::size_t>(i)] = kPadCodewords[static_cast<std::size_t>((i - used) % 2)];
  }
  if (has_short_last_codeword(options.type, version)) {
    std::uint8_t& last = codewords[static_cast<std::size_t>(data_codewords - 1)];
    // A pad codeword of four bits is 0000 (ISO/IEC 18004:2015, 7.4.10).
    const bool is_pad = used < data_codewords;
    last = is_pad && options.dialect == Dialect::standard ? 0 : last & 0xF0;
  }
}

int first_unfit_byte(Mode mode, std::span<const std::uint8_t> data) {
  if (mode == Mode::byte) return -1;
  for (std::size_t at = 0; at < data.size(); ++at) {
    const auto rest = data.subspan(at);
    bool fits = true;
    switch (mode) {
      case Mode::numeric:
        fits = rest[0] >= '0' && rest[0] <= '9';
        break;
      case Mode::alphanumeric:
        fits = kAlphanumeric.valid[rest[0]];
        break;
      case Mode::byte:
        break;
      case Mode::kanji:
        fits = character_bytes(rest) == 2;
        if (fits) ++at;
        break;
    }
    if (!fits) return static_cast<int>(at);
  }
  return -1;
}

}  // namespace korvex::qr
