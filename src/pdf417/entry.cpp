#include "pdf417/entry.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "frame/raster.hpp"
#include "pdf417/construction.hpp"
#include "pdf417/layout.hpp"
#include "pdf417/sizing.hpp"
#include "pdf417/tables.hpp"

namespace korvex::pdf417 {
namespace {

constexpr bool in_range(int value, int least, int most) {
  return value >= least && value <= most;
}

/// The record without its data. Nothing when a field is out of range; the pixel fields are looked at later.
std::optional<Request> read_settings(const PDF_Params& params) {
  Request request{.dialect = Dialect::korvex32,
                  .columns = params.columns,
                  .rows = params.rows,
                  .byte_only = params.byte_only != 0};
  if (params.micro != 0) {
    const auto found = std::ranges::find_if(kMicroLayouts, [&](const MicroLayout& size) {
      return size.columns == params.columns && size.rows == params.rows;
    });
    if (found == kMicroLayouts.end()) return std::nullopt;
    request.kind = Kind::micro;
    request.micro = &*found;
    return request;
  }
  if (!in_range(params.ecc_level, 0, kMaxLevel)) return std::nullopt;
  if (params.columns != 0 && !in_range(params.columns, kMinColumns, kMaxColumns)) return std::nullopt;
  if (params.rows != 0 && !in_range(params.rows, kMinRows, kMaxRows)) return std::nullopt;
  if (params.columns * params.rows > kMaxCodewords) return std::nullopt;
  request.kind = params.truncated != 0 ? Kind::truncated : Kind::normal;
  request.ecc_level = params.ecc_level;
  return request;
}

Symbol_Size pixels(int width, int height) {
  return {static_cast<std::int16_t>(width), static_cast<std::int16_t>(height)};
}

}  // namespace

std::int16_t entry(Korvex_Device_Context device, const PDF_Params* params, Symbol_Size* size) {
  if (params == nullptr || size == nullptr) return KORVEX_BAD_PARAMETER;
  if (params->data == nullptr && params->length > 0) return KORVEX_BAD_PARAMETER;
  std::optional<Request> request = read_settings(*params);
  if (!request) return KORVEX_BAD_PARAMETER;

  *size = {0, 0};
  if (params->length < 0) return KORVEX_NO_SYMBOL;
  request->data = {params->data, static_cast<std::size_t>(params->length)};
  Layout layout;
  if (lay_out(*request, layout).outcome != Outcome::fits) return KORVEX_NO_SYMBOL;
  const int width = width_modules(layout.kind, layout.columns);
  *size = pixels(width, layout.rows);  // not pixels yet: what a caller with bad pixel fields is left with

  const raster::ModulePixels module{params->module_width, params->row_height};
  if (!in_range(module.width, 1, 9) || !in_range(module.height, 1, 24)) return KORVEX_BAD_PARAMETER;
  *size = pixels(width * module.width, layout.rows * module.height);
  return raster::paint(device, read_rows(row_pattern_text(layout), layout.rows, width), module);
}

}  // namespace korvex::pdf417
