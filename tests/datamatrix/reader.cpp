#include "datamatrix/reader.hpp"

#include <array>
#include <cstddef>
#include <string_view>

namespace korvex::datamatrix::test {
namespace {

// ISO/IEC 16022:2006, Table 7: modules, data codewords, check codewords of a block, blocks.
struct Size {
  int rows, columns, data, check, blocks;
};
constexpr Size kSizes[] = {
    {10, 10, 3, 5, 1},      {12, 12, 5, 7, 1},       {14, 14, 8, 10, 1},      {16, 16, 12, 12, 1},
    {18, 18, 18, 14, 1},    {20, 20, 22, 18, 1},     {22, 22, 30, 20, 1},     {24, 24, 36, 24, 1},
    {26, 26, 44, 28, 1},    {32, 32, 62, 36, 1},     {36, 36, 86, 42, 1},     {40, 40, 114, 48, 1},
    {44, 44, 144, 56, 1},   {48, 48, 174, 68, 1},    {52, 52, 204, 42, 2},    {64, 64, 280, 56, 2},
    {72, 72, 368, 36, 4},   {80, 80, 456, 48, 4},    {88, 88, 576, 56, 4},    {96, 96, 696, 68, 4},
    {104, 104, 816, 56, 6}, {120, 120, 1050, 68, 6}, {132, 132, 1304, 62, 8}, {144, 144, 1558, 62, 10},
    {8, 18, 5, 7, 1},       {8, 32, 10, 11, 1},      {12, 26, 16, 14, 1},     {12, 36, 22, 18, 1},
    {16, 36, 32, 24, 1},    {16, 48, 49, 28, 1},
};

using Grid = std::vector<std::vector<int>>;

/// The modules of all data regions put together; 0 and 1. Empty when a finder or timing pattern is wrong.
Grid data_modules(const ModuleMatrix& symbol) {
  const int rows = symbol.rows();
  const int columns = symbol.columns();
  const int across = rows != columns ? (columns > 26 ? 2 : 1)
                     : rows > 104    ? 6
                     : rows > 52     ? 4
                     : rows > 26     ? 2
                                     : 1;
  const int down = rows != columns ? 1 : across;
  const int height = rows / down;
  const int width = columns / across;
  Grid grid;
  for (int row = 0; row < rows; ++row) {
    const bool border_row = row % height == 0 || row % height == height - 1;
    if (!border_row) grid.emplace_back();
    for (int column = 0; column < columns; ++column) {
      const bool dark = symbol.dark(row, column);
      bool expected = dark;
      if (column % width == width - 1) expected = row % 2 == 1;
      if (row % height == 0) expected = column % 2 == 0;
      if (column % width == 0 || row % height == height - 1) expected = true;
      if (dark != expected) return {};
      if (!border_row && column % width != 0 && column % width != width - 1)
        grid.back().push_back(dark ? 1 : 0);
    }
  }
  return grid;
}

/// The standard's own way of placing codewords, read backwards: Annex F, figure by figure.
class Placement {
 public:
  explicit Placement(const Grid& grid)
      : grid_(grid), rows_(static_cast<int>(grid.size())), columns_(static_cast<int>(grid[0].size())) {
    seen_.assign(grid.size(), std::vector<bool>(grid[0].size()));
  }

  std::vector<std::uint8_t> codewords() {
    int row = 4;
    int column = 0;
    do {
      if (row == rows_ && column == 0) corner("B0 B1 B2 0Y 0Z 1Z 2Z 3Z");
      if (row == rows_ - 2 && column == 0 && columns_ % 4 != 0) corner("b0 C0 B0 0W 0X 0Y 0Z 1Z");
      if (row == rows_ - 2 && column == 0 && columns_ % 8 == 4) corner("b0 C0 B0 0Y 0Z 1Z 2Z 3Z");
      if (row == rows_ + 4 && column == 2 && columns_ % 8 == 0) corner("B0 BZ 0X 0Y 0Z 1X 1Y 1Z");
      do {
        if (row < rows_ && column >= 0 && !seen(row, column)) shape(row, column);
        row -= 2;
        column += 2;
      } while (row >= 0 && column < columns_);
      row += 1;
      column += 3;
      do {
        if (row >= 0 && column < columns_ && !seen(row, column)) shape(row, column);
        row += 2;
        column -= 2;
      } while (row < rows_ && column >= 0);
      row += 3;
      column += 1;
    } while (row < rows_ || column < columns_);
    return codewords_;
  }

