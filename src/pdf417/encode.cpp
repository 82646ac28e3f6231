// The C++ interface: options are checked, the message is laid out, the symbol drawn or described.
#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <utility>

#include "korvex/pdf417.hpp"
#include "pdf417/construction.hpp"
#include "pdf417/faults.hpp"
#include "pdf417/layout.hpp"
#include "pdf417/sizing.hpp"
#include "pdf417/tables.hpp"

namespace korvex::pdf417 {
namespace {

std::span<const std::uint8_t> bytes_of(std::string_view data) {
  return {reinterpret_cast<const std::uint8_t*>(data.data()), data.size()};
}

/// Of the sizes that go with the options and hold so many data codewords, the one of the smallest measure.
template <class Measure>
const MicroLayout* best_micro_size(const Options& options, int data_codewords, Measure measure) {
  const MicroLayout* best = nullptr;
  for (const MicroLayout& size : kMicroLayouts) {
    if (!size.goes_with(options.columns, options.rows) || size.data_codewords() < data_codewords) continue;
    if (best == nullptr || measure(size) < measure(*best)) best = &size;
  }
  return best;
}

/// Lays the message out in the smallest size of MicroPDF417 that goes with the options; at least one does.
Laid lay_out_micro(const Options& options, Request& request, Layout& layout, RunLog* log) {
  const auto least_room = [](const MicroLayout& size) { return -size.data_codewords(); };
  const auto area = [](const MicroLayout& size) {
    return size.rows * width_modules(Kind::micro, size.columns);
  };

  request.micro = best_micro_size(options, 0, least_room);
  Laid laid = lay_out(request, layout, log);
  if (laid.outcome != Outcome::fits) return laid;
  int needed = layout.codewords.count() - layout.check_codewords - layout.pad_codewords;
  for (;;) {
    const MicroLayout* const size = best_micro_size(options, needed, area);
    if (size == request.micro) return laid;
    request.micro = size;
    layout.codewords.truncate(0);
    if (log != nullptr) log->clear();
    laid = lay_out(request, layout, log);
    if (laid.outcome == Outcome::fits) return laid;
    // A message's end is encoded with an eye to the room left, and so may need more where there is less.
    needed = size->data_codewords() + 1;
  }
}

/// Lays the message out in `layout`, or says why it cannot be.
std::optional<Error> lay_out_message(const Options& options, std::span<const std::uint8_t> data,
                                     Layout& layout, RunLog* log = nullptr) {
  if (std::optional<Error> error = check(options)) return error;
  Request request{
      .kind = options.kind,
      .dialect = options.dialect,
      .columns = options.columns,
      .rows = options.rows,
      .ecc_level = options.ecc_level,
      .byte_only = options.byte_only,
      // More than fits any symbol is as good as all of it.
      .data = data.first(std::min(data.size(), kMoreBytesThanFit)),
  };
  const Laid laid = options.kind == Kind::micro ? lay_out_micro(options, request, layout, log)
                                                : lay_out(request, layout, log);
  if (laid.outcome == Outcome::fits) return std::nullopt;
  return describe(laid, request, data.size());
}

}  // namespace

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  Layout layout;
  if (std::optional<Error> error = lay_out_message(options, data, layout)) return *std::move(error);
  return Symbol{
      .modules = draw_rows(layout),
      .columns = layout.columns,
      .data_codewords = layout.codewords.count() - layout.pad_codewords - layout.check_codewords,
      .pad_codewords = layout.pad_codewords,
      .check_codewords = layout.check_codewords,
  };
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, bytes_of(data));
}

Result<std::string> row_pattern_text(const Options& options, std::span<const std::uint8_t> data) {
  Layout layout;
  if (std::optional<Error> error = lay_out_message(options, data, layout)) return *std::move(error);
  return row_pattern_text(layout);
}

Result<std::string> row_pattern_text(const Options& options, std::string_view data) {
  return row_pattern_text(options, bytes_of(data));
}

Result<Codewords> codewords(const Options& options, std::span<const std::uint8_t> data) {
  Layout layout;
  Codewords result;
  if (std::optional<Error> error = lay_out_message(options, data, layout, &result.runs)) {
    return *std::move(error);
  }
  const auto values = layout.codewords.all();
  result.values.assign(values.begin(), values.end());
  result.pad_codewords = layout.pad_codewords;
  result.check_codewords = layout.check_codewords;
  return result;
}

Result<Codewords> codewords(const Options& options, std::string_view data) {
  return codewords(options, bytes_of(data));
}

std::span<const MicroSize> micro_sizes() {
  static constexpr auto kSizes = [] {
    std::array<MicroSize, kMicroLayouts.size()> sizes{};
    for (std::size_t i = 0; i < sizes.size(); ++i) {
      const MicroLayout& layout = kMicroLayouts[i];
      sizes[i] = {layout.columns, layout.rows, layout.check_codewords};
    }
    return sizes;
  }();
  return kSizes;
}

int row_height(Kind kind) {
  return kind == Kind::micro ? 2 : 3;
}

int quiet_zone(Kind kind) {
  return kind == Kind::micro ? 1 : 2;
}

}  // namespace korvex::pdf417
