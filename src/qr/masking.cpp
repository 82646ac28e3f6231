#include "qr/masking.hpp"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <numeric>
#include <utility>

#include "qr/format_information.hpp"
#include "qr/penalty.hpp"

namespace korvex::qr {
namespace {

/// Format information of all masks, of Model 1 (index 0) and Model 2 by level.
template <class Word>
constexpr auto kFormats = [] {
  std::array<std::array<Formats<Word>, 4>, 2> formats{};
  for (std::size_t level = 0; level < 4; ++level) {
    for (std::size_t mask = 0; mask < 8; ++mask) {
      for (const SymbolType type : {SymbolType::model1, SymbolType::model2}) {
        const std::uint32_t word =
            format_information(type, static_cast<Level>(level), static_cast<int>(mask));
        auto& [upright, transposed] = formats[type == SymbolType::model1 ? 0 : 1][level];
        upright[mask] = word;
        for (int bit = 0; bit < 15; ++bit) transposed[mask] = transposed[mask] << 1 | (word >> bit & 1U);
      }
    }
  }
  return formats;
}();

/// ISO/IEC 18004:2015, 7.8.3.1: the lowest sum wins, among equals the lower mask number.
int choose_by_standard(const Penalties& penalties, int side) {
  const int modules = side * side;
  const auto sum = [=](const Penalty& penalty) {
    // How far the share of dark modules is from a half, in whole steps of five per cent.
    const int imbalance = std::abs(20 * penalty.dark_modules - 10 * modules) / modules;
    return 3 * penalty.squares + penalty.runs + 40 * penalty.finder_likes + 10 * imbalance;
  };
  return static_cast<int>(std::ranges::min_element(penalties, {}, sum) - penalties.begin());
}

/// The old dialect looks only at the three masks of the fewest squares, and among equals prefers the one with
/// fewer; the share of dark modules is a whole number of per cent.
int choose_by_old_dialect(const Penalties& penalties, int side) {
  std::array<std::size_t, 8> ranked;
  std::iota(ranked.begin(), ranked.end(), 0);
  std::ranges::sort(ranked, {}, [&](std::size_t mask) { return std::pair(penalties[mask].squares, mask); });
  const auto sum = [&](std::size_t mask) {
    const Penalty& penalty = penalties[mask];
    const int per_cent = penalty.dark_modules / (side * side / 100);
    return 3 * penalty.squares + penalty.runs + 40 * penalty.finder_likes +
           10 * std::abs((per_cent - 50) / 5);
  };
  return static_cast<int>(*std::ranges::min_element(ranked.begin(), ranked.begin() + 3, {}, sum));
}

template <class Word>
int best_of_eight(const Canvas& canvas, Level level, Dialect dialect) {
  const auto& formats =
      kFormats<Word>[canvas.type == SymbolType::model1 ? 0 : 1][static_cast<std::size_t>(level)];
  if (dialect == Dialect::standard) {
    return choose_by_standard(penalties<Dialect::standard>(canvas, formats), canvas.columns);
  }
  return choose_by_old_dialect(penalties<Dialect::korvex32>(canvas, formats), canvas.columns);
}

/// The canvas under one mask pattern, without format information.
ModuleMatrix masked(const Canvas& canvas, int pattern) {
  ModuleMatrix modules(canvas.rows, canvas.columns);
  for (int row = 0; row < canvas.rows; ++row) {
    const auto words = modules.row(row);
    for (std::size_t w = 0; w < words.size(); ++w) {
      const auto& patterns = kMaskPatterns<std::uint64_t>[w][static_cast<std::size_t>(row % kMaskPeriod)];
      const int word = static_cast<int>(w);
      words[w] = canvas.dark.word(row, word) ^
                 (canvas.data_area.word(row, word) & patterns[static_cast<std::size_t>(pattern)]);
    }
  }
  return modules;
}

/// ISO/IEC 18004:2015, 7.9.1: once around the top left finder pattern, without the timing patterns, bit 0 at
/// the top; once below the top right one and beside the bottom left one.
void draw_format_information(std::uint32_t format, ModuleMatrix& modules) {
  constexpr int kLine = 8;  // row and column
  constexpr std::array<int, 15> kPlaces = {0, 1, 2, 3, 4, 5, 7, 8, 7, 5, 4, 3, 2, 1, 0};
  const int side = modules.columns();
  for (int bit = 0; bit < 15; ++bit) {
    const bool dark = (format >> bit & 1U) != 0;
    const int place = kPlaces[static_cast<std::size_t>(bit)];
    modules.set_dark(bit < 8 ? place : kLine, bit < 8 ? kLine : place, dark);
    modules.set_dark(bit < 8 ? kLine : side - 15 + bit, bit < 8 ? side - 1 - bit : kLine, dark);
  }
}

MaskedSymbol masked_square(const Canvas& canvas, Level level, Dialect dialect) {
  const int mask = canvas.columns <= 32 ? best_of_eight<std::uint32_t>(canvas, level, dialect)
                                        : best_of_eight<std::uint64_t>(canvas, level, dialect);
  ModuleMatrix modules = masked(canvas, mask);
  draw_format_information(format_information(canvas.type, level, mask), modules);
  return {std::move(modules), mask};
}

constexpr std::array<int, 4> kMicroPatterns = {1, 4, 6, 7};

/// The right edges of the Micro QR mask patterns, by version and mask, top row in the most significant bit.
constexpr auto kMicroRightEdges = [] {
  std::array<std::array<std::uint32_t, 4>, 4> edges{};
  for (int version = 1; version <= 4; ++version) {
    const int side = 2 * version + 9;
    for (std::size_t mask = 0; mask < 4; ++mask) {
      for (int row = 0; row < side; ++row) {
        if (!mask_inverts(kMicroPatterns[mask], row, side - 1)) continue;
        edges[static_cast<std::size_t>(version - 1)][mask] |= 1U << (31 - row);
      }
    }
  }
  return edges;
}();

/// ISO/IEC 18004:2015, 7.8.3.2: what counts are the dark modules of the two edges without timing pattern,
/// apart from those where a timing pattern ends.
MaskedSymbol best_of_four(const Canvas& canvas, Level level) {
  const int edge = canvas.rows - 1;
  const auto counted = static_cast<std::uint32_t>(bit_range(1, canvas.rows) >> 32);
  const auto& bottom_patterns = kMaskPatterns<std::uint32_t>[0][static_cast<std::size_t>(edge % kMaskPeriod)];
  const auto& right_patterns = kMicroRightEdges[static_cast<std::size_t>(canvas.version - 1)];
  const auto bottom = static_cast<std::uint32_t>(canvas.dark.word(edge, 0) >> 32);
  std::uint32_t right = 0;
  for (int row = 0; row <= edge; ++row) {
    right |= static_cast<std::uint32_t>(canvas.dark.word(row, 0) >> (63 - edge) & 1U) << (31 - row);
  }

  int best = -1;
  int best_score = -1;
  for (std::size_t mask = 0; mask < 4; ++mask) {
    const int at_bottom =
        std::popcount((bottom ^ bottom_patterns[static_cast<std::size_t>(kMicroPatterns[mask])]) & counted);
    const int at_right = std::popcount((right ^ right_patterns[mask]) & counted);
    const int score = 16 * std::min(at_bottom, at_right) + std::max(at_bottom, at_right);
    if (score > best_score) {
      best = static_cast<int>(mask);
      best_score = score;
    }
  }

  ModuleMatrix modules = masked(canvas, kMicroPatterns[static_cast<std::size_t>(best)]);
  const std::uint32_t format = micro_format_information(canvas.version, level, best);
  for (int i = 0; i < 8; ++i) modules.set_dark(1 + i, 8, (format >> i & 1U) != 0);
  for (int i = 8; i < 15; ++i) modules.set_dark(8, 15 - i, (format >> i & 1U) != 0);
  return {std::move(modules), best};
}

MaskedSymbol masked_rmqr(const Canvas& canvas, Level level) {
  constexpr int kPattern = 4;
  ModuleMatrix modules = masked(canvas, kPattern);
  for (const bool beside_sub_pattern : {false, true}) {
    const std::uint32_t format = rmqr_format_information(canvas.version, level, beside_sub_pattern);
    const int row = beside_sub_pattern ? canvas.rows - 6 : 1;
    const int column = beside_sub_pattern ? canvas.columns - 8 : 8;
    for (int i = 0; i < 18; ++i) {
      // Columns of five bits; the last three stand in a column too, beside the sub-pattern in the top row.
      const bool in_row = beside_sub_pattern && i >= 15;
      modules.set_dark(row + (in_row ? 0 : i % 5), column + (in_row ? i - 12 : i / 5),
                       (format >> i & 1U) != 0);
    }
  }
  return {std::move(modules), kPattern};
}

}  // namespace

MaskedSymbol best_masked(const Canvas& canvas, Level level, Dialect dialect) {
  switch (canvas.type) {
    case SymbolType::micro:
      return best_of_four(canvas, level);
    case SymbolType::rmqr:
      return masked_rmqr(canvas, level);
    default:
      return masked_square(canvas, level, dialect);
  }
}

}  // namespace korvex::qr
