#include "qr/masking.hpp"

#include <gtest/gtest.h>

#include <cmath>

#include "qr/error_correction.hpp"
#include "qr/format_information.hpp"
#include "qr/mask_patterns.hpp"
#include "qr/penalty.hpp"
#include "support.hpp"

namespace korvex::qr {
namespace {

// ---- The choice of the mask written a second time, module by module and run by run ----

using Modules = std::vector<std::vector<bool>>;  // [row][column]

Modules transposed(const Modules& modules) {
  Modules result(modules.size(), std::vector<bool>(modules.size()));
  for (std::size_t row = 0; row < modules.size(); ++row) {
    for (std::size_t column = 0; column < modules.size(); ++column)
      result[column][row] = modules[row][column];
  }
  return result;
}

int slow_squares(const Modules& m) {
  int squares = 0;
  for (std::size_t row = 0; row + 1 < m.size(); ++row) {
    for (std::size_t column = 0; column + 1 < m.size(); ++column) {
      const bool dark = m[row][column];
      if (m[row][column + 1] == dark && m[row + 1][column] == dark && m[row + 1][column + 1] == dark)
        ++squares;
    }
  }
  return squares;
}

/// Lengths of the runs of a line, light ones at even places, starting and ending with a light one. A light
/// run at the end counts 127 modules.
std::vector<int> runs_of(const std::vector<bool>& line) {
  std::vector<int> runs = {0};
  bool dark = false;
  for (const bool module : line) {
    if (module != dark) {
      runs.push_back(0);
      dark = module;
    }
    ++runs.back();
  }
  if (dark) runs.push_back(0);
  runs.back() = 127;
  return runs;
}

int slow_runs(const Modules& m) {
  int sum = 0;
  for (const auto& line : m) {
    for (std::size_t begin = 0, end = 0; begin < line.size(); begin = end) {
      while (end < line.size() && line[end] == line[begin]) ++end;
      const int length = static_cast<int>(end - begin);
      if (length >= 5) sum += length - 2;
    }
  }
  return sum;
}

/// ISO/IEC 18004:2015, 7.8.3.1. Everything around the symbol is light.
int slow_standard_finder_likes(const Modules& m) {
  int count = 0;
  for (const auto& line : m) {
    std::string text = "....";
    for (const bool dark : line) text += dark ? '#' : '.';
    text += "....";
    for (std::size_t at = 4; at + 11 <= text.size(); ++at) {
      if (text.substr(at, 7) != "#.###.#") continue;
      if (text.substr(at - 4, 4) == "...." || text.substr(at + 7, 4) == "....") ++count;
    }
  }
  return count;
}

int slow_old_finder_likes(const Modules& m) {
  int count = 0;
  for (const auto& line : m) {
    const std::vector<int> runs = runs_of(line);
    for (std::size_t i = 1; i + 5 < runs.size(); i += 2) {
      const int unit = runs[i];
      if (runs[i + 1] != unit || runs[i + 2] != 3 * unit || runs[i + 3] != unit || runs[i + 4] != unit)
        continue;
      if (runs[i - 1] >= 4 * unit || runs[i + 5] >= 4 * unit) ++count;
    }
  }
  return count;
}

Penalty slow_penalty(const Modules& m, Dialect dialect) {
  const auto finder_likes = dialect == Dialect::standard ? slow_standard_finder_likes : slow_old_finder_likes;
  const Modules columns = transposed(m);
  Penalty penalty{slow_squares(m), slow_runs(m) + slow_runs(columns), finder_likes(m) + finder_likes(columns),
                  0};
  for (const auto& line : m) penalty.dark_modules += static_cast<int>(std::ranges::count(line, true));
  return penalty;
}

Modules to_modules(const ModuleMatrix& matrix) {
  Modules modules;
  for (int row = 0; row < matrix.rows(); ++row) {
    modules.emplace_back();
    for (int column = 0; column < matrix.columns(); ++column)
      modules.back().push_back(matrix.dark(row, column));
  }
  return modules;
}

/// ISO/IEC 18004:2015, Figure 25.
void draw_format(std::uint32_t format, Modules& modules) {
  // Bit 0 first.
  constexpr std::size_t kAround[15][2] = {{0, 8}, {1, 8}, {2, 8}, {3, 8}, {4, 8}, {5, 8}, {7, 8}, {8, 8},
                                          {8, 7}, {8, 5}, {8, 4}, {8, 3}, {8, 2}, {8, 1}, {8, 0}};
  const std::size_t side = modules.size();
  for (std::size_t bit = 0; bit < 15; ++bit) {
    const bool dark = (format >> bit & 1U) != 0;
    modules[kAround[bit][0]][kAround[bit][1]] = dark;
    if (bit < 8) {
      modules[8][side - 1 - bit] = dark;
    } else {
      modules[side - 15 + bit][8] = dark;
    }
  }
}

/// The symbol with `mask` in place of the mask that it has, format information included.
Modules remasked(const Symbol& symbol, int mask) {
  Canvas canvas;
  draw_function_patterns(symbol.type, symbol.version, canvas);
  Modules modules = to_modules(symbol.modules);
  for (int row = 0; row < canvas.rows; ++row) {
    for (int column = 0; column < canvas.columns; ++column) {
      if ((canvas.data_area.word(row, column / 64) >> (63 - column % 64) & 1U) == 0) continue;
      const bool changes = mask_inverts(symbol.mask, row, column) != mask_inverts(mask, row, column);
      auto module = modules[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)];
      if (changes) module = !module;
    }
  }
  draw_format(format_information(symbol.type, symbol.level, mask), modules);
  return modules;
}

/// The mask of the lowest penalty. The old dialect ranks three by their squares first.
int slow_choice(const Symbol& symbol, Dialect dialect) {
  std::vector<std::pair<double, int>> ranked;  // penalty, mask
  for (int mask = 0; mask < 8; ++mask) {
    const double squares = dialect == Dialect::standard ? 0 : slow_squares(remasked(symbol, mask));
    ranked.emplace_back(squares, mask);
  }
  std::ranges::stable_sort(ranked, {}, &std::pair<double, int>::first);
  if (dialect == Dialect::korvex32) ranked.resize(3);
  for (auto& [sum, mask] : ranked) {
    const Modules m = remasked(symbol, mask);
    const Penalty penalty = slow_penalty(m, dialect);
    const double modules = static_cast<double>(m.size() * m.size());
    const double steps = dialect == Dialect::standard
                             ? std::floor(std::abs(100 * penalty.dark_modules / modules - 50) / 5)
                             : std::abs((penalty.dark_modules / (static_cast<int>(modules) / 100) - 50) / 5);
    sum = penalty.runs + 3 * penalty.squares + 40 * penalty.finder_likes + 10 * steps;
  }
  return std::ranges::min_element(ranked, {}, &std::pair<double, int>::first)->second;
}

Symbol encoded(const Options& options, const test::Bytes& data) {
  Result<Symbol> symbol = encode(options, std::span(data));
  EXPECT_TRUE(symbol.has_value()) << symbol.error().message;
  return std::move(symbol).value();
}

TEST(QrMasking, SecondWritingChoosesTheSameMask) {
  std::mt19937 random(20);
  for (const SymbolType type : {SymbolType::model1, SymbolType::model2}) {
    for (int version = 1; version <= 40; version += version < 10 ? 1 : 3) {
      for (int i = 0; i < (version < 5 ? 20 : 2); ++i) {
        // All of one byte gives long runs and large squares, random bytes fill the symbol.
        const int fitting = type == SymbolType::model1 ? std::min(version, 14) : version;
        const int most = capacity(type, fitting, Level::medium).data_codewords - 4;
        const auto length =
            static_cast<std::size_t>(1 + static_cast<int>(random() % static_cast<unsigned>(most)));
        const auto byte = static_cast<std::uint8_t>(random());
        const test::Bytes data = i % 2 == 0 ? test::Bytes(length, byte) : test::random_bytes(random, length);
        for (const Dialect dialect : {Dialect::standard, Dialect::korvex32}) {
          const Symbol symbol =
              encoded({.type = type, .version = version, .mode = Mode::byte, .dialect = dialect}, data);
          const int mask = slow_choice(symbol, dialect);
          EXPECT_EQ(symbol.mask, mask) << "version " << version << ", " << test::to_hex(data);
          EXPECT_EQ(to_modules(symbol.modules), remasked(symbol, mask));
        }
      }
    }
  }
}

// ---- The counts one by one ----

template <Dialect kDialect, class Word>
void expect_counts(Modules m) {
  constexpr std::uint32_t kFormat = 0b101101110110011;
  constexpr std::uint32_t kReversed = 0b110011011101101;
  const int side = static_cast<int>(m.size());
  draw_format(0, m);
  m[m.size() - 8][8] = true;  // the dark module
  Canvas canvas{};
  canvas.columns = side;
  canvas.words = (side + 63) / 64;
  for (int row = 0; row < side; ++row) {
    for (int column = 0; column < side; ++column) {
      if (m[static_cast<std::size_t>(row)][static_cast<std::size_t>(column)]) canvas.dark.set(row, column);
    }
  }
  Formats<Word> formats;
  formats.upright[7] = kFormat;
  formats.transposed[7] = kReversed;
  const Penalty counted = penalties<kDialect, Word>(canvas, formats)[7];
  draw_format(kFormat, m);
  const Penalty expected = slow_penalty(m, kDialect);
  EXPECT_EQ(counted.squares, expected.squares);
  EXPECT_EQ(counted.runs, expected.runs);
  EXPECT_EQ(counted.finder_likes, expected.finder_likes);
  EXPECT_EQ(counted.dark_modules, expected.dark_modules);
}

void expect_counts_of_any_width(const Modules& m) {
  expect_counts<Dialect::standard, std::uint64_t>(m);
  expect_counts<Dialect::korvex32, std::uint64_t>(m);
  if (m.size() > 32) return;
  expect_counts<Dialect::standard, std::uint32_t>(m);
  expect_counts<Dialect::korvex32, std::uint32_t>(m);
}

// Grids that data seldom gives: one colour, large patterns across word edges, patterns at every edge. In
// versions 12, 13, 28 and 29 format information lies across a word's edge.
TEST(QrMasking, CountsAgreeOnGridsOfEveryKind) {
  std::mt19937 random(21);
  for (const int version : {1, 2, 3, 4, 7, 11, 12, 13, 14, 19, 27, 28, 29, 34, 40}) {
    const std::size_t side = static_cast<std::size_t>(4 * version + 17);
    for (int kind = 0; kind < 12; ++kind) {
      Modules m(side, std::vector<bool>(side, kind == 1));
      for (auto& line : m) {
        if (kind < 2) break;
        // Runs of up to `kind` modules, often in the proportions of a finder pattern.
        bool dark = random() % 2 != 0;
        for (std::size_t at = 0; at < side; dark = !dark) {
          const std::size_t unit = 1 + random() % static_cast<unsigned>(kind);
          static constexpr std::size_t kParts[5] = {1, 1, 3, 1, 1};
          const std::size_t parts = dark && random() % 2 == 0 ? 5 : 1;
          for (std::size_t part = 0; part < parts; ++part) {
            for (std::size_t i = 0; i < unit * (parts == 5 ? kParts[part] : 1) && at < side; ++i) {
              line[at++] = dark != (part % 2 != 0);
            }
          }
        }
      }
      SCOPED_TRACE("side " + std::to_string(side) + ", kind " + std::to_string(kind));
      expect_counts_of_any_width(m);
      expect_counts_of_any_width(transposed(m));
    }
  }
}

TEST(QrMasking, FinderLikePatternsNeedLightOnOneSide) {
  const struct {
    std::string line;  // 21 modules
    int standard;
    int old;
    const char* why;
  } cases[] = {
      {".......#.###.#.......", 1, 1, "light on both sides"},
      {"..#....#.###.#.#.....", 1, 1, "four light modules before"},
      {"...#...#.###.#.#.....", 0, 0, "three before, one after"},
      {"#.###.#....#.........", 1, 1, "at the left edge four are after"},
      {"#.###.#...#..........", 1, 0, "three after: light before the left edge counts by the standard"},
      {"..#.###.#.#..........", 1, 0, "two before, and light beyond the edge"},
      {"..............#.###.#", 1, 1, "ends at the right edge: light goes on there"},
      {"............#.#.###.#", 1, 1, "the same, whatever is before"},
      {"..#....##.###.##.....", 0, 0, "the outer ones go on towards the light"},
      {"..#....#.###.##......", 1, 0, "and away from it"},
      {"......##.###.#.......", 1, 0, "the same on the other side"},
      {"....#.###.#.###.#....", 2, 2, "two that share a module"},
      {"##..######..##...#...", 0, 0, "a unit of two needs eight light modules"},
      {".....##..######..##..", 0, 1, "and has them past the right edge, by the old rule"},
      {"#..######..##........", 0, 0, "1 : 2 : 6 : 2 : 2"},
  };
  for (const auto& [line, standard, old, why] : cases) {
    Modules m(line.size(), std::vector<bool>(line.size(), false));
    for (std::size_t i = 0; i < line.size(); ++i) m[10][i] = line[i] == '#';
    EXPECT_EQ(slow_standard_finder_likes(m), standard) << line << ": " << why;
    EXPECT_EQ(slow_old_finder_likes(m), old) << line << ": " << why;
    expect_counts_of_any_width(m);
    expect_counts_of_any_width(transposed(m));
  }
}

// Scores are 16 times the smaller count plus the larger one; the highest wins, the lower mask among equals.
TEST(QrMasking, MicroQrScoresItsTwoEdges) {
  std::mt19937 random(22);
  constexpr int kPatterns[4] = {1, 4, 6, 7};
  for (int i = 0; i < 200; ++i) {
    const int version = 2 + i % 3;
    const std::string digits = std::to_string(random() % 100000000);
    const Symbol symbol =
        encoded({.type = SymbolType::micro, .level = Level::low, .version = version}, test::bytes(digits));
    const int edge = symbol.modules.rows() - 1;
    int best = -1;
    int best_score = -1;
    for (int mask = 0; mask < 4; ++mask) {
      const auto dark = [&](int row, int column) {
        return symbol.modules.dark(row, column) ^ mask_inverts(kPatterns[symbol.mask], row, column) ^
               mask_inverts(kPatterns[mask], row, column);
      };
      int bottom = 0;
      int right = 0;
      for (int at = 1; at <= edge; ++at) {
        bottom += dark(edge, at) ? 1 : 0;
        right += dark(at, edge) ? 1 : 0;
      }
      const int score = bottom <= right ? 16 * bottom + right : 16 * right + bottom;
      if (score > best_score) {
        best = mask;
        best_score = score;
      }
    }
    EXPECT_EQ(symbol.mask, best) << digits;
  }
}

}  // namespace
}  // namespace korvex::qr
