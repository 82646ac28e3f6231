// GS1-128 as a linear component.
#include <algorithm>

#include "composite/code128.hpp"
#include "composite/row.hpp"
#include "composite/stack.hpp"
#include "composite/symbologies.hpp"

namespace korvex::composite {
namespace {

using code128::kCharacterModules;

constexpr int kQuietModules = 10;
constexpr int kFinalBarModules = 2;
constexpr int kOutsideModules = 2 * kQuietModules + kFinalBarModules;  // of the characters

// Under a CC-A or CC-B of 4 columns, and under one data column of a CC-C.
constexpr int kLeastCharacters = 9;
constexpr int kComponentRightPad = 12;
constexpr int kLeastCharactersUnderCcC = 7;
constexpr int kCcCLeftPad = 1;

/// Data columns of the widest CC-C that stands on `characters` symbol characters: with the two light modules
/// at each of its ends it is no wider than the linear component with its quiet zones (ISO/IEC 24723).
/// Dialect::korvex32 leaves one module free.
int cc_c_columns(int characters, Dialect dialect) {
  constexpr int kColumnModules = 17;
  constexpr int kOtherModules = 17 * 4 + 1 + 2 * 2;  // start, row indicators, stop; quiet zones
  const int width = kCharacterModules * characters + kOutsideModules - (dialect == Dialect::korvex32 ? 1 : 0);
  return (width - kOtherModules) / kColumnModules;
}

/// The bars, or between quiet zones the opposite of every module: the separator.
Row symbol_row(const code128::Values& values, bool opposite) {
  const unsigned invert = opposite ? 0x7FFU : 0U;
  Row row;
  row.put_light(kQuietModules);
  for (const int value : values.all()) {
    row.put(code128::kPatterns[static_cast<std::size_t>(value)] ^ invert, kCharacterModules);
  }
  row.put(opposite ? 0b00 : 0b11, kFinalBarModules);
  row.put_light(kQuietModules);
  row.finish();
  return row;
}

Fault check_width(int characters, int least) {
  return characters < least ? Fault{Reason::linear_too_narrow, 0, characters, least} : Fault{};
}

/// Encodes the 2D component and says how far from the left it stands.
Fault encode_component(const Request& request, int characters, int width, Component2d& component,
                       int& left_pad, Details* details) {
  if (request.symbology == Symbology::gs1_128_cc_c) {
    if (const Fault fault = check_width(characters, kLeastCharactersUnderCcC)) return fault;
    left_pad = kCcCLeftPad;
    return encode_cc_c(request, cc_c_columns(characters, request.dialect), component, details);
  }
  if (const Fault fault = check_width(characters, kLeastCharacters)) return fault;
  if (const Fault fault = encode_cc_a_or_b(request, 4, component, details)) return fault;
  const int right_pad = (characters - kLeastCharacters) / 2 * kCharacterModules + kComponentRightPad;
  left_pad = width - component_width(component) - right_pad;
  return {};
}

}  // namespace

Fault build_gs1_128(const Request& request, Symbol& symbol, Details* details) {
  if (request.linear_height < 1) return {Reason::bad_linear_height, 0, request.linear_height};
  Component linked_to = Component::none;
  if (request.component) {
    linked_to = request.symbology == Symbology::gs1_128_cc_c ? Component::cc_c : Component::cc_a;
  }
  code128::Values values;
  if (const Fault fault = code128::encode(request, linked_to, values)) return fault;
  const int width = kCharacterModules * values.count + kOutsideModules;
  Component2d component;
  int left_pad = 0;
  if (request.component) {
    if (const Fault fault = encode_component(request, values.count, width, component, left_pad, details))
      return fault;
  }
  if (details != nullptr) {
    details->linear_text.assign(request.linear.begin(), request.linear.end());
    std::ranges::replace(details->linear_text, static_cast<char>(code128::kFnc1), '#');
    details->linear_values.assign(values.all().begin(), values.all().end());
  }

  const bool linked = request.component.has_value();
  // A CC-C that fills the width stands one module to the right of it.
  const int stack_width = linked ? std::max(width, left_pad + component_width(component)) : width;
  Stack stack(symbol, component, linked ? 2 : 1, stack_width);
  stack.add_component(left_pad);
  if (linked) stack.add(symbol_row(values, true), 0, 1);
  stack.add(symbol_row(values, false), 0, request.linear_height);
  return {};
}

}  // namespace korvex::composite
