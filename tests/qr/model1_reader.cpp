#include "model1_reader.hpp"

#include <string>
#include <string_view>

#include "support.hpp"

namespace korvex::qr::test {
namespace {

/// Reads a symbol of `side` modules a side; `dark` and `light` modules must be where they ought to.
class Reader {
 public:
  explicit Reader(const ModuleMatrix& symbol) : symbol_(symbol), side_(symbol.rows()) {}

  bool fixed_modules_are_right() const {
    const auto finder = [&](int top, int left) {
      for (int row = -1; row <= 7; ++row) {
        for (int column = -1; column <= 7; ++column) {
          if (top + row < 0 || top + row >= side_ || left + column < 0 || left + column >= side_) continue;
          const int ring = std::max(std::abs(row - 3), std::abs(column - 3));
          if (symbol_.dark(top + row, left + column) != (ring != 2 && ring != 4)) return false;
        }
      }
      return true;
    };
    if (!finder(0, 0) || !finder(0, side_ - 7) || !finder(side_ - 7, 0)) return false;
    for (int at = 8; at < side_ - 8; ++at) {
      if (symbol_.dark(6, at) != (at % 2 == 0) || symbol_.dark(at, 6) != (at % 2 == 0)) return false;
    }
    // The corner, the module beside the lower finder pattern, and the extension patterns: 8 modules from the
    // corner and from each other, four long, dark on their outer line or in their outer row.
    if (!symbol_.dark(side_ - 1, side_ - 1) || symbol_.dark(side_ - 2, side_ - 2) ||
        !symbol_.dark(side_ - 8, 8)) {
      return false;
    }
    for (int start = side_ - 12; start > 9; start -= 8) {
      for (int i = 0; i < 4; ++i) {
        if (!symbol_.dark(start + i, side_ - 1) || symbol_.dark(start + i, side_ - 2)) return false;
        if (!symbol_.dark(side_ - 1, start + i) || symbol_.dark(side_ - 2, start + i)) return false;
      }
    }
    return true;
  }

  /// Level indicator and mask number, five bits; -1 when either copy is no format information.
  int format() const {
    int first = 0;
    int second = 0;
    for (int row = 0; row < 9; ++row) {
      if (row != 6) first |= bit(row, 8) << (row < 6 ? row : row - 1);
    }
    for (int column = 7; column >= 0; --column) {
      if (column != 6) first |= bit(8, column) << (column == 7 ? 8 : 14 - column);
    }
    for (int i = 0; i < 8; ++i) second |= bit(8, side_ - 1 - i) << i;
    for (int i = 0; i < 7; ++i) second |= bit(side_ - 7 + i, 8) << (8 + i);
    if (first != second) return -1;
    for (int data = 0; data < 32; ++data) {
      // Check bits by a shift register of the ten lower coefficients, 0100110111.
      int check = 0;
      for (int i = 4; i >= 0; --i) {
        const int feedback = (check >> 9 & 1) ^ (data >> i & 1);
        check = (check << 1 & 0x3FF) ^ (feedback != 0 ? 0x137 : 0);
      }
      if (((data << 10 | check) ^ 0x2825) == first) return data;
    }
    return -1;
  }

  /// The codewords in their order.
  std::vector<std::uint8_t> codewords(int mask) const {
    std::vector<std::uint8_t> result;
    const auto read = [&](int bottom, int right, int width) {
      unsigned value = 0;
      for (int row = bottom; row > bottom - 8 / width; --row) {
        for (int column = right; column > right - width; --column) {
          const bool masked = row < side_ - 2 || column < side_ - 2;  // the corner is not
          value = value << 1 | ((bit(row, column) != 0) != (masked && inverted(mask, row, column)) ? 1U : 0U);
        }
      }
      result.push_back(static_cast<std::uint8_t>(value));
    };
    // In the corner stands a dark module in place of the first bit, which is 0.
    for (int block = 0, bottom = side_ - 1; bottom > 9; bottom -= 4, ++block) {
      if (block == 0 || block % 2 == 1 || bottom < 13) read(bottom, side_ - 1, 2);
    }
    result.front() &= 0x7F;
    for (int bottom = side_ - 1; bottom > 9; bottom -= 4) read(bottom, side_ - 3, 2);
    for (int bottom = side_ - 1; bottom > 9; bottom -= 2) read(bottom, side_ - 5, 4);
    for (int block = 2, right = side_ - 9; right > 9; right -= 4, ++block) {
      if (block % 2 == 1 || right < 13) read(side_ - 1, right, 4);
      for (int bottom = side_ - 3; bottom > 7; bottom -= 2) read(bottom, right, 4);
      for (const int bottom : {5, 3, 1}) read(bottom, right, 4);  // above the timing pattern
    }
    for (const int right : {8, 5, 3, 1}) {
      for (int bottom = side_ - 9; bottom > 9; bottom -= 4) read(bottom, right, 2);
    }
    return result;
  }

