#include "datamatrix/entry.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "datamatrix/encode.hpp"
#include "frame/raster.hpp"

namespace korvex::datamatrix {
namespace {

/// Copies `data` to `copy`, every pair of tildes as one. Returns the number of bytes, -1 for a tilde without
/// its second one and for more than fit.
int copy_without_doubled_tildes(std::span<const std::uint8_t> data, std::span<std::uint8_t> copy) {
  std::size_t count = 0;
  for (std::size_t at = 0; at < data.size(); ++at) {
    if (data[at] == '~' && (++at == data.size() || data[at] != '~')) return -1;
    if (count == copy.size()) return -1;
    copy[count++] = data[at];
  }
  return static_cast<int>(count);
}

Options read_options(const DATA_Params& params) {
  Options options;
  options.rows = params.rows;
  options.columns = params.columns;
  options.fnc1_escape = params.fnc1_escape == 1;
  return options;
}

bool is_pixel_count(int value) {
  return value <= std::numeric_limits<std::int16_t>::max();
}

}  // namespace

std::int16_t entry(Korvex_Device_Context device, const DATA_Params* params, Symbol_Size* size) {
  if (params == nullptr || size == nullptr || params->data == nullptr) return KORVEX_BAD_PARAMETER;
  if (params->module_width < 1 || params->module_height < 1) return KORVEX_BAD_PARAMETER;
  std::array<std::uint8_t, kMaxDataBytes> copy;
  const auto given = static_cast<std::size_t>(std::max<int>(params->length, 0));
  const int length = copy_without_doubled_tildes({params->data, given}, copy);
  if (length < 0) return KORVEX_BAD_PARAMETER;

  Drawing drawing;
  if (draw(read_options(*params), std::span(copy).first(static_cast<std::size_t>(length)), drawing)) {
    return KORVEX_NO_SYMBOL;
  }
  const int width = drawing.modules.columns() * params->module_width;
  const int height = drawing.modules.rows() * params->module_height;
  if (!is_pixel_count(width) || !is_pixel_count(height)) return KORVEX_BAD_PARAMETER;
  const std::int16_t result =
      raster::paint(device, drawing.modules, {params->module_width, params->module_height});
  if (result != KORVEX_OK) return result;
  size->width = static_cast<std::int16_t>(width);
  size->height = static_cast<std::int16_t>(height);
  return KORVEX_OK;
}

}  // namespace korvex::datamatrix
