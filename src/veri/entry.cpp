#include "veri/entry.hpp"

#include <cstddef>

#include "frame/device.hpp"
#include "veri/request.hpp"

namespace korvex::veri {
namespace {

constexpr int kMinModulePixels = 3;  // also what stands in for a size out of range
constexpr int kMaxModulePixels = 10;

Correction correction_of(int ecc_mode) {
  return ecc_mode == 2 ? Correction::two : ecc_mode == 4 ? Correction::four : Correction::none;
}

int module_pixels(int wanted) {
  return wanted < kMinModulePixels || wanted > kMaxModulePixels ? kMinModulePixels : wanted;
}

bool fits(const VERI_Params& params, Correction correction) {
  if (params.symbol_size < kMinSize || params.symbol_size > kMaxSize || params.data_length < 0) return false;
  return params.data_length <= capacity_bytes(params.symbol_size, correction);
}

/// The pixel path: a row of modules is first black over the full width, then its modules are set from the
/// border inwards, and the border to their right again.
void paint(Korvex_Device_Context device, const ModuleMatrix& symbol, int pixels) {
  const int side = symbol.rows();
  const auto paint_row = [&](int y, int begin, int end, device::Color color) {
    for (int x = begin; x < end; ++x) device::set_pixel(device, x, y, color);
  };
  for (int row = 0; row < side; ++row) {
    const int top = row * pixels;
    for (int y = top; y < top + pixels; ++y) paint_row(y, 0, side * pixels, device::kBlack);
    if (row == 0 || row == side - 1) continue;
    for (int y = top; y < top + pixels; ++y) {
      for (int column = kBorderModules; column < side; ++column) {
        const device::Color color = symbol.dark(row, column) ? device::kBlack : device::kWhite;
        paint_row(y, column * pixels, (column + 1) * pixels, color);
      }
    }
  }
}

}  // namespace

std::int16_t entry(Korvex_Device_Context device, const VERI_Params* params, Symbol_Size* size) {
  if (params == nullptr || size == nullptr) return KORVEX_BAD_PARAMETER;
  const Correction correction = correction_of(params->ecc_mode);
  if (!fits(*params, correction)) return KORVEX_NO_SYMBOL;
  if (params->data == nullptr && params->data_length > 0) return KORVEX_BAD_PARAMETER;
  const int pixels = module_pixels(params->module_width);
  if (pixels != module_pixels(params->module_height)) return KORVEX_BAD_PARAMETER;

  const ModuleMatrix symbol = draw({.size = params->symbol_size,
                                    .correction = correction,
                                    .data = {params->data, static_cast<std::size_t>(params->data_length)}});
  paint(device, symbol, pixels);
  size->width = static_cast<std::int16_t>(symbol.columns() * pixels);
  size->height = size->width;
  return KORVEX_OK;
}

}  // namespace korvex::veri