 private:
  int bit(int row, int column) const { return symbol_.dark(row, column) ? 1 : 0; }

  static bool inverted(int mask, int i, int j) {
    const bool table[8] = {
        (i + j) % 2 == 0,         i % 2 == 0,     j % 3 == 0,    (i + j) % 3 == 0,
        (i / 2 + j / 3) % 2 == 0, i * j % 6 == 0, i * j % 6 < 3, (i + j + i * j % 3) % 2 == 0};
    return table[mask];
  }

  const ModuleMatrix& symbol_;
  int side_;
};

class BitReader {
 public:
  explicit BitReader(const std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}
  int left() const { return static_cast<int>(bytes_.size()) * 8 - position_; }
  int take(int count) {
    int value = 0;
    for (; count > 0; --count, ++position_) {
      value = value << 1 | (bytes_.at(static_cast<std::size_t>(position_ / 8)) >> (7 - position_ % 8) & 1);
    }
    return value;
  }

 private:
  const std::vector<std::uint8_t>& bytes_;
  int position_ = 0;
};

bool read_segments(BitReader& bits, int version, Model1Content& content) {
  constexpr std::string_view kAlphanumeric = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ $%*+-./:";
  const int size = version < 10 ? 0 : version < 27 ? 1 : 2;
  const auto put_decimal = [&](int value, int digits) {
    const std::string text = std::to_string(value);
    content.data.insert(content.data.end(), static_cast<std::size_t>(digits) - text.size(), '0');
    content.data.insert(content.data.end(), text.begin(), text.end());
  };
  if (bits.take(4) != 0) return false;
  while (bits.left() >= 4) {
    switch (bits.take(4)) {
      case 0:
        return true;
      case 1: {
        int count = bits.take(10 + 2 * size);
        for (; count >= 3; count -= 3) put_decimal(bits.take(10), 3);
        if (count > 0) put_decimal(bits.take(3 * count + 1), count);
        break;
      }
      case 2: {
        int count = bits.take(9 + 2 * size);
        for (; count > 0; count -= 2) {
          const int value = bits.take(count > 1 ? 11 : 6);
          if (count > 1) content.data.push_back(static_cast<std::uint8_t>(kAlphanumeric.at(value / 45)));
          content.data.push_back(static_cast<std::uint8_t>(kAlphanumeric.at(value % 45)));
        }
        break;
      }
      case 3:
        content.sequence = bits.take(8);
        content.parity = bits.take(8);
        break;
      case 4:
        for (int count = bits.take(size == 0 ? 8 : 16); count > 0; --count) {
          content.data.push_back(static_cast<std::uint8_t>(bits.take(8)));
        }
        break;
      case 8:
        for (int count = bits.take(8 + 2 * size); count > 0; --count) {
          const int value = bits.take(13);
          const int lead = value / 0xC0 + 0x81;
          content.data.push_back(static_cast<std::uint8_t>(lead < 0xA0 ? lead : lead + 0x40));
          content.data.push_back(static_cast<std::uint8_t>(value % 0xC0 + 0x40));
        }
        break;
      default:
        return false;
    }
  }
  return true;
}

}  // namespace

std::optional<Model1Content> read_model1(const ModuleMatrix& symbol,
                                         Model1Layout (*layout)(int version, int level)) {
  const Reader reader(symbol);
  const int format = reader.format();
  if (!reader.fixed_modules_are_right() || format < 0) return std::nullopt;
  const int version = (symbol.rows() - 17) / 4;
  Model1Content content;
  content.level = (format >> 3) ^ 1;
  content.mask = format & 7;

  const Model1Layout parts = layout(version, content.level);
  const std::vector<std::uint8_t> codewords = reader.codewords(content.mask);
  if (codewords.size() != static_cast<std::size_t>(parts.total_codewords)) return std::nullopt;
  const int data_length = parts.data_codewords / parts.blocks;
  const int check_length = (parts.total_codewords - parts.data_codewords) / parts.blocks;
  std::vector<std::uint8_t> data;
  for (int i = 0; i < parts.blocks; ++i) {
    const auto block_data = codewords.begin() + i * data_length;
    const auto check = codewords.begin() + parts.data_codewords + i * check_length;
    std::vector<std::uint8_t> block(block_data, block_data + data_length);
    data.insert(data.end(), block.begin(), block.end());
    block.insert(block.end(), check, check + check_length);
    if (!is_valid_block(block, check_length)) return std::nullopt;
  }
  int filler = 0xEC;
  for (int i = parts.data_codewords + parts.blocks * check_length; i < parts.total_codewords; ++i) {
    if (codewords[static_cast<std::size_t>(i)] != filler) return std::nullopt;
    filler ^= 0xEC ^ 0x11;
  }
  BitReader bits(data);
  if (!read_segments(bits, version, content)) return std::nullopt;
  return content;
}

}  // namespace korvex::qr::test
