#include "pdf417/construction.hpp"

#include <cstddef>
#include <cstdint>

#include "pdf417/patterns.hpp"
#include "pdf417/sizing.hpp"
#include "pdf417/tables.hpp"

namespace korvex::pdf417 {
namespace {

constexpr Pattern kStart = pattern_of(0x81111113);
constexpr Pattern kStop = pattern_of(0x71131112);  // without its last bar
constexpr Pattern kLastBar = pattern_of(0x1);      // of the stop pattern; of other symbols the only one
constexpr std::string_view kLineEnd = "\r\n";

/// A row of modules, filled from the left.
class ModuleRow {
 public:
  explicit ModuleRow(std::span<std::uint64_t> words) : word_(words.data()) {}

  /// Appends the low `count` bits of `modules`, which has no others.
  void put(std::uint32_t modules, int count) {
    if (count <= free_) {
      free_ -= count;
      bits_ |= std::uint64_t{modules} << free_;
      return;
    }
    const int over = count - free_;
    *word_++ = bits_ | std::uint64_t{modules} >> over;
    free_ = 64 - over;
    bits_ = std::uint64_t{modules} << free_;
  }
  void put(const Pattern& pattern, int count) { put(pattern.modules, count); }
  void finish() { *word_ = bits_; }

 private:
  std::uint64_t* word_;
  std::uint64_t bits_ = 0;
  int free_ = 64;  // of the bits, the lowest
};

/// A line of digits.
class TextRow {
 public:
  explicit TextRow(std::string& text) : text_(text) {}

  void put(const Pattern& pattern, int) {
    for (int shift = 28; shift >= 0; shift -= 4) {
      const std::uint32_t width = pattern.widths >> shift & 0xF;
      if (width != 0) text_ += static_cast<char>('0' + width);
    }
  }
  void finish() { text_ += kLineEnd; }

 private:
  std::string& text_;
};

/// Row indicators. ISO/IEC 15438: what they tell of the symbol turns with the clusters.
struct RowIndicators {
  unsigned left = 0;
  unsigned right = 0;
};
RowIndicators row_indicators(const Layout& layout, int row) {
  const int rows = (layout.rows - 1) / 3;
  const int level_and_rest = 3 * layout.ecc_level + (layout.rows - 1) % 3;
  const int columns = layout.columns - 1;
  const auto indicators = [base = 30 * (row / 3)](int left, int right) {
    return RowIndicators{static_cast<unsigned>(base + left), static_cast<unsigned>(base + right)};
  };
  switch (row % 3) {
    case 0:
      return indicators(rows, columns);
    case 1:
      return indicators(level_and_rest, rows);
    default:
      return indicators(columns, level_and_rest);
  }
}

template <class Row>
void put_codeword(Row& row, std::size_t cluster, std::size_t codeword) {
  row.put(kSymbolCharacters[cluster][codeword], kSymbolCharacterModules);
}

template <class Row>
void compose_pdf417_row(const Layout& layout, int index, std::span<const std::uint16_t> codewords, Row& row) {
  const auto cluster = static_cast<std::size_t>(index % 3);
  const RowIndicators indicators = row_indicators(layout, index);
  row.put(kStart, kSymbolCharacterModules);
  put_codeword(row, cluster, indicators.left);
  for (const std::uint16_t codeword : codewords) put_codeword(row, cluster, codeword);
  if (layout.kind == Kind::normal) {
    put_codeword(row, cluster, indicators.right);
    row.put(kStop, kSymbolCharacterModules);
  }
  row.put(kLastBar, 1);
}

template <class Row>
void compose_micro_row(const MicroLayout& size, int index, std::span<const std::uint16_t> codewords,
                       Row& row) {
  const auto put_address = [&](const auto& patterns, int first) {
    row.put(patterns[static_cast<std::size_t>(first + index) % kRowAddresses], kRowAddressModules);
  };
  const auto cluster = static_cast<std::size_t>((size.left + index) % 3);
  const int before_centre = size.columns - 2;  // with 3 columns one codeword, with 4 two
  put_address(kSideRowAddresses, size.left);
  for (int column = 0; column < size.columns; ++column) {
    if (size.has_centre() && column == before_centre) put_address(kCentreRowAddresses, size.centre);
    put_codeword(row, cluster, codewords[static_cast<std::size_t>(column)]);
  }
  put_address(kSideRowAddresses, size.right);
  row.put(kLastBar, 1);
}

template <class Row>
void compose_row(const Layout& layout, int index, Row row) {
  const auto columns = static_cast<std::size_t>(layout.columns);
  const auto codewords = layout.codewords.all().subspan(static_cast<std::size_t>(index) * columns, columns);
  if (layout.kind == Kind::micro) {
    compose_micro_row(*layout.micro, index, codewords, row);
  } else {
    compose_pdf417_row(layout, index, codewords, row);
  }
  row.finish();
}

void draw_line(std::string_view line, ModuleRow row) {
  bool bar = true;
  for (const char digit : line) {
    const int width = digit - '0';
    row.put(bar ? (1U << width) - 1 : 0, width);
    bar = !bar;
  }
  row.finish();
}

}  // namespace

ModuleMatrix draw_rows(const Layout& layout) {
  ModuleMatrix modules(layout.rows, width_modules(layout.kind, layout.columns));
  for (int row = 0; row < layout.rows; ++row) compose_row(layout, row, ModuleRow(modules.row(row)));
  return modules;
}

std::string row_pattern_text(const Layout& layout) {
  std::string text;
  for (int row = 0; row < layout.rows; ++row) compose_row(layout, row, TextRow(text));
  return text;
}

ModuleMatrix read_rows(std::string_view text, int rows, int columns) {
  ModuleMatrix modules(rows, columns);
  for (int row = 0; row < rows; ++row) {
    const std::size_t end = text.find(kLineEnd);
    draw_line(text.substr(0, end), ModuleRow(modules.row(row)));
    text.remove_prefix(end + kLineEnd.size());
  }
  return modules;
}

}  // namespace korvex::pdf417
