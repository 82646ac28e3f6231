#include "qr/masking.hpp"

#include <bit>

#include "qr/format_information.hpp"
#include "qr/mask_patterns.hpp"
#include "qr/penalty.hpp"

namespace korvex::qr {
namespace {

/// Sets the bits of a layer or a grid by row and column.
template <class SetDark>
void draw_format_information(std::uint32_t word, int side, SetDark set_dark) {
  constexpr int kTimingLine = 6;
  for (int bit = 0; bit < 15; ++bit) {
    if ((word >> bit & 1U) == 0) continue;
    // Around the top left finder pattern, the timing patterns left out.
    const int near = bit < 8 ? bit : 14 - bit;
    const int place = near + (near >= kTimingLine ? 1 : 0);
    if (bit < 8) {
      set_dark(place, 8);
      set_dark(8, side - 1 - bit);
    } else {
      set_dark(8, place);
      set_dark(side - 15 + bit, 8);
    }
  }
}

/// The symbol with every mask applied in turn, to be scored.
template <class Word, int kWords>
class Candidates {
 public:
  Candidates(const Canvas& canvas, Level level) : canvas_(canvas), level_(level), grid_(canvas.columns) {}

  [[nodiscard]] const MaskedGrid<Word, kWords>& grid() const { return grid_; }

  void apply(int mask) {
    constexpr int kShift = 64 - MaskedGrid<Word, kWords>::kWordBits;
    for (int w = 0; w < kWords; ++w) {
      const auto& pattern = kMaskPatterns[static_cast<std::size_t>(mask)][static_cast<std::size_t>(w)];
      const std::uint64_t* const dark = canvas_.dark.word_column(w);
      const std::uint64_t* const area = canvas_.data_area.word_column(w);
      Word* const masked = grid_.word_column(w);
      for (int row = 0; row < canvas_.rows; row += kMaskPeriod) {
        for (int i = 0; i < kMaskPeriod; ++i) {
          masked[row + i] = static_cast<Word>(
              (dark[row + i] ^ (area[row + i] & pattern[static_cast<std::size_t>(i)])) >> kShift);
        }
      }
    }
    draw_format_information(
        format_information(canvas_.type, level_, mask), canvas_.rows, [&](int row, int column) {
          constexpr int kBits = MaskedGrid<Word, kWords>::kWordBits;
          grid_.word_column(column / kBits)[row] |= Word{1} << (kBits - 1 - column % kBits);
        });
  }

  [[nodiscard]] ModuleMatrix modules() {
    ModuleMatrix modules(canvas_.rows, canvas_.columns);
    for (int w = 0; w < kWords; ++w) {
      const Word* const words = grid_.word_column(w);
      for (int row = 0; row < canvas_.rows; ++row) {
        modules.row(row)[static_cast<std::size_t>(w)] = std::uint64_t{words[row]}
                                                        << (64 - MaskedGrid<Word, kWords>::kWordBits);
      }
    }
    return modules;
  }

