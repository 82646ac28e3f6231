// The linear encoder: data bytes, symbol character values, check characters, modules.
#include <array>
#include <cstddef>

#include "linear/request.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

struct Steps {
  Symbology symbology;
  Fault (*read)(const Request& request, Values& values);
  void (*construct)(const Request& request, Drawing& drawing);
  bool two_widths = false;
};

constexpr std::array<Steps, 17> kSteps = {{
    {Symbology::codabar, read_codabar, construct_codabar, true},
    {Symbology::code39, read_code39, construct_code39, true},
    {Symbology::itf, read_itf, construct_itf, true},
    {Symbology::ean13, read_ean13, construct_ean13},
    {Symbology::upca, read_upca, construct_ean13},
    {Symbology::ean8, read_ean8, construct_ean8},
    {Symbology::upce, read_upce, construct_upce},
    {Symbology::addon, read_addon, construct_addon},
    {Symbology::industrial25, read_digits, construct_industrial25, true},
    {Symbology::code25_3bar, read_digits, construct_code25_3bar, true},
    {Symbology::sscc18, read_sscc18, construct_code128},
    {Symbology::code128, read_code128_automatic, construct_code128},
    {Symbology::code128_inband, read_code128_inband, construct_code128},
    {Symbology::code128_segments, read_code128_segments, construct_code128},
    {Symbology::msi, read_msi, construct_msi},
    {Symbology::code11, read_code11, construct_code11},
    {Symbology::code93, read_code93, construct_code93},
}};
static_assert([] {
  for (std::size_t i = 0; i < kSteps.size(); ++i) {
    if (static_cast<std::size_t>(kSteps[i].symbology) != i) return false;
  }
  return true;
}());

const Steps& steps_of(Symbology symbology) {
  return kSteps[static_cast<std::size_t>(symbology)];
}

/// Symbol characters that count for kMaxSymbolCharacters.
int symbol_characters(const Request& request, const Values& values) {
  switch (request.symbology) {
    case Symbology::codabar:
    case Symbology::code39:
      return values.size() - 1;  // the last value is the stop character
    case Symbology::itf:
      return values.size() / 2;
    default:
      return values.size();
  }
}

}  // namespace

bool has_two_widths(Symbology symbology) {
  const auto index = static_cast<std::size_t>(symbology);
  return index < kSteps.size() && kSteps[index].two_widths;
}

Fault draw(const Request& request, Drawing& drawing) {
  const Steps& steps = steps_of(request.symbology);
  if (const Fault fault = steps.read(request, drawing.values)) return fault;
  if (request.widths != nullptr && !steps.two_widths) return {Reason::widths_not_offered};
  steps.construct(request, drawing);

  const int characters = symbol_characters(request, drawing.values);
  if (characters > kMaxSymbolCharacters) return {Reason::too_many_characters, 0, characters};
  const int modules = drawing.bars.module_count;
  if (modules > kMaxModules) return {Reason::too_many_modules};
  if (modules == 0) return {Reason::no_modules};
  return {};
}

}  // namespace korvex::linear
