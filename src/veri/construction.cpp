// From blocks to modules: interleaving, the places of the 2 x 2 module cells, the border.
#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#include "veri/request.hpp"

namespace korvex::veri {
namespace {

constexpr int kCellSide = 2;  // modules; a cell holds one 4-bit symbol
constexpr int kGroupSymbols = 2 * kBlockBytes;
constexpr int kMaxSymbols = kMaxInterior * kMaxInterior / 4;

/// 4-bit symbols in the order of their cells. Asked for more than there are, it gives zeros.
class SymbolStream {
 public:
  /// Takes the first symbol of every group, then the second, and so on; a group is eight bytes of `blocks`.
  /// The last group of an interior takes part only as far as there are cells.
  SymbolStream(const Bytes& blocks, int cell_count) {
    const int groups = (cell_count + kGroupSymbols - 1) / kGroupSymbols;
    const int in_last_group = cell_count - (groups - 1) * kGroupSymbols;
    for (int place = 0; place < kGroupSymbols; ++place) {
      const int taking_part = place < in_last_group ? groups : groups - 1;
      const int shift = place % 2 == 0 ? 4 : 0;
      for (int index = place / 2; index < taking_part * kBlockBytes; index += kBlockBytes) {
        const int byte = index < blocks.size ? blocks.bytes[static_cast<std::size_t>(index)] : 0;
        symbols_[static_cast<std::size_t>(size_++)] = static_cast<std::uint8_t>(byte >> shift & 0xF);
      }
    }
  }
  unsigned next() { return next_ < size_ ? symbols_[static_cast<std::size_t>(next_++)] : 0U; }

 private:
  std::array<std::uint8_t, kMaxSymbols> symbols_;  // not cleared: size_ says what is there
  int size_ = 0;
  int next_ = 0;
};

/// Darkens modules of the interior, whose (0, 0) is the first module inside the border.
class Interior {
 public:
  Interior(ModuleMatrix& matrix, int side) : matrix_(matrix), side_(side) {}
  [[nodiscard]] int side() const { return side_; }

  /// Adds the low `count` bits of `modules` to a row, leftmost highest; at most 32.
  void add_run(int row, int column, std::uint64_t modules, int count) {
    const auto words = matrix_.row(row + kBorderModules);
    const int first = column + kBorderModules;
    const auto word = static_cast<std::size_t>(first / 64);
    const int room = 64 - first % 64;  // in the first word
    if (count <= room) {
      words[word] |= modules << (room - count);
    } else {
      words[word] |= modules >> (count - room);
      words[word + 1] |= modules << (64 - (count - room));
    }
  }
  /// Modules outside the interior are dropped.
  void add(int row, int column, bool dark) {
    if (dark && row < side_ && column < side_) add_run(row, column, 1, 1);
  }
  /// Bits 3 and 2 above, 1 and 0 below.
  void add_cell(int cell_row, int cell_column, unsigned symbol) {
    add_run(kCellSide * cell_row, kCellSide * cell_column, symbol >> 2, kCellSide);
    add_run(kCellSide * cell_row + 1, kCellSide * cell_column, symbol & 3, kCellSide);
  }

 private:
  ModuleMatrix& matrix_;
  int side_;
};

/// Square tiles of cells, row by row, as many as fit; returns how many cells a side they cover.
int place_tiles(Interior& interior, SymbolStream& symbols) {
  const int tile =
      (interior.side() + 7) / 8;  // cells a side, at most 12: a row of them is a run of 24 modules
  const int tiles = interior.side() / (kCellSide * tile);
  for (int tile_row = 0; tile_row < tiles; ++tile_row) {
    for (int tile_column = 0; tile_column < tiles; ++tile_column) {
      for (int row = tile_row * tile; row < (tile_row + 1) * tile; ++row) {
        std::uint32_t upper = 0;
        std::uint32_t lower = 0;
        for (int i = 0; i < tile; ++i) {
          const unsigned symbol = symbols.next();
          upper = upper << kCellSide | symbol >> 2;
          lower = lower << kCellSide | (symbol & 3);
        }
        const int column = kCellSide * tile_column * tile;
        interior.add_run(kCellSide * row, column, upper, kCellSide * tile);
        interior.add_run(kCellSide * row + 1, column, lower, kCellSide * tile);
      }
    }
  }
  return tiles * tile;
}

/// Cells to the right of and below the square of `covered` cells a side, from the outside to the corner.
void place_ring(Interior& interior, SymbolStream& symbols, int covered) {
  for (int i = 0; i < covered; ++i) {
    interior.add_cell(i, covered, symbols.next());
    interior.add_cell(covered, i, symbols.next());
  }
  interior.add_cell(covered, covered, symbols.next());
}

/// The last column and row of an odd interior: half a symbol each.
void place_odd_edge(Interior& interior, SymbolStream& symbols) {
  const int last = interior.side() - 1;
  for (int i = 0; i <= last; i += kCellSide) {
    const unsigned symbol = symbols.next();
    interior.add(i, last, (symbol & 8) != 0);
    interior.add(i + 1, last, (symbol & 4) != 0);
    interior.add(last, i, (symbol & 2) != 0);
    interior.add(last, i + 1, (symbol & 1) != 0);
  }
}

void place_cells(Interior& interior, const Bytes& blocks) {
  const int side = interior.side();
  SymbolStream symbols(blocks, side * side / 4);
  for (int covered = place_tiles(interior, symbols); covered < side / kCellSide; ++covered) {
    place_ring(interior, symbols, covered);
  }
  if (side % 2 != 0) place_odd_edge(interior, symbols);
}

/// Without correction the bytes fill the interior bit by bit, row after row.
void place_rows(Interior& interior, const Bytes& stream) {
  constexpr int kRunBits = 16;
  const auto byte_at = [&](int index) -> unsigned {
    return index < stream.size ? stream.bytes[static_cast<std::size_t>(index)] : 0U;
  };
  const int side = interior.side();
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; column += kRunBits) {
      const int bit = row * side + column;
      const int count = std::min(kRunBits, side - column);
      const unsigned three_bytes = byte_at(bit / 8) << 16 | byte_at(bit / 8 + 1) << 8 | byte_at(bit / 8 + 2);
      const unsigned run = three_bytes >> (24 - bit % 8 - count) & ((1U << count) - 1);
      interior.add_run(row, column, run, count);
    }
  }
}

void place_border(ModuleMatrix& matrix) {
  const int last = matrix.rows() - 1;
  for (int i = 0; i <= last; ++i) {
    matrix.set_dark(0, i, true);
    matrix.set_dark(last, i, true);
    matrix.set_dark(i, 0, true);
    matrix.set_dark(i, last, true);
  }
}

}  // namespace

ModuleMatrix construct(const Bytes& blocks, const Request& request) {
  ModuleMatrix matrix(request.size, request.size);
  Interior interior(matrix, request.interior());
  if (request.correction == Correction::none) {
    place_rows(interior, blocks);
  } else {
    place_cells(interior, blocks);
  }
  place_border(matrix);
  return matrix;
}

}  // namespace korvex::veri