 private:
  const Canvas& canvas_;
  Level level_;
  MaskedGrid<Word, kWords> grid_;
};

struct Score {
  int mask;
  int score;
};

/// How far the share of dark modules is from a half, in whole steps of five per cent.
int imbalance(int dark_modules, int side) {
  const int per_cent = dark_modules / (side * side / 100);
  return std::abs((per_cent - 50) / 5);
}

// Counting everything for all eight masks would take most of the encoder's time. The cheap count of 2 x 2
// squares picks three, the full one decides among them; so the choice is not always that of ISO/IEC
// 18004:2015, 7.8.3.
template <class Word, int kWords>
MaskedSymbol best_of_eight(const Canvas& canvas, Level level) {
  constexpr int kMasks = 8;
  constexpr int kBestFirst = 20888;
  constexpr int kNone = -32768;
  std::array<Score, 3> kept;
  kept.fill({-1, kNone});
  Candidates<Word, kWords> candidates(canvas, level);
  for (int mask = 0; mask < kMasks; ++mask) {
    candidates.apply(mask);
    Score entry{mask, kBestFirst - 3 * candidates.grid().squares()};
    for (Score& place : kept) {  // equal scores rank by mask number
      if (entry.score > place.score) std::swap(entry, place);
    }
  }

  Score best{-1, 0};
  int applied = -1;
  for (const Score& candidate : kept) {
    if (candidate.mask < 0) continue;
    candidates.apply(applied = candidate.mask);
    const auto& grid = candidates.grid();
    const int score = candidate.score - grid.runs() - 40 * grid.finder_likes() -
                      10 * imbalance(grid.dark_modules(), canvas.rows);
    if (best.mask < 0 || score > best.score) best = {candidate.mask, score};
  }
  if (applied != best.mask) candidates.apply(best.mask);
  return {candidates.modules(), best.mask};
}

/// The canvas with one mask applied, without format information.
ModuleMatrix masked(const Canvas& canvas, int pattern) {
  ModuleMatrix modules(canvas.rows, canvas.columns);
  for (int row = 0; row < canvas.rows; ++row) {
    for (int w = 0; w < canvas.words; ++w) {
      const std::uint64_t inverted =
          kMaskPatterns[static_cast<std::size_t>(pattern)][static_cast<std::size_t>(w)]
                       [static_cast<std::size_t>(row % kMaskPeriod)];
      modules.row(row)[static_cast<std::size_t>(w)] =
          canvas.dark.word(row, w) ^ (canvas.data_area.word(row, w) & inverted);
    }
  }
  return modules;
}

/// ISO/IEC 18004:2015, 7.8.3.2: dark modules along the two edges without timing pattern.
MaskedSymbol best_of_four(const Canvas& canvas, Level level) {
  constexpr std::array<int, 4> kMicroPatterns = {1, 4, 6, 7};
  const int edge = canvas.rows - 1;
  Score best{-1, -1};
  for (int mask = 0; mask < 4; ++mask) {
    const int pattern = kMicroPatterns[static_cast<std::size_t>(mask)];
    int bottom = 0;
    int right = 0;
    const auto dark = [&](int row, int column) {
      const bool dark_before = (canvas.dark.word(row, 0) >> (63 - column) & 1U) != 0;
      return dark_before != mask_inverts(pattern, row, column) ? 1 : 0;
    };
    for (int i = 1; i <= edge; ++i) {
      bottom += dark(edge, i);
      right += dark(i, edge);
    }
    const int score = 16 * std::min(bottom, right) + std::max(bottom, right);
    if (score > best.score) best = {mask, score};
  }

  ModuleMatrix modules = masked(canvas, kMicroPatterns[static_cast<std::size_t>(best.mask)]);
  const std::uint32_t format = micro_format_information(canvas.version, level, best.mask);
  for (int i = 0; i < 8; ++i) modules.set_dark(1 + i, 8, (format >> i & 1U) != 0);
  for (int i = 8; i < 15; ++i) modules.set_dark(8, 15 - i, (format >> i & 1U) != 0);
  return {std::move(modules), best.mask};
}

MaskedSymbol masked_rmqr(const Canvas& canvas, Level level) {
  constexpr int kPattern = 4;
  ModuleMatrix modules = masked(canvas, kPattern);
  for (const bool beside_sub_pattern : {false, true}) {
    const std::uint32_t format = rmqr_format_information(canvas.version, level, beside_sub_pattern);
    const int row = beside_sub_pattern ? canvas.rows - 6 : 1;
    const int column = beside_sub_pattern ? canvas.columns - 8 : 8;
    for (int i = 0; i < 18; ++i) {
      // Columns of five; the last three bits follow in a column, beside the sub-pattern in its top row.
      const bool in_row = beside_sub_pattern && i >= 15;
      modules.set_dark(row + (in_row ? 0 : i % 5), column + (in_row ? i - 12 : i / 5),
                       (format >> i & 1U) != 0);
    }
  }
  return {std::move(modules), kPattern};
}

}  // namespace

MaskedSymbol best_masked(const Canvas& canvas, Level level) {
  if (canvas.type == SymbolType::micro) return best_of_four(canvas, level);
  if (canvas.type == SymbolType::rmqr) return masked_rmqr(canvas, level);
  if (canvas.columns <= 32) return best_of_eight<std::uint32_t, 1>(canvas, level);
  switch (canvas.words) {
    case 1:
      return best_of_eight<std::uint64_t, 1>(canvas, level);
    case 2:
      return best_of_eight<std::uint64_t, 2>(canvas, level);
    default:
      return best_of_eight<std::uint64_t, 3>(canvas, level);
  }
}

}  // namespace korvex::qr
