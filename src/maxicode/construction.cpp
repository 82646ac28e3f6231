// Codewords to modules.
#include <array>
#include <cstddef>

#include "maxicode/places.hpp"
#include "maxicode/request.hpp"

namespace korvex::maxicode {
namespace {

constexpr std::uint64_t column_bit(int column) {
  return std::uint64_t{1} << (63 - column);
}

/// The orientation modules, row by row.
constexpr auto kOrientationRows = [] {
  std::array<std::uint64_t, kRows> rows{};
  for (const auto& [cell, dark] : kOrientation) {
    if (dark) rows[static_cast<std::size_t>(cell.row)] |= column_bit(cell.column);
  }
  return rows;
}();

/// Each codeword's bits in the order of kCells: the primary message's least significant first, the secondary
/// message's most significant first.
constexpr int bit_of(int codeword, int place) {
  return codeword < kPrimaryCodewords ? place : 5 - place;
}

/// Where each bit of a codeword goes, bit 0 first.
struct Placing {
  std::array<std::uint8_t, 6> row{};
  std::array<std::uint8_t, 6> column{};
};
constexpr auto kPlacings = [] {
  std::array<Placing, kCodewords> placings{};
  for (int codeword = 0; codeword < kCodewords; ++codeword) {
    for (int place = 0; place < 6; ++place) {
      const Cell cell = kCells[static_cast<std::size_t>(6 * codeword + place)];
      auto& placing = placings[static_cast<std::size_t>(codeword)];
      const auto bit = static_cast<std::size_t>(bit_of(codeword, place));
      placing.row[bit] = cell.row;
      placing.column[bit] = cell.column;
    }
  }
  return placings;
}();

}  // namespace

ModuleMatrix construct(const AllCodewords& codewords) {
  std::array<std::uint64_t, kRows> rows = kOrientationRows;
  for (std::size_t codeword = 0; codeword < codewords.size(); ++codeword) {
    const Placing& placing = kPlacings[codeword];
    for (std::size_t bit = 0; bit < 6; ++bit) {
      const std::uint64_t dark = codewords[codeword] >> bit & 1U;
      rows[static_cast<std::size_t>(placing.row[bit])] |= dark << (63 - placing.column[bit]);
    }
  }
  ModuleMatrix modules(kRows, kColumns);
  for (int row = 0; row < kRows; ++row) modules.row(row)[0] = rows[static_cast<std::size_t>(row)];
  return modules;
}

}  // namespace korvex::maxicode