  /// All modules read once, but for the four of a fixed corner, which are as they must be.
  bool complete() {
    if (!seen(rows_ - 1, columns_ - 1)) {
      for (const int up : {1, 2}) {
        for (const int left : {1, 2}) {
          if (grid_[rows_ - up][columns_ - left] != (up == left ? 1 : 0)) return false;
          seen_[rows_ - up][columns_ - left] = true;
        }
      }
    }
    for (const auto& row : seen_) {
      for (const bool seen : row) {
        if (!seen) return false;
      }
    }
    return !twice_;
  }

 private:
  bool seen(int row, int column) const { return seen_[row][column]; }

  int module(int row, int column) {
    if (row < 0) {
      row += rows_;
      column += 4 - ((rows_ + 4) % 8);
    }
    if (column < 0) {
      column += columns_;
      row += 4 - ((columns_ + 4) % 8);
    }
    twice_ = twice_ || seen_[row][column];
    seen_[row][column] = true;
    return grid_[row][column];
  }

  void shape(int row, int column) {
    int codeword = 0;
    for (const auto& [r, c] : {std::pair{2, 2}, {2, 1}, {1, 2}, {1, 1}, {1, 0}, {0, 2}, {0, 1}, {0, 0}}) {
      codeword = codeword * 2 + module(row - r, column - c);
    }
    codewords_.push_back(static_cast<std::uint8_t>(codeword));
  }

  /// Rows 0 1 2 3 from the top, b C B the last three; columns 0 1 2 from the left, W X Y Z the last four.
  void corner(std::string_view places) {
    int codeword = 0;
    for (std::size_t i = 0; i < places.size(); i += 3) {
      const char r = places[i];
      const char c = places[i + 1];
      const int row = r == 'b' ? rows_ - 3 : r == 'C' ? rows_ - 2 : r == 'B' ? rows_ - 1 : r - '0';
      codeword = codeword * 2 + module(row, c >= 'W' ? columns_ - 1 - ('Z' - c) : c - '0');
    }
    codewords_.push_back(static_cast<std::uint8_t>(codeword));
  }

  const Grid& grid_;
  int rows_;
  int columns_;
  std::vector<std::vector<bool>> seen_;
  std::vector<std::uint8_t> codewords_;
  bool twice_ = false;
};

unsigned multiply(unsigned a, unsigned b) {
  unsigned product = 0;
  for (; b != 0; b >>= 1) {
    if ((b & 1) != 0) product ^= a;
    a <<= 1;
    if ((a & 0x100) != 0) a ^= 0x12D;
  }
  return product;
}

/// True when every block vanishes at the roots 2^1 to 2^check.
bool blocks_are_right(const Size& size, const std::vector<std::uint8_t>& codewords) {
  for (int block = 0; block < size.blocks; ++block) {
    unsigned root = 1;
    for (int i = 0; i < size.check; ++i) {
      root = multiply(root, 2);
      unsigned value = 0;
      for (int at = block; at < size.data; at += size.blocks) value = multiply(value, root) ^ codewords[at];
      for (int j = 0; j < size.check; ++j) {
        value = multiply(value, root) ^ codewords[size.data + j * size.blocks + block];
      }
      if (value != 0) return false;
    }
  }
  return true;
}

/// Reads the data codewords scheme by scheme.
class Decoder {
 public:
  explicit Decoder(Reading& out) : out_(out), data_(out.codewords) {}

  void run() {
    while (left() > 0 && out_.fault.empty()) ascii();
  }

 private:
  int left() const { return static_cast<int>(data_.size()) - at_; }
  int next() { return data_[static_cast<std::size_t>(at_++)]; }
  void add(int character) { out_.message.push_back(static_cast<std::uint16_t>(character)); }
  void fail(const std::string& what) { out_.fault = what + " at codeword " + std::to_string(at_); }

  void ascii() {
    const int c = next();
    if (c >= 1 && c <= 128) return add(c - 1);
    if (c >= 130 && c <= 229) {
      add('0' + (c - 130) / 10);
      return add('0' + (c - 130) % 10);
    }
    if (c == 129) return pads();
    if (c == 230 || c == 239) return triples(c == 239, false);
    if (c == 238) return triples(false, true);
    if (c == 231) return base256();
    if (c == 232) return add(256);
    if (c == 235 && left() > 0) return add(next() + 127);
    if (c == 240) return edifact();
    fail("codeword " + std::to_string(c) + " in ASCII");
  }

