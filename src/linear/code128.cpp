// Code 128 (ISO/IEC 15417): the drawing, and SSCC-18 as GS1-128.
#include "linear/code128_tables.hpp"
#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {

using namespace code128;

/// 00 and the 17 digits and their check digit, as pairs in set C behind FNC1. The rules' first one is for the
/// digits, the second for the symbol.
Fault read_sscc18(const Request& request, Values& values) {
  constexpr int kDigitCount = 17;
  const std::span<const std::uint8_t> data = request.data;
  Values digits;
  digits.push(0);
  digits.push(0);
  if (const Fault fault = append_values(kDigitValues, data, digits)) return fault;
  const int count = static_cast<int>(data.size());
  const bool checked = request.dialect == Dialect::standard && count == kDigitCount + 1;
  if (count != kDigitCount && !checked) return {Reason::bad_length, 0, count};

  const int supplied = checked ? digits.pop() : 0;
  const int computed = check_character(request.rules.first, digits.all());
  if (checked && supplied != computed) return {Reason::wrong_check_digit, count, supplied, computed};
  digits.push(computed);

  values.push(kStartC);
  values.push(kFnc1);
  for (int i = 0; i < digits.size(); i += 2) values.push(10 * digits[i] + digits[i + 1]);
  return {};
}

void construct_code128(const Request& request, Drawing& drawing) {
  Values& values = drawing.values;
  const bool sscc = request.symbology == Symbology::sscc18;
  values.push(check_character(sscc ? request.rules.second : request.rules.first, values.all()));
  BarWriter bars(drawing.bars);
  for (const Value value : values.all()) bars.put(kModules[value], kModulesPerCharacter);
  bars.put(kStopPattern);
  bars.finish();
}

}  // namespace korvex::linear
