#include "qr/masking.hpp"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <limits>

#include "qr/format_information.hpp"
#include "qr/lanes.hpp"
#include "qr/mask_patterns.hpp"
#include "qr/penalty.hpp"

namespace korvex::qr {
namespace {

/// Format information of all masks, of Model 1 (index 0) and Model 2 by level.
template <class Word>
constexpr auto kFormats = [] {
  std::array<std::array<ForEachPattern<Word>, 4>, 2> formats{};
  for (std::size_t level = 0; level < 4; ++level) {
    for (std::size_t mask = 0; mask < 8; ++mask) {
      const auto word = [&](SymbolType type) {
        return format_information(type, static_cast<Level>(level), static_cast<int>(mask));
      };
      formats[0][level][mask] = word(SymbolType::model1);
      formats[1][level][mask] = word(SymbolType::model2);
    }
  }
  return formats;
}();

/// A square symbol under all eight masks side by side, with the format information that goes with each.
template <class Word, int kWords>
class MaskedSymbols {
 public:
  MaskedSymbols(const Canvas& canvas, Level level) : side_(canvas.columns) {
    for (std::size_t w = 0; w < kWords; ++w) {
      const std::uint64_t* const dark = canvas.dark.word_column(static_cast<int>(w));
      const std::uint64_t* const area = canvas.data_area.word_column(static_cast<int>(w));
      for (std::size_t row = 0; row < static_cast<std::size_t>(side_); ++row) {
        const auto& patterns = kMaskPatterns<Word>[w][row % kMaskPeriod];
        const auto row_dark = static_cast<Word>(dark[row] >> (64 - kBits));
        const auto row_area = static_cast<Word>(area[row] >> (64 - kBits));
        for (std::size_t mask = 0; mask < 8; mask += kMasks) {
          store<Word>((load(&patterns[mask]) & row_area) ^ row_dark, &words_[w][row][mask]);
        }
      }
    }
    draw_format_information(
        kFormats<Word>[canvas.type == SymbolType::model1 ? 0 : 1][static_cast<std::size_t>(level)]);
  }

  /// 2 x 2 squares of one colour, overlapping ones each, under each mask.
  [[nodiscard]] std::array<int, 8> squares() const {
    std::array<int, 8> squares{};
    for (std::size_t w = 0; w < kWords; ++w) {
      const int starts = std::min(kBits, side_ - 1 - static_cast<int>(w) * kBits);
      if (starts <= 0) break;
      const Word columns = static_cast<Word>(~Word{0} << (kBits - starts));
      for (std::size_t mask = 0; mask < 8; mask += kMasks) {
        Lanes<Word> sums{};
        Lanes<Word> above = load(&words_[w][0][mask]);
        Lanes<Word> changes_above = changes_right(w, 0, mask);
        for (std::size_t row = 1; row < static_cast<std::size_t>(side_); ++row) {
          const Lanes<Word> here = load(&words_[w][row][mask]);
          const Lanes<Word> changes = changes_right(w, row, mask);
          const Lanes<Word> alike = ~(changes_above | changes | (above ^ here)) & columns;
          sums += pairs_of_bytes<Word>(ones_by_byte<Word>(alike));
          above = here;
          changes_above = changes;
        }
        for (std::size_t i = 0; i < kMasks; ++i) {
          squares[mask + i] += total_of_pairs(lane<Word>(sums, static_cast<int>(i)));
        }
      }
    }
    return squares;
  }

  void copy_to(MaskedGrid<Word, kWords>& grid, int mask) const {
    for (int w = 0; w < kWords; ++w) {
      const auto& rows = words_[static_cast<std::size_t>(w)];
      std::transform(rows.begin(), rows.begin() + side_, &grid.word(w, 0),
                     [=](const auto& masks) { return masks[static_cast<std::size_t>(mask)]; });
    }
  }

  [[nodiscard]] ModuleMatrix modules(int mask) const {
    ModuleMatrix modules(side_, side_);
    for (int row = 0; row < side_; ++row) {
      const auto words = modules.row(row);
      for (int w = 0; w < kWords; ++w) {
        words[static_cast<std::size_t>(w)] = std::uint64_t{word(w, row, mask)} << (64 - kBits);
      }
    }
    return modules;
  }

 private:
  static constexpr int kBits = sizeof(Word) * 8;
  static constexpr std::size_t kMasks = kLaneCount<Word>;  // at once

  [[nodiscard]] Word word(int w, int row, int mask) const {
    return words_[static_cast<std::size_t>(w)][static_cast<std::size_t>(row)][static_cast<std::size_t>(mask)];
  }

  /// Where the next module to the right has the other colour, under the masks from `mask` on.
  [[nodiscard]] Lanes<Word> changes_right(std::size_t w, std::size_t row, std::size_t mask) const {
    const Lanes<Word> here = load(&words_[w][row][mask]);
    if (w + 1 == kWords) return here ^ here << 1;
    return here ^ (here << 1 | load(&words_[w + 1][row][mask]) >> (kBits - 1));
  }

