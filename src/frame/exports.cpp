// The thirteen exports. Each is a thin door to its family; no exception passes through.
#include <cstdint>

#include "composite/entry.hpp"
#include "datamatrix/entry.hpp"
#include "frame/exceptions.hpp"
#include "korvex/korvex32.h"
#include "linear/entry.hpp"
#include "maxicode/entry.hpp"
#include "pdf417/entry.hpp"
#include "qr/entry.hpp"
#include "veri/entry.hpp"

namespace {

/// Runs one call; what it throws (memory ran out) becomes KORVEX_NO_SYMBOL.
template <class Call>
std::int16_t guarded(Call call) noexcept {
  const korvex::frame::ExceptionRecord record;
  if (!record.ok()) return KORVEX_NO_SYMBOL;
  try {
    return call();
  } catch (...) {
    return KORVEX_NO_SYMBOL;
  }
}

}  // namespace

int16_t KORVEX_CALL Korvex_Bit(uint16_t type, uint16_t guard_option, uint16_t text_option,
                               const Bar_Ratio* ratio, const Bit_Data* data, Bit_Result* result) {
  return guarded([&] { return korvex::linear::entry(type, guard_option, text_option, ratio, data, result); });
}
int16_t KORVEX_CALL Korvex_Bit_x64(uint16_t type, uint16_t guard_option, uint16_t text_option,
                                   const Bar_Ratio* ratio, const Bit_Data* data, Bit_Result* result) {
  return Korvex_Bit(type, guard_option, text_option, ratio, data, result);
}

int16_t KORVEX_CALL QR_Encode(Korvex_Device_Context device, QR_Params* params, Symbol_Size* size) {
  return guarded([&] { return korvex::qr::entry(device, params, size); });
}
int16_t KORVEX_CALL QR_Encode_x64(Korvex_Device_Context device, QR_Params* params, Symbol_Size* size) {
  return QR_Encode(device, params, size);
}

int16_t KORVEX_CALL PDF_Encode(Korvex_Device_Context device, const PDF_Params* params, Symbol_Size* size) {
  return guarded([&] { return korvex::pdf417::entry(device, params, size); });
}
int16_t KORVEX_CALL PDF_Encode_x64(Korvex_Device_Context device, const PDF_Params* params,
                                   Symbol_Size* size) {
  return PDF_Encode(device, params, size);
}

int16_t KORVEX_CALL DATA_Encode(Korvex_Device_Context device, const DATA_Params* params, Symbol_Size* size) {
  return guarded([&] { return korvex::datamatrix::entry(device, params, size); });
}
int16_t KORVEX_CALL DATA_Encode_x64(Korvex_Device_Context device, const DATA_Params* params,
                                    Symbol_Size* size) {
  return DATA_Encode(device, params, size);
}

int16_t KORVEX_CALL MAXI_Encode(Korvex_Device_Context device, const MAXI_Params* params, Symbol_Size* size) {
  return guarded([&] { return korvex::maxicode::entry(device, params, size); });
}
int16_t KORVEX_CALL MAXI_Encode_x64(Korvex_Device_Context device, const MAXI_Params* params,
                                    Symbol_Size* size) {
  return MAXI_Encode(device, params, size);
}

int16_t KORVEX_CALL CC_Encode(Korvex_Device_Context device, const CC_Params* params, Symbol_Size* size) {
  return guarded([&] { return korvex::composite::entry(device, params, size); });
}
int16_t KORVEX_CALL CC_Encode_x64(Korvex_Device_Context device, const CC_Params* params, Symbol_Size* size) {
  return CC_Encode(device, params, size);
}

int16_t KORVEX_CALL VERI_Encode(Korvex_Device_Context device, const VERI_Params* params, Symbol_Size* size) {
  return guarded([&] { return korvex::veri::entry(device, params, size); });
}
