#include "composite/entry.hpp"

#include <cstddef>
#include <cstdio>

#include "composite/painting.hpp"
#include "composite/symbologies.hpp"

namespace korvex::composite {
namespace {

constexpr int kTypes = 12;  // 1 to 12, in the order of Symbology

/// Programs that watch standard output know this message.
void say_value_too_large() {
  std::fputs("\nerror occurred, exiting.", stdout);
}

}  // namespace

std::int16_t entry(Korvex_Device_Context device, const CC_Params* params, Symbol_Size* size) {
  if (params == nullptr) return KORVEX_BAD_PARAMETER;
  if (params->length > kMaxTextBytes || params->length < 0) return KORVEX_BAD_DATA;
  if (params->type < 1 || params->type > kTypes) return KORVEX_NO_SYMBOL;
  if (params->data == nullptr || size == nullptr || params->module_size < 1) return KORVEX_BAD_PARAMETER;

  Request request{
      .symbology = static_cast<Symbology>(params->type - 1),
      .dialect = Dialect::korvex32,
      .linear = {},
      .component = {},
      .segments_per_row = params->segments_per_row,
      .linear_height = params->linear_height,
  };
  split_text({params->data, static_cast<std::size_t>(params->length)}, request);
  Symbol symbol;
  if (const Fault fault = build(request, symbol, nullptr)) {
    if (fault.reason == Reason::limited_value_too_large) say_value_too_large();
    return KORVEX_BAD_PARAMETER;
  }
  *size = painted_size(symbol, params->module_size);
  return paint(device, symbol, params->module_size);
}

}  // namespace korvex::composite
