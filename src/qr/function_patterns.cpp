#include "qr/construction.hpp"
#include "qr/format_information.hpp"

namespace korvex::qr {
namespace {

constexpr std::array<std::uint8_t, 7> kFinderPattern = {0b1111111, 0b1000001, 0b1011101, 0b1011101,
                                                        0b1011101, 0b1000001, 0b1111111};
// Also the finder sub-pattern of rMQR.
constexpr std::array<std::uint8_t, 5> kAlignmentPattern = {0b11111, 0b10001, 0b10101, 0b10001, 0b11111};
constexpr std::uint64_t kEvenColumns = 0xAAAAAAAAAAAAAAAA;

template <std::size_t Size>
void draw_square(const std::array<std::uint8_t, Size>& pattern, int row, int column, Layer& layer) {
  for (std::size_t i = 0; i < Size; ++i) {
    layer.set(row + static_cast<int>(i), column, static_cast<int>(Size), pattern[i]);
  }
}

/// Timing pattern: dark at the even columns in [begin, end) of a row.
void draw_row_timing(int row, int begin, int end, Canvas& canvas) {
  for (int w = 0; w < canvas.words; ++w) {
    canvas.dark.word(row, w) |= kEvenColumns & bit_range(begin - 64 * w, end - 64 * w);
  }
}

/// Timing pattern: dark at the even rows in [begin, end) of a column. `begin` is even.
void draw_column_timing(int column, int begin, int end, Canvas& canvas) {
  for (int row = begin; row < end; row += 2) canvas.dark.set(row, column);
}

/// Alignment patterns of Model 2, ISO/IEC 18004:2015, 6.3.6 and Annex E.
void draw_alignment_patterns(Canvas& canvas) {
  const int side = canvas.columns;
  const int count = (side - 14) / 28 + 1;  // intervals between the timing pattern and the far corner
  const int step = (((side - count) * 2 - 26) / count + 1) / 4 * 2 + 2;
  const auto draw = [&](int row, int column) {
    draw_square(kAlignmentPattern, row - 2, column - 2, canvas.dark);
    canvas.data_area.clear(row - 2, column - 2, 5, 5);
  };
  for (int row = side - 7; row >= 12; row -= step) {
    for (int column = side - 7; column >= 12; column -= step) draw(row, column);
  }
  for (int centre = side - 7 - step; centre >= step / 2 + 7; centre -= step) {
    draw(6, centre);
    draw(centre, 6);
  }
}

/// Version information, ISO/IEC 18004:2015, 7.10: bit k in row k / 3 and column k mod 3 of its first area,
/// rows and columns exchanged in the second.
void draw_version_information(Canvas& canvas) {
  const std::uint32_t word = version_information(canvas.version);
  const int edge = canvas.columns - 11;
  for (int k = 0; k < 18; ++k) {
    if ((word >> k & 1U) == 0) continue;
    canvas.dark.set(k / 3, edge + k % 3);
    canvas.dark.set(edge + k % 3, k / 3);
  }
  canvas.data_area.clear(0, edge, 6, 3);
  canvas.data_area.clear(edge, 0, 3, 6);
}

/// What Model 1 and Model 2 share: finder and timing patterns, format information areas, dark module.
void draw_square_symbol(Canvas& canvas) {
  const int side = canvas.columns;
  Layer& area = canvas.data_area;
  area.fill_rows(0, 8, canvas.words, 9, side - 8);
  area.fill_rows(9, side - 9, canvas.words, 0, side);
  area.fill_rows(side - 8, side - 1, canvas.words, 9, side);
  area.fill_rows(6, 6, canvas.words, 0, 0);
  area.clear(9, 6, side - 17, 1);

  draw_square(kFinderPattern, 0, 0, canvas.dark);
  draw_square(kFinderPattern, 0, side - 7, canvas.dark);
  draw_square(kFinderPattern, side - 7, 0, canvas.dark);
  draw_row_timing(6, 8, side - 8, canvas);
  draw_column_timing(6, 8, side - 8, canvas);
  canvas.dark.set(side - 8, 8);
}

void draw_model2(Canvas& canvas) {
  draw_square_symbol(canvas);
  if (canvas.version >= 2) draw_alignment_patterns(canvas);
  if (canvas.version >= 7) draw_version_information(canvas);
}

void draw_model1(Canvas& canvas) {
  draw_square_symbol(canvas);
  const int side = canvas.columns;
  canvas.dark.set(side - 1, side - 1);
  canvas.data_area.clear(side - 2, side - 2, 2, 2);
  for (int at = side - 9; at > 12; at -= 8) {  // extension patterns, on the right and at the bottom
    canvas.data_area.clear(at - 3, side - 2, 4, 2);
    canvas.data_area.clear(side - 2, at - 3, 2, 4);
  }
}

void draw_micro(Canvas& canvas) {
  const int side = canvas.columns;
  canvas.data_area.fill_rows(0, 0, canvas.words, 0, 0);
  canvas.data_area.fill_rows(1, 8, canvas.words, 9, side);
  canvas.data_area.fill_rows(9, side - 1, canvas.words, 1, side);
  draw_square(kFinderPattern, 0, 0, canvas.dark);
  draw_row_timing(0, 8, side, canvas);
  draw_column_timing(0, 8, side, canvas);
}

/// Columns of alignment patterns and of the timing patterns between them, by the symbol's width in modules.
/// Ends with 0.
constexpr std::array<int, 5> rmqr_alignment_columns(int columns) {
  switch (columns) {
    case 43:
      return {21};
    case 59:
      return {19, 39};
    case 77:
      return {25, 51};
    case 99:
      return {23, 49, 75};
    case 139:
      return {27, 55, 83, 111};
    default:
      return {};
  }
}

void draw_rmqr(Canvas& canvas) {
  const int rows = canvas.rows;
  const int columns = canvas.columns;
  Layer& dark = canvas.dark;
  const auto clear = [&](int row, int column, int height, int width) {
    canvas.data_area.clear(row, column, height, width);
    canvas.rmqr_data_columns.clear(column, row, width, height);
  };
  canvas.data_area.fill_rows(0, rows - 1, canvas.words, 1, columns - 1);
  canvas.rmqr_data_columns.fill_rows(0, columns - 1, 1, 1, rows - 1);
  clear(0, 0, 1, columns);
  clear(rows - 1, 0, 1, columns);
  clear(0, 0, rows, 1);
  clear(0, columns - 1, rows, 1);
  draw_row_timing(0, 0, columns, canvas);
  draw_row_timing(rows - 1, 0, columns, canvas);
  draw_column_timing(0, 0, rows, canvas);
  draw_column_timing(columns - 1, 0, rows, canvas);

  for (const int column : rmqr_alignment_columns(columns)) {
    if (column == 0) break;
    draw_column_timing(column, 0, rows, canvas);
    clear(0, column, rows, 1);
    for (const int row : {0, rows - 3}) {
      dark.set(row, column - 1, 3, 0b111);
      dark.set(row + 1, column - 1, 3, 0b101);
      dark.set(row + 2, column - 1, 3, 0b111);
      clear(row, column - 1, 3, 3);
    }
  }

  // Corner finder patterns: three modules along each edge and a light one inside.
  dark.set(0, columns - 3, 3, 0b111);
  dark.set(1, columns - 1);
  clear(1, columns - 2, 1, 1);
  dark.set(rows - 1, 0, 3, 0b111);
  if (rows != 9) dark.set(rows - 2, 0);  // with nine rows the separator of the finder pattern is there
  clear(rows - 2, 1, 1, 1);

  draw_square(kFinderPattern, 0, 0, dark);
  clear(0, 0, rows == 7 ? 7 : 8, 8);
  draw_square(kAlignmentPattern, rows - 5, columns - 5, dark);
  clear(rows - 5, columns - 5, 5, 5);

  // Format information, beside the finder pattern and beside the sub-pattern.
  clear(1, 8, 5, 3);
  clear(1, 11, 3, 1);
  clear(rows - 6, columns - 8, 5, 3);
  clear(rows - 6, columns - 5, 1, 3);
}

}  // namespace

void draw_function_patterns(SymbolType type, int version, Canvas& canvas) {
  canvas.type = type;
  canvas.version = version;
  canvas.rows = row_count(type, version);
  canvas.columns = column_count(type, version);
  canvas.words = (canvas.columns + 63) / 64;
  const int padded_rows = (canvas.rows + 11) / 12 * 12;
  canvas.dark.fill_rows(0, padded_rows - 1, canvas.words, 0, 0);
  canvas.data_area.fill_rows(canvas.rows, padded_rows - 1, canvas.words, 0, 0);
  switch (type) {
    case SymbolType::model1:
      return draw_model1(canvas);
    case SymbolType::micro:
      return draw_micro(canvas);
    case SymbolType::rmqr:
      return draw_rmqr(canvas);
    default:
      return draw_model2(canvas);
  }
}

}  // namespace korvex::qr
