// The modules of a two-dimensional symbol.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <stdexcept>
#include <vector>

namespace korvex {

/// A symbol without quiet zone. (row 0, column 0) is the top left; true is dark.
///
/// A row is a run of 64-bit words, column 0 in the most significant bit of the first; bits past the last
/// column are 0. Encoders work on whole words, everyone else asks dark().
class ModuleMatrix {
 public:
  ModuleMatrix() = default;
  /// All light. Both counts are at least 0. Throws std::length_error for more modules than memory can have.
  ModuleMatrix(int rows, int columns)
      : rows_(rows),
        columns_(columns),
        words_per_row_(columns / 64 + (columns % 64 != 0 ? 1 : 0)),
        words_(word_count(rows, columns)) {}

  [[nodiscard]] int rows() const { return rows_; }
  [[nodiscard]] int columns() const { return columns_; }
  [[nodiscard]] int words_per_row() const { return words_per_row_; }

  /// Requires a place inside the matrix.
  [[nodiscard]] bool dark(int row, int column) const {
    return (words_[word_index(row, column)] >> (63 - column % 64) & 1U) != 0;
  }
  void set_dark(int row, int column, bool dark) {
    const std::uint64_t bit = std::uint64_t{1} << (63 - column % 64);
    std::uint64_t& word = words_[word_index(row, column)];
    word = dark ? word | bit : word & ~bit;
  }

  /// The words of one row.
  [[nodiscard]] std::span<std::uint64_t> row(int index) {
    return std::span(words_).subspan(word_index(index, 0), static_cast<std::size_t>(words_per_row_));
  }
  [[nodiscard]] std::span<const std::uint64_t> row(int index) const {
    return std::span(words_).subspan(word_index(index, 0), static_cast<std::size_t>(words_per_row_));
  }

  friend bool operator==(const ModuleMatrix&, const ModuleMatrix&) = default;

 private:
  /// The product, which 32 bits may not hold.
  static std::size_t word_count(int rows, int columns) {
    const std::int64_t count = std::int64_t{rows} * ((std::int64_t{columns} + 63) / 64);
    if (rows < 0 || columns < 0 || count > std::numeric_limits<std::ptrdiff_t>::max() / 8) {
      throw std::length_error("korvex::ModuleMatrix: more modules than memory can have");
    }
    return static_cast<std::size_t>(count);
  }
  [[nodiscard]] std::size_t word_index(int row, int column) const {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(words_per_row_) +
           static_cast<std::size_t>(column / 64);
  }

  int rows_ = 0;
  int columns_ = 0;
  int words_per_row_ = 0;
  std::vector<std::uint64_t> words_;
};

}  // namespace korvex
