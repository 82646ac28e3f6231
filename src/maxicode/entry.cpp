#include "maxicode/entry.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

#include "frame/device.hpp"
#include "maxicode/raster.hpp"
#include "maxicode/request.hpp"

namespace korvex::maxicode {
namespace {

bool in_range(int value, int lowest, int highest) {
  return value >= lowest && value <= highest;
}

std::span<const std::uint8_t> bytes_of(const char* text) {
  const std::string_view characters(text);
  return {reinterpret_cast<const std::uint8_t*>(characters.data()), characters.size()};
}

bool carrier_fields_in_range(const MAXI_Params& params) {
  return in_range(params.service_class, 1, 999) && in_range(params.country_code, 1, 999);
}

/// The checks in their order; nothing when one fails.
std::optional<Request> read_record(const MAXI_Params& params) {
  if (!in_range(params.position, 1, 8) || !in_range(params.total, 1, 8)) return std::nullopt;
  if (!in_range(params.mode, 2, 6) || params.mode == 5) return std::nullopt;
  Request request;
  request.mode = static_cast<Mode>(params.mode);
  request.dialect = Dialect::korvex32;
  request.position = params.position;
  request.total = params.total;
  if (request.is_carrier()) {
    if (!carrier_fields_in_range(params) || params.postal_code == nullptr) return std::nullopt;
    request.country_code = params.country_code;
    request.service_class = params.service_class;
    const auto postal_code = bytes_of(params.postal_code);
    if (request.mode == Mode::carrier_alphanumeric) {
      if (postal_code.size() != kPostalCharacters) return std::nullopt;
      std::ranges::copy(postal_code, request.postal_characters.begin());
    }
    request.postal_number = leading_number(params.postal_code);
    request.postal_length = static_cast<int>(postal_code.size() & 63);
  }
  if (params.message == nullptr) return std::nullopt;
  request.message = bytes_of(params.message);
  return request;
}

void paint(Korvex_Device_Context device, const Pixels& pixels) {
  for (int y = 0; y < kPixelHeight; ++y) {
    const PixelRow& row = pixels[static_cast<std::size_t>(y)];
    for (int x = 0; x < kPixelWidth; ++x) {
      const bool dark = (row[static_cast<std::size_t>(x / 64)] >> (63 - x % 64) & 1) != 0;
      device::set_pixel(device, x, y, dark ? device::kBlack : device::kWhite);
    }
  }
}

}  // namespace

std::int16_t entry(Korvex_Device_Context device, const MAXI_Params* params, Symbol_Size* size) {
  if (params == nullptr || size == nullptr) return KORVEX_BAD_PARAMETER;
  const std::optional<Request> request = read_record(*params);
  if (!request) return KORVEX_BAD_PARAMETER;
  const Codewords message = message_codewords(*request);
  if (message.overflowed()) return KORVEX_NO_SYMBOL;
  paint(device, pixels_of(construct(all_codewords(*request, message))));
  size->width = kPixelWidth;
  size->height = kPixelHeight;
  return KORVEX_OK;
}

}  // namespace korvex::maxicode
