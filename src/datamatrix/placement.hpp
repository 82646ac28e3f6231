// Which bit of which codeword every module shows. ISO/IEC 16022:2006, Annex F.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace korvex::datamatrix {

/// A bit of the codewords: 8 x codeword + bit, both from 0, bit 0 the most significant. Behind the last
/// codeword follow a light and a dark bit, for the corner that no codeword reaches.
using BitNumber = std::uint16_t;

template <int Rows, int Columns>
struct Placement {
  std::array<BitNumber, std::size_t{Rows} * Columns> bits{};  ///< of all modules, row by row
  int codewords = 0;  ///< placed; each module has one bit if that is Rows x Columns / 8
};

/// Lays codeword after codeword out over a mapping matrix, as the standard walks over it.
template <int Rows, int Columns>
class PlacementWalk {
 public:
  static constexpr Placement<Rows, Columns> run() {
    PlacementWalk walk;
    int row = 4;
    int column = 0;
    while (row < Rows || column < Columns) {
      walk.turn_at(row, column);
      for (; row >= 0 && column < Columns; row -= 2, column += 2) walk.place_shape(row, column);
      row += 1;
      column += 3;
      for (; row < Rows && column >= 0; row += 2, column -= 2) walk.place_shape(row, column);
      row += 3;
      column += 1;
    }
    const int codewords = walk.last_bit_ / 8;
    walk.fill_fixed_corner();
    return walk.finished(codewords);
  }

 private:
  struct Place {
    int row;
    int column;
  };
  using Shape = Place[8];  // the bits of a codeword, most significant first

  // The lower right module of a shape is (0, 0).
  static constexpr Shape kShape = {{-2, -2}, {-2, -1}, {-1, -2}, {-1, -1}, {-1, 0}, {0, -2}, {0, -1}, {0, 0}};
  // Codewords that are laid out around corners where the walk turns. Negative places count from the bottom
  // and from the right, -1 being the last row and column.
  static constexpr Shape kCorner1 = {{-1, 0}, {-1, 1}, {-1, 2}, {0, -2}, {0, -1}, {1, -1}, {2, -1}, {3, -1}};
  static constexpr Shape kCorner2 = {{-3, 0}, {-2, 0}, {-1, 0}, {0, -4}, {0, -3}, {0, -2}, {0, -1}, {1, -1}};
  static constexpr Shape kCorner3 = {{-3, 0}, {-2, 0}, {-1, 0}, {0, -2}, {0, -1}, {1, -1}, {2, -1}, {3, -1}};
  static constexpr Shape kCorner4 = {{-1, 0}, {-1, -1}, {0, -3}, {0, -2}, {0, -1}, {1, -3}, {1, -2}, {1, -1}};

  constexpr void turn_at(int row, int column) {
    if (row == Rows && column == 0) place_corner(kCorner1);
    if (row == Rows - 2 && column == 0 && Columns % 4 != 0) place_corner(kCorner2);
    if (row == Rows - 2 && column == 0 && Columns % 8 == 4) place_corner(kCorner3);
    if (row == Rows + 4 && column == 2 && Columns % 8 == 0) place_corner(kCorner4);
  }

  constexpr void place_corner(const Shape& corner) {
    for (const auto& [row, column] : corner) {
      place(row < 0 ? row + Rows : row, column < 0 ? column + Columns : column);
    }
  }

  /// Places the next codeword with its lower right module at (row, column), unless that is outside or taken.
  /// Modules above the top edge come in again from below, those left of the left edge from the right,
  /// shifted so that the shapes fit together.
  constexpr void place_shape(int row, int column) {
    if (row < 0 || row >= Rows || column < 0 || column >= Columns) return;
    if (matrix_[row * Columns + column] != 0) return;
    for (const auto& [down, right] : kShape) {
      int r = row + down;
      int c = column + right;
      if (r < 0) {
        r += Rows;
        c += 4 - (Rows + 4) % 8;
      }
      if (c < 0) {
        c += Columns;
        r += 4 - (Columns + 4) % 8;
      }
      place(r, c);
    }
  }

  constexpr void place(int row, int column) {
    matrix_[row * Columns + column] = static_cast<BitNumber>(++last_bit_);
  }

  /// Matrices whose size is no multiple of 8 leave four modules at the lower right.
  constexpr void fill_fixed_corner() {
    if (Rows * Columns % 8 == 0) return;
    const int light = ++last_bit_;
    const int dark = ++last_bit_;
    for (const int row : {Rows - 2, Rows - 1}) {
      for (const int column : {Columns - 2, Columns - 1}) {
        matrix_[row * Columns + column] = static_cast<BitNumber>((row + column) % 2 == 0 ? dark : light);
      }
    }
  }

  [[nodiscard]] constexpr Placement<Rows, Columns> finished(int codewords) const {
    Placement<Rows, Columns> placement{{}, codewords};
    for (int i = 0; i < Rows * Columns; ++i) {
      if (matrix_[i] == 0) placement.codewords = 0;  // a hole, so another module was placed twice
      placement.bits[i] = static_cast<BitNumber>(matrix_[i] - 1);
    }
    return placement;
  }

  BitNumber matrix_[Rows * Columns] = {};  // bit numbers from 1; 0: nothing there yet
  int last_bit_ = 0;
};

}  // namespace korvex::datamatrix
