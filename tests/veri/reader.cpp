#include "veri/reader.hpp"

#include <cstddef>
#include <numeric>

namespace korvex::veri::test {
namespace {

using Symbols = std::vector<int>;

// The powers of the root a of x^4 + x + 1.
constexpr int kPowers[15] = {1, 2, 4, 8, 3, 6, 12, 11, 5, 10, 7, 14, 15, 13, 9};

int power(int exponent) {
  return kPowers[exponent % 15];
}
int logarithm(int element) {
  int exponent = 0;
  while (kPowers[exponent] != element) ++exponent;
  return exponent;
}
int multiply(int a, int b) {
  return a == 0 || b == 0 ? 0 : power(logarithm(a) + logarithm(b));
}
int inverse(int a) {
  return power(15 - logarithm(a));
}

/// What symbol `place` (0 to 15) adds to syndrome `index` (1 to 2m): symbol 15 stands in the last one alone.
int coefficient(int index, int place, int check_bytes) {
  if (place == 15) return index == 2 * check_bytes ? 1 : 0;
  return power(index * (14 - place));
}

Symbols syndromes(const Symbols& block, int check_bytes) {
  Symbols all;
  for (int index = 1; index <= 2 * check_bytes; ++index) {
    int sum = 0;
    for (int place = 0; place < 16; ++place) {
      sum ^= multiply(coefficient(index, place, check_bytes), block[static_cast<std::size_t>(place)]);
    }
    all.push_back(sum);
  }
  return all;
}

/// The error values at `places` that explain the syndromes; nothing when none do. By Gaussian elimination.
std::optional<Symbols> solve(const Symbols& syndrome, const std::vector<int>& places, int check_bytes) {
  std::vector<Symbols> rows;
  for (int index = 1; index <= 2 * check_bytes; ++index) {
    Symbols row;
    for (const int place : places) row.push_back(coefficient(index, place, check_bytes));
    row.push_back(syndrome[static_cast<std::size_t>(index - 1)]);
    rows.push_back(row);
  }
  const std::size_t unknowns = places.size();
  for (std::size_t column = 0; column < unknowns; ++column) {
    std::size_t pivot = column;
    while (pivot < rows.size() && rows[pivot][column] == 0) ++pivot;
    if (pivot == rows.size()) return std::nullopt;
    std::swap(rows[column], rows[pivot]);
    const int scale = inverse(rows[column][column]);
    for (int& entry : rows[column]) entry = multiply(entry, scale);
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const int factor = rows[row][column];
      if (row == column || factor == 0) continue;
      for (std::size_t i = 0; i <= unknowns; ++i) rows[row][i] ^= multiply(factor, rows[column][i]);
    }
  }
  for (std::size_t row = unknowns; row < rows.size(); ++row) {
    if (rows[row][unknowns] != 0) return std::nullopt;
  }
  Symbols errors;
  for (std::size_t i = 0; i < unknowns; ++i) errors.push_back(rows[i][unknowns]);
  return errors;
}

/// Tries every set of up to `check_bytes` wrong places, the smallest first.
bool correct(Symbols& block, int check_bytes) {
  const Symbols syndrome = syndromes(block, check_bytes);
  for (int wrong = 0; wrong <= check_bytes; ++wrong) {
    for (unsigned set = 0; set < 1U << 16; ++set) {
      if (__builtin_popcount(set) != wrong) continue;
      std::vector<int> places;
      for (int place = 0; place < 16; ++place) {
        if ((set >> place & 1) != 0) places.push_back(place);
      }
      if (const auto errors = solve(syndrome, places, check_bytes)) {
        for (std::size_t i = 0; i < places.size(); ++i) {
          block[static_cast<std::size_t>(places[i])] ^= (*errors)[i];
        }
        return true;
      }
    }
  }
  return false;
}

bool inside_dark(const ModuleMatrix& symbol, Place place) {
  const int side = symbol.rows() - 2;
  return place.row < side && place.column < side && symbol.dark(place.row + 1, place.column + 1);
}

/// x^16 + x^15 + x^2 + 1, bit by bit.
int check_value(const std::vector<std::uint8_t>& bytes) {
  int remainder = 0;
  for (const int byte : bytes) {
    for (int bit = 7; bit >= 0; --bit) {
      const int out = (remainder >> 15 ^ byte >> bit) & 1;
      remainder = (remainder << 1 ^ (out != 0 ? 0x8005 : 0)) & 0xFFFF;
    }
  }
  return remainder;
}

std::vector<std::uint8_t> read_plain(const ModuleMatrix& symbol) {
  const int side = symbol.rows() - 2;
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(side * side / 8));
  for (int bit = 0; bit < static_cast<int>(bytes.size()) * 8; ++bit) {
    if (inside_dark(symbol, {bit / side, bit % side})) {
      bytes[static_cast<std::size_t>(bit / 8)] |= static_cast<std::uint8_t>(0x80 >> bit % 8);
    }
  }
  return bytes;
}

