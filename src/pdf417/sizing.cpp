#include "pdf417/sizing.hpp"

#include <algorithm>
#include <cassert>
#include <optional>
#include <utility>

#include "pdf417/patterns.hpp"
#include "pdf417/tables.hpp"

namespace korvex::pdf417 {
namespace {

// What a shape is measured by when it is free.
constexpr int kRowHeightModules = 3;
constexpr int kWantedHeightPercent = 50;

constexpr int rounded_up(int dividend, int divisor) {
  return (dividend + divisor - 1) / divisor;
}

/// Tries the columns from few to many. Heights fall meanwhile, so the wanted one lies between the first shape
/// that is not too high and the last before it; of two equally near the flat one is taken.
Shape nearest_shape(Kind kind, int codewords) {
  struct Candidate {
    Shape shape;
    int height_percent = 0;
  };
  std::optional<Candidate> too_high;
  for (int columns = 1; columns <= kMaxColumns; ++columns) {
    const int rows = std::max(kMinRows, rounded_up(codewords, columns));
    if (rows > kMaxRows || rows * columns > kMaxCodewords) continue;
    const Candidate candidate{{rows, columns}, kRowHeightModules * rows * 100 / width_modules(kind, columns)};
    if (candidate.height_percent > kWantedHeightPercent) {
      too_high = candidate;
    } else if (too_high && too_high->height_percent - kWantedHeightPercent <
                               kWantedHeightPercent - candidate.height_percent) {
      break;
    } else {
      return candidate.shape;
    }
  }
  assert(too_high);  // every number of codewords up to the most fits 16 columns
  return too_high->shape;
}

}  // namespace

Capacity capacity(const Request& request) {
  if (request.kind == Kind::micro) {
    return {request.micro->columns * request.micro->rows, request.micro->check_codewords};
  }
  const int check = 2 << request.ecc_level;
  const auto [columns, rows] = std::pair(request.columns, request.rows);
  if (columns == 0 && rows == 0) return {kMaxCodewords, check};
  if (columns == 0) return {rows * std::min(kMaxCodewords / rows, kMaxColumns), check};
  if (rows == 0) return {columns * std::min(kMaxCodewords / columns, kMaxRows), check};
  return {columns * rows, check};
}

Shape choose_shape(const Request& request, int codewords) {
  if (request.kind == Kind::micro) return {request.micro->rows, request.micro->columns};
  const auto [columns, rows] = std::pair(request.columns, request.rows);
  if (columns == 0 && rows == 0) return nearest_shape(request.kind, codewords);
  if (columns == 0) return {rows, rounded_up(codewords, rows)};
  if (rows == 0) return {std::max(kMinRows, rounded_up(codewords, columns)), columns};
  return {rows, columns};
}

int width_modules(Kind kind, int columns) {
  const int data = kSymbolCharacterModules * columns;
  switch (kind) {
    case Kind::normal:  // start, row indicators, stop and its last bar
      return data + 4 * kSymbolCharacterModules + 1;
    case Kind::truncated:  // start, left row indicator, a bar
      return data + 2 * kSymbolCharacterModules + 1;
    case Kind::micro:
      break;
  }
  const int row_addresses = columns >= 3 ? 3 : 2;  // and a bar
  return data + row_addresses * kRowAddressModules + 1;
}

}  // namespace korvex::pdf417
