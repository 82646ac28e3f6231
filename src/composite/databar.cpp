// GS1 DataBar Omnidirectional, Truncated, Stacked and Stacked Omnidirectional (ISO/IEC 24724, clause 5).
#include "composite/databar.hpp"

#include <utility>

#include "composite/databar_tables.hpp"
#include "composite/separators.hpp"
#include "composite/stack.hpp"
#include "composite/symbologies.hpp"
#include "composite/text.hpp"

namespace korvex::composite {
namespace {

constexpr std::uint64_t kLinkage = 10'000'000'000'000;  // added to the number under a 2D component
constexpr int kHalfValues = kOutsideValues * kInsideValues;
static_assert(kHalfValues == 4'537'077);

constexpr std::size_t kElements = 42;
constexpr std::size_t kUpperElements = 21;  // of a stacked symbol's upper row
using SymbolElements = std::array<std::uint8_t, kElements>;
// Places of the finders' wide elements; the right finder is drawn from its inner end.
constexpr std::size_t kLeftFinder = 8;
constexpr std::size_t kRightFinder = 31;

constexpr int kModules = 96;         // guards included
constexpr int kStackedModules = 50;  // of each row
constexpr int kOmnidirectionalHeight = 33;
constexpr int kTruncatedHeight = 13;
constexpr int kStackedUpperHeight = 5;
constexpr int kStackedLowerHeight = 7;
// Light modules beside a linear component that is narrower than its 2D component.
constexpr int kLeftPad = 5;
constexpr int kStackedRightPad = 7;

constexpr int kChecksumModulus = 79;
constexpr auto kWeights = powers_of_3<32>(kChecksumModulus);

/// The symbol character values, 1 to 4: left outside and inside, right outside and inside.
using CharacterValues = std::array<int, 4>;

CharacterValues character_values(std::uint64_t number) {
  const auto left = static_cast<int>(number / kHalfValues);
  const auto right = static_cast<int>(number % kHalfValues);
  return {left / kInsideValues, left % kInsideValues, right / kInsideValues, right % kInsideValues};
}

CharacterWidths outside_widths(int value) {
  return character_widths(kOutsideGroups, value);
}
/// From the outer end: an inside character begins with an element of its second subset.
CharacterWidths inside_widths(int value) {
  CharacterWidths widths = character_widths(kInsideGroups, value);
  for (std::size_t i = 0; i < widths.size(); i += 2) std::swap(widths[i], widths[i + 1]);
  return widths;
}

/// The left and the right finder pattern. The pairs (0, 8) and (8, 0), which look alike from both ends of a
/// symbol, are left out.
std::pair<int, int> finders_of(int checksum) {
  if (checksum >= 8) ++checksum;
  if (checksum >= 72) ++checksum;
  return {checksum / 9, checksum % 9};
}

SymbolElements symbol_elements(const CharacterValues& values) {
  const CharacterWidths characters[] = {outside_widths(values[0]), inside_widths(values[1]),
                                        outside_widths(values[2]), inside_widths(values[3])};
  int checksum = 0;
  for (std::size_t i = 0; i < 4; ++i) {
    checksum += weighted_sum(characters[i], std::span(kWeights).subspan(8 * i, 8));
  }
  const auto [left, right] = finders_of(checksum % kChecksumModulus);
  const FinderWidths& left_finder = kFinders[static_cast<std::size_t>(left)];
  const FinderWidths& right_finder = kFinders[static_cast<std::size_t>(right)];

  SymbolElements elements;
  put_forward(characters[0], elements, 0);
  put_backward(characters[1], elements, 20);
  put_forward(characters[3], elements, 21);
  put_backward(characters[2], elements, 41);
  for (std::size_t i = 0; i < 3; ++i) {
    elements[kLeftFinder + i] = left_finder[i];
    elements[kRightFinder + 2 - i] = right_finder[i];
  }
  elements[11] = elements[12] = elements[29] = elements[30] = 1;
  return elements;
}

/// The finder patterns among `elements`, of which the first is element `first` of the symbol.
FinderPlaces finder_places(const Request& request, Elements elements, std::size_t first, bool dark_first) {
  if (!request.standard()) return finder_like_places(elements, dark_first);
  FinderPlaces places;
  for (const std::size_t finder : {kLeftFinder, kRightFinder}) {
    if (finder >= first && finder < first + elements.size()) places.push(finder - first);
  }
  return places;
}

/// Both components of a request, the linear one as elements.
Fault encode_components(const Request& request, int columns, SymbolElements& elements, Component2d& component,
                        Details* details) {
  if (const Fault fault = check_digits(request.linear, kItemDigits)) return fault;
  if (const Fault fault = encode_cc_a_or_b(request, columns, component, details)) return fault;
  const std::uint64_t number = number_of(request.linear, 0, request.linear.size());
  const CharacterValues values = character_values(number + (request.component ? kLinkage : 0));
  elements = symbol_elements(values);
  if (details != nullptr) {
    details->linear_text = item_element_string(number);
    details->linear_values.assign(values.begin(), values.end());
  }
  return {};
}

}  // namespace

std::string item_element_string(std::uint64_t number) {
  std::string digits = std::to_string(number);
  digits.insert(0, kItemDigits - digits.size(), '0');
  const Bytes bytes(reinterpret_cast<const std::uint8_t*>(digits.data()), digits.size());
  digits.push_back(static_cast<char>('0' + check_digit(bytes)));
  return "01" + digits;
}

Fault build_databar(const Request& request, Symbol& symbol, Details* details) {
  SymbolElements elements;
  Component2d component;
  if (const Fault fault = encode_components(request, 4, elements, component, details)) return fault;

  const Row row = guarded_row(elements, false);
  const bool truncated = request.symbology == Symbology::databar_truncated;
  const int height = truncated ? kTruncatedHeight : kOmnidirectionalHeight;
  if (component.kind == Component::none) {
    Stack(symbol, component, 1, kModules).add(row, 0, height);
    return {};
  }
  Stack stack(symbol, component, 2, component_width(component));
  stack.add_component(0);
  stack.add(adjacent_row_separator(row, elements, false, finder_places(request, elements, 0, false)),
            kLeftPad, 1);
  stack.add(row, kLeftPad, height);
  return {};
}

Fault build_databar_stacked(const Request& request, Symbol& symbol, Details* details) {
  SymbolElements elements;
  Component2d component;
  if (const Fault fault = encode_components(request, 2, elements, component, details)) return fault;

  const Elements upper_elements = Elements(elements).first(kUpperElements);
  const Elements lower_elements = Elements(elements).subspan(kUpperElements);
  const Row upper = guarded_row(upper_elements, false);
  const Row lower = guarded_row(lower_elements, true);
  const bool omnidirectional = request.symbology == Symbology::databar_stacked_omni;
  const bool linked = component.kind != Component::none;
  const int rows = (omnidirectional ? 5 : 3) + (linked ? 1 : 0);
  Stack stack(symbol, component, rows, kStackedModules + (linked ? kStackedRightPad : 0));
  const Row upper_separator =
      adjacent_row_separator(upper, upper_elements, false, finder_places(request, upper_elements, 0, false));
  stack.add_component(0);
  if (linked) stack.add(upper_separator, 0, 1);
  if (omnidirectional) {
    stack.add(upper, 0, kOmnidirectionalHeight);
    stack.add(upper_separator, 0, 1);
    stack.add(alternating_middle_separator(kStackedModules), 0, 1);
    stack.add(adjacent_row_separator(lower, lower_elements, true,
                                     finder_places(request, lower_elements, kUpperElements, true)),
              0, 1);
    stack.add(lower, 0, kOmnidirectionalHeight);
  } else {
    stack.add(upper, 0, kStackedUpperHeight);
    stack.add(stacked_middle_separator(upper, lower), 0, 1);
    stack.add(lower, 0, kStackedLowerHeight);
  }
  return {};
}

}  // namespace korvex::composite