std::optional<std::vector<std::uint8_t>> read_blocks(const ModuleMatrix& symbol, int check_bytes) {
  const int side = symbol.rows() - 2;
  const int interior_bytes = side * side / 8;
  const auto places = symbol_places(side);
  const auto blocks = symbol_blocks(side * side / 4);
  std::vector<Symbols> received(static_cast<std::size_t>((side * side / 4 + 15) / 16));
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    int value = 0;
    for (const Place place : places[i]) value = 2 * value + (inside_dark(symbol, place) ? 1 : 0);
    received[static_cast<std::size_t>(blocks[i])].push_back(value);
  }
  std::vector<std::uint8_t> bytes;
  for (std::size_t number = 0; number * 8 < static_cast<std::size_t>(interior_bytes); ++number) {
    const int here = std::min(8, interior_bytes - 8 * static_cast<int>(number));
    if (here <= check_bytes) break;  // too few for a block
    Symbols block(static_cast<std::size_t>(2 * (8 - here)), 0);
    const Symbols& symbols = received[number];
    block.insert(block.end(), symbols.begin(), symbols.begin() + 2 * here);
    if (!correct(block, check_bytes)) return std::nullopt;
    for (int i = 2 * (8 - here); i < 2 * (8 - check_bytes); i += 2) {
      bytes.push_back(static_cast<std::uint8_t>(block[static_cast<std::size_t>(i)] * 16 +
                                                block[static_cast<std::size_t>(i + 1)]));
    }
  }
  return bytes;
}

}  // namespace

std::vector<std::vector<Place>> symbol_places(int interior) {
  std::vector<std::vector<Place>> all;
  const auto cell = [&](int i, int j) {
    all.push_back({{2 * i, 2 * j}, {2 * i, 2 * j + 1}, {2 * i + 1, 2 * j}, {2 * i + 1, 2 * j + 1}});
  };
  const int tile = (interior + 7) / 8;
  const int tiles = interior / (2 * tile);
  for (int number = 0; number < tiles * tiles; ++number) {
    for (int inner = 0; inner < tile * tile; ++inner) {
      cell(number / tiles * tile + inner / tile, number % tiles * tile + inner % tile);
    }
  }
  for (int ring = tiles * tile; ring < interior / 2; ++ring) {
    for (int i = 0; i < ring; ++i) {
      cell(i, ring);
      cell(ring, i);
    }
    cell(ring, ring);
  }
  const int last = interior - 1;
  for (int i = 0; interior % 2 != 0 && i <= last; i += 2) {
    all.push_back({{i, last}, {i + 1, last}, {last, i}, {last, i + 1}});
  }
  return all;
}

std::vector<int> symbol_blocks(int symbol_count) {
  std::vector<int> order;
  for (int place = 0; place < 16; ++place) {
    for (int symbol = place; symbol < symbol_count; symbol += 16) order.push_back(symbol / 16);
  }
  return order;
}

std::optional<std::vector<std::uint8_t>> read(const ModuleMatrix& symbol, int check_bytes) {
  const int last = symbol.rows() - 1;
  for (int i = 0; i <= last; ++i) {
    if (!symbol.dark(0, i) || !symbol.dark(last, i) || !symbol.dark(i, 0) || !symbol.dark(i, last)) {
      return std::nullopt;
    }
  }
  auto bytes = check_bytes == 0 ? read_plain(symbol) : read_blocks(symbol, check_bytes);
  if (!bytes || bytes->size() < 2) return std::nullopt;
  const int expected = (*bytes)[bytes->size() - 2] * 256 + bytes->back();
  bytes->resize(bytes->size() - 2);
  if (check_value(*bytes) != expected) return std::nullopt;
  return bytes;
}

}  // namespace korvex::veri::test
