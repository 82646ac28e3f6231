#include "pdf417/faults.hpp"

#include <initializer_list>
#include <string>
#include <utility>

#include "pdf417/sizing.hpp"
#include "pdf417/tables.hpp"

namespace korvex::pdf417 {
namespace {

std::string joined(std::initializer_list<std::string> parts) {
  std::string text;
  for (const std::string& part : parts) text += part;
  return text;
}

Error parameter(std::initializer_list<std::string> parts) {
  return {Code::bad_parameter, joined(parts)};
}

bool in_range_or_free(int value, int least, int most) {
  return value == 0 || (value >= least && value <= most);
}

std::string number(std::size_t value) {
  return std::to_string(value);
}
std::string number(int value) {
  return std::to_string(value);
}

/// "11, 14 and 17": the rows that go with so many columns.
std::string rows_of_micro(int columns) {
  std::string list;
  std::string last;
  for (const MicroLayout& size : kMicroLayouts) {
    if (size.columns != columns) continue;
    if (!last.empty()) list += (list.empty() ? "" : ", ") + last;
    last = number(size.rows);
  }
  return list + " and " + last;
}

std::optional<Error> check_micro(const Options& options) {
  const auto [columns, rows] = std::pair(options.columns, options.rows);
  if (!in_range_or_free(columns, 1, 4)) {
    return parameter(
        {number(columns), " columns are out of range; MicroPDF417 has 1 to 4, and 0 leaves the choice."});
  }
  for (const MicroLayout& size : kMicroLayouts) {
    if (size.goes_with(columns, rows)) return std::nullopt;
  }
  if (columns != 0) {
    return parameter({"MicroPDF417 does not have ", number(rows), " rows of ", number(columns),
                      " columns; with ", number(columns), " columns go ", rows_of_micro(columns),
                      " rows, and 0 leaves the choice."});
  }
  return parameter({"MicroPDF417 does not have ", number(rows), " rows; there are ", rows_of_micro(1),
                    " with 1 column, ", rows_of_micro(2), " with 2 columns, ", rows_of_micro(3), " with 3, ",
                    rows_of_micro(4), " with 4, and 0 leaves the choice."});
}

}  // namespace

std::optional<Error> check(const Options& options) {
  const auto [columns, rows] = std::pair(options.columns, options.rows);
  if (options.kind > Kind::micro) return parameter({"The kind is not one of the list."});
  if (options.kind == Kind::micro) return check_micro(options);
  if (options.ecc_level < 0 || options.ecc_level > kMaxLevel) {
    return parameter(
        {"Error correction level ", number(options.ecc_level), " is out of range; there are 0 to 8."});
  }
  if (!in_range_or_free(columns, kMinColumns, kMaxColumns)) {
    return parameter(
        {number(columns), " columns are out of range; PDF417 has 1 to 30, and 0 leaves the choice."});
  }
  if (!in_range_or_free(rows, kMinRows, kMaxRows)) {
    return parameter({number(rows), " rows are out of range; PDF417 has 3 to 90, and 0 leaves the choice."});
  }
  if (columns * rows > kMaxCodewords) {
    return parameter({number(columns), " columns and ", number(rows), " rows make ", number(columns * rows),
                      " codewords; a symbol has at most 928."});
  }
  return std::nullopt;
}

Error describe(const Laid& laid, const Request& request, std::size_t data_bytes) {
  const Capacity room = capacity(request);
  if (laid.outcome == Outcome::no_room_for_data) {
    return {Code::no_symbol,
            joined({"The ", number(room.check), " check codewords of level ", number(request.ecc_level),
                    " leave no room for data among ", number(room.total),
                    " codewords; a lower level or a larger symbol would."})};
  }
  return {Code::no_symbol,
          joined({"The data has ", number(data_bytes), " bytes, of which the first ",
                  number(laid.bytes_that_fit), " fit; the largest symbol allowed holds ", number(room.data()),
                  " codewords of data and ", number(room.check), " check codewords."})};
}

}  // namespace korvex::pdf417