  /// ISO/IEC 18004:2015, 7.9.1: once around the top left finder pattern, without the timing patterns, bit 0
  /// at the top; once below the top right one and beside the bottom left one. The places are light so far.
  void draw_format_information(const ForEachPattern<Word>& formats) {
    constexpr int kLine = 8;  // row and column
    // Bits [first, first + count) side by side, the first one rightmost.
    const auto draw = [&](int row, int column, int first, int count) {
      auto& words = words_[static_cast<std::size_t>(column / kBits)][static_cast<std::size_t>(row)];
      const int shift = kBits - column % kBits - count;
      for (std::size_t mask = 0; mask < 8; mask += kMasks) {
        const Lanes<Word> bits = load(&formats[mask]) >> first & ((Word{1} << count) - 1);
        store<Word>(load(&words[mask]) | bits << shift, &words[mask]);
      }
    };
    for (int bit = 0; bit < 6; ++bit) draw(bit, kLine, bit, 1);
    draw(7, kLine, 6, 1);
    draw(kLine, kLine - 1, 7, 2);
    draw(kLine, 0, 9, 6);
    for (int bit = 8; bit < 15; ++bit) draw(side_ - 15 + bit, kLine, bit, 1);
    const int in_word = std::min(kBits - (side_ - 8) % kBits, 8);  // the last eight may lie in two
    draw(kLine, side_ - 8, 8 - in_word, in_word);
    if (in_word < 8) draw(kLine, side_ - 8 + in_word, 0, 8 - in_word);
  }

  int side_;
  std::array<std::array<ForEachPattern<Word>, std::min(kMostModules, kBits* kWords)>, kWords> words_;
};

struct Score {
  int mask;
  int score;
};

/// How far the share of dark modules is from a half, in whole steps of five per cent (ISO/IEC
/// 18004:2015, 7.8.3.1).
int imbalance(int dark_modules, int side) {
  const int modules = side * side;
  return std::abs(20 * dark_modules - 10 * modules) / modules;
}

/// The same of Dialect::korvex32, from a share that is cut to whole per cent with a divisor that is cut too.
int rough_imbalance(int dark_modules, int side) {
  const int per_cent = dark_modules / (side * side / 100);
  return std::abs((per_cent - 50) / 5);
}

/// Finds the mask with the least penalty; the one that is judged first among equals.
template <FinderRule rule, class Word, int kWords>
class Judge {
 public:
  Judge(const MaskedSymbols<Word, kWords>& symbols, int side) : symbols_(symbols), side_(side), grid_(side) {}

  /// `squares` are those of the symbol under this mask.
  void take(int mask, int squares) {
    symbols_.copy_to(grid_, mask);
    const auto counts = grid_.template counts<rule>();
    const int fives = rule == FinderRule::published ? imbalance(counts.dark_modules, side_)
                                                    : rough_imbalance(counts.dark_modules, side_);
    const int penalty = counts.runs + 3 * squares + 40 * counts.finder_likes + 10 * fives;
    if (best_.mask < 0 || penalty < best_.score) best_ = {mask, penalty};
  }
  [[nodiscard]] int best() const { return best_.mask; }

 private:
  const MaskedSymbols<Word, kWords>& symbols_;
  int side_;
  MaskedGrid<Word, kWords> grid_;
  Score best_{-1, 0};
};

/// ISO/IEC 18004:2015, 7.8.3.1: everything is counted for every mask.
template <class Word, int kWords>
int least_penalty(const MaskedSymbols<Word, kWords>& symbols, int side) {
  Judge<FinderRule::published, Word, kWords> judge(symbols, side);
  const std::array<int, 8> squares = symbols.squares();
  for (int mask = 0; mask < 8; ++mask) judge.take(mask, squares[static_cast<std::size_t>(mask)]);
  return judge.best();
}

/// Dialect::korvex32: only the three masks with the fewest squares of one colour are judged, these first.
template <class Word, int kWords>
int least_penalty_of_three(const MaskedSymbols<Word, kWords>& symbols, int side) {
  Judge<FinderRule::korvex32, Word, kWords> judge(symbols, side);
  std::array<int, 8> left = symbols.squares();
  for (int judged = 0; judged < 3; ++judged) {
    const auto fewest = std::ranges::min_element(left);  // the lower number among equals
    judge.take(static_cast<int>(fewest - left.begin()), *fewest);
    *fewest = std::numeric_limits<int>::max();
  }
  return judge.best();
}

template <class Word, int kWords>
MaskedSymbol best_of_eight(const Canvas& canvas, Level level, Dialect dialect) {
  const MaskedSymbols<Word, kWords> symbols(canvas, level);
  const int mask = dialect == Dialect::standard ? least_penalty(symbols, canvas.columns)
                                                : least_penalty_of_three(symbols, canvas.columns);
  return {symbols.modules(mask), mask};
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

  Score best{-1, -1};
  for (std::size_t mask = 0; mask < 4; ++mask) {
    const int at_bottom =
        std::popcount((bottom ^ bottom_patterns[static_cast<std::size_t>(kMicroPatterns[mask])]) & counted);
    const int at_right = std::popcount((right ^ right_patterns[mask]) & counted);
    const int score = 16 * std::min(at_bottom, at_right) + std::max(at_bottom, at_right);
    if (score > best.score) best = {static_cast<int>(mask), score};
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
  if (canvas.type == SymbolType::micro) return best_of_four(canvas, level);
  if (canvas.type == SymbolType::rmqr) return masked_rmqr(canvas, level);
  if (canvas.columns <= 32) return best_of_eight<std::uint32_t, 1>(canvas, level, dialect);
  switch (canvas.words) {
    case 1:
      return best_of_eight<std::uint64_t, 1>(canvas, level, dialect);
    case 2:
      return best_of_eight<std::uint64_t, 2>(canvas, level, dialect);
    default:
      return best_of_eight<std::uint64_t, 3>(canvas, level, dialect);
  }
}

}  // namespace korvex::qr
