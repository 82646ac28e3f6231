// Sizes of the two-dimensional components (ISO/IEC 24723).
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "composite/encodation.hpp"
#include "korvex/composite.hpp"

namespace korvex::composite {

/// A size of CC-A or CC-B.
struct ComponentSize {
  Component kind;
  int rows;
  int capacity_bits;
  int data_codewords;
  int check_codewords;
  int first_address;   ///< row address pattern of the first row, counted from 1 as in the standard
  int address_offset;  ///< to the next row address pattern of a row
};

/// By growing capacity. `columns` is 2, 3 or 4.
std::span<const ComponentSize> component_sizes(int columns);

/// The smallest CC-A or CC-B that holds the bits.
class CcAOrBSizing final : public Sizing {
 public:
  explicit CcAOrBSizing(int columns) : sizes_(component_sizes(columns)) {}
  int remaining_bits(int bits) override;
  /// What the last call chose.
  [[nodiscard]] const ComponentSize& size() const { return *chosen_; }

 private:
  std::span<const ComponentSize> sizes_;
  const ComponentSize* chosen_ = nullptr;
};

/// The CC-C of so many columns that holds the bits: as wide as its linear component allows (ISO/IEC 24723).
/// Dialect::korvex32 takes a narrower one when it would be flat, and its columns never grow again.
class CcCSizing final : public Sizing {
 public:
  CcCSizing(int columns, Dialect dialect) : columns_(columns), dialect_(dialect) {}
  int remaining_bits(int bits) override;

  // What the last call chose.
  [[nodiscard]] int columns() const { return columns_; }
  [[nodiscard]] int rows() const { return rows_; }
  [[nodiscard]] int check_codewords() const { return check_codewords_; }

 private:
  int columns_;
  Dialect dialect_;
  int rows_ = 0;
  int check_codewords_ = 0;
};

/// Codewords that are not data: symbol length descriptor, 920, and the byte compaction latch.
inline constexpr int kCcCHeaderCodewords = 3;

}  // namespace korvex::composite