  void pads() {
    while (left() > 0) {
      const int expected = 129 + (149 * (at_ + 1)) % 253 + 1;
      if (next() != (expected > 254 ? expected - 254 : expected)) fail("wrong pad");
    }
  }

  void triples(bool text, bool x12) {
    shift_ = upper_ = 0;
    while (left() >= 2) {
      const int high = next();
      if (high == 254) return;
      const int number = high * 256 + next() - 1;
      for (const int value : {number / 1600, number / 40 % 40, number % 40})
        x12 ? x12_value(value) : value_of(value, text);
    }
    if (left() == 1 && data_[static_cast<std::size_t>(at_)] == 254) ++at_;  // else ASCII without an unlatch
  }

  void x12_value(int value) {
    constexpr std::string_view kCharacters = "\r*> 0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    if (value >= static_cast<int>(kCharacters.size())) return fail("value in X12");
    add(kCharacters[static_cast<std::size_t>(value)]);
  }

  void value_of(int value, bool text) {
    constexpr std::string_view kC40 =
        "   "
        " 0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    constexpr std::string_view kText =
        "   "
        " 0123456789abcdefghijklmnopqrstuvwxyz";
    constexpr std::string_view kShift2 = "!\"#$%&'()*+,-./:;<=>?@[\\]^_";
    constexpr std::string_view kShift3 = "`abcdefghijklmnopqrstuvwxyz{|}~\x7F";
    constexpr std::string_view kTextShift3 = "`ABCDEFGHIJKLMNOPQRSTUVWXYZ{|}~\x7F";
    const int set = shift_;
    if (set == 0 && value < 3) {
      shift_ = value + 1;
      return;
    }
    shift_ = 0;
    if (set == 2 && value == 30) {
      upper_ = 128;
      return;
    }
    if (set == 2 && value == 27) return add(256);
    const auto table = set == 0 ? (text ? kText : kC40) : set == 2 ? kShift2 : text ? kTextShift3 : kShift3;
    if (set != 1 && value >= static_cast<int>(table.size())) return fail("value in C40 or Text");
    add((set == 1 ? value : table[static_cast<std::size_t>(value)]) + upper_);
    upper_ = 0;
  }

  void edifact() {
    while (left() >= 3) {
      const int bits = data_[static_cast<std::size_t>(at_)] << 16 |
                       data_[static_cast<std::size_t>(at_ + 1)] << 8 |
                       data_[static_cast<std::size_t>(at_ + 2)];
      for (int i = 0; i < 4; ++i) {
        const int value = bits >> (18 - 6 * i) & 63;
        if (value == 31) {
          at_ += (6 * (i + 1) + 7) / 8;
          return;
        }
        add(value < 32 ? value + 64 : value);
      }
      at_ += 3;
    }
  }

  int base256_byte() {
    const int pseudo_random = (149 * (at_ + 1)) % 255 + 1;
    return (next() - pseudo_random + 256) & 255;
  }
  void base256() {
    if (left() == 0) return fail("no length");
    int length = base256_byte();
    if (length == 0) {
      length = left();
    } else if (length >= 250) {
      length = (length - 249) * 250 + base256_byte();
    }
    if (length > left()) return fail("Base 256 beyond the symbol");
    while (length-- > 0) add(base256_byte());
  }

  Reading& out_;
  const std::vector<std::uint8_t>& data_;
  int at_ = 0;
  int shift_ = 0;
  int upper_ = 0;
};

}  // namespace

Reading read_codewords(std::vector<std::uint8_t> data) {
  Reading reading;
  reading.codewords = std::move(data);
  Decoder(reading).run();
  return reading;
}

Reading read(const ModuleMatrix& symbol) {
  for (const Size& size : kSizes) {
    if (size.rows != symbol.rows() || size.columns != symbol.columns()) continue;
    const Grid grid = data_modules(symbol);
    if (grid.empty()) return {.fault = "finder or timing pattern"};
    Placement placement(grid);
    const std::vector<std::uint8_t> codewords = placement.codewords();
    if (!placement.complete()) return {.fault = "placement"};
    if (static_cast<int>(codewords.size()) != size.data + size.check * size.blocks)
      return {.fault = "codeword count"};
    if (!blocks_are_right(size, codewords)) return {.fault = "error correction"};
    Reading reading = read_codewords({codewords.begin(), codewords.begin() + size.data});
    reading.codewords = codewords;
    return reading;
  }
  return {.fault = "no such size"};
}

}  // namespace korvex::datamatrix::test
