// The linear encoder: data bytes, symbol character values, check characters, modules.
#include "linear/request.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

Fault read_values(const Request& request, Values& values) {
  switch (request.symbology) {
    case Symbology::codabar:
      return read_codabar(request, values);
    case Symbology::code39:
      return read_code39(request, values);
    case Symbology::itf:
      return read_itf(request, values);
    case Symbology::ean13:
      return read_ean13(request, values);
    case Symbology::upca:
      return read_upca(request, values);
    case Symbology::ean8:
      return read_ean8(request, values);
    case Symbology::upce:
      return read_upce(request, values);
    case Symbology::addon:
      return read_addon(request, values);
    case Symbology::industrial25:
    case Symbology::code25_3bar:
    case Symbology::msi:
      return read_digits(request, values);
    case Symbology::sscc18:
      return read_sscc18(request, values);
    case Symbology::code128:
      return read_code128_automatic(request, values);
    case Symbology::code128_inband:
      return read_code128_inband(request, values);
    case Symbology::code128_segments:
      return read_code128_segments(request, values);
    case Symbology::code11:
      return read_code11(request, values);
    case Symbology::code93:
      return read_code93(request, values);
  }
  return {};
}

Fault construct(const Request& request, Drawing& drawing) {
  switch (request.symbology) {
    case Symbology::codabar:
      construct_codabar(request, drawing);
      break;
    case Symbology::code39:
      construct_code39(request, drawing);
      break;
    case Symbology::itf:
      construct_itf(request, drawing);
      break;
    case Symbology::ean13:
    case Symbology::upca:
      construct_ean13(request, drawing);
      break;
    case Symbology::ean8:
      construct_ean8(request, drawing);
      break;
    case Symbology::upce:
      construct_upce(request, drawing);
      break;
    case Symbology::addon:
      construct_addon(request, drawing);
      break;
    case Symbology::industrial25:
      construct_industrial25(request, drawing);
      break;
    case Symbology::code25_3bar:
      construct_code25_3bar(request, drawing);
      break;
    case Symbology::sscc18:
    case Symbology::code128:
    case Symbology::code128_inband:
    case Symbology::code128_segments:
      construct_code128(request, drawing);
      break;
    case Symbology::msi:
      return construct_msi(request, drawing);
    case Symbology::code11:
      construct_code11(request, drawing);
      break;
    case Symbology::code93:
      construct_code93(request, drawing);
      break;
  }
  return {};
}

/// Interleaved 2 of 5 has a symbol character for two digits.
int symbol_characters(const Request& request, const Values& values) {
  return request.symbology == Symbology::itf ? values.size() / 2 : values.size();
}

}  // namespace

bool has_two_widths(Symbology symbology) {
  switch (symbology) {
    case Symbology::codabar:
    case Symbology::code39:
    case Symbology::itf:
    case Symbology::industrial25:
    case Symbology::code25_3bar:
      return true;
    default:
      return false;
  }
}

Fault draw(const Request& request, Drawing& drawing) {
  if (const Fault fault = read_values(request, drawing.values)) return fault;
  if (request.widths != nullptr && !has_two_widths(request.symbology)) return {Reason::widths_not_offered};
  if (const Fault fault = construct(request, drawing)) return fault;
  drawing.bars.finish();
  drawing.guards.finish();

  const int characters = symbol_characters(request, drawing.values);
  if (characters > kMaxSymbolCharacters) return {Reason::too_many_characters, 0, characters};
  const int modules = drawing.bars.module_count();
  if (modules > kMaxModules) return {Reason::too_many_modules};
  if (modules == 0) return {Reason::no_modules};
  return {};
}

}  // namespace korvex::linear
