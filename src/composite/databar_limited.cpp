// GS1 DataBar Limited (ISO/IEC 24724, clause 6).
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "composite/character_widths.hpp"
#include "composite/databar.hpp"
#include "composite/databar_tables.hpp"
#include "composite/limited_check_characters.hpp"
#include "composite/separators.hpp"
#include "composite/stack.hpp"
#include "composite/symbologies.hpp"
#include "composite/text.hpp"

namespace korvex::composite {
namespace {

constexpr std::uint64_t kMostNumber = 1'999'999'999'999;
constexpr std::uint64_t kLinkage = 2'015'133'531'096;  // added to the number under a 2D component
constexpr int kCharacterValues = 2'013'571;

constexpr int kModules = 74;  // guards included
constexpr int kHeight = 10;
constexpr int kCcBLeftPad = 10;

constexpr int kCharacterElements = 14;
constexpr int kSubsetElements = kCharacterElements / 2;
constexpr int kMostSubsetModules = 19;
constexpr auto kWeights = powers_of_3<2 * kCharacterElements>(kLimitedCheckCharacters.size());

/// Ways of dividing modules, of any number of elements up to a subset's and any number of modules, by the
/// narrowest and the widest element.
struct WayCounts {
  std::array<std::array<int, kMostSubsetModules + 1>, kSubsetElements + 1> by_elements_and_modules{};

  constexpr WayCounts(int narrowest, int widest) {
    by_elements_and_modules[0][0] = 1;
    for (std::size_t elements = 1; elements <= kSubsetElements; ++elements) {
      for (int modules = 0; modules <= kMostSubsetModules; ++modules) {
        for (int width = narrowest; width <= std::min(widest, modules); ++width) {
          by_elements_and_modules[elements][static_cast<std::size_t>(modules)] +=
              by_elements_and_modules[elements - 1][static_cast<std::size_t>(modules - width)];
        }
      }
    }
  }
  [[nodiscard]] constexpr int of(int elements, int modules) const {
    return by_elements_and_modules[static_cast<std::size_t>(elements)][static_cast<std::size_t>(modules)];
  }
};

template <int Widest>
inline constexpr WayCounts kAnyWays{1, Widest};
template <int Widest>
inline constexpr WayCounts kWideWays{2, Widest};  // without a narrow element
constexpr WayCounts kNoWays{1, 0};

/// Seven elements of a character.
struct Subset {
  int modules;
  const WayCounts* any;
  const WayCounts* left_out;  ///< of those: where a narrow element is due, the ways without one

  [[nodiscard]] constexpr int ways() const {
    return any->of(kSubsetElements, modules) - left_out->of(kSubsetElements, modules);
  }
};

struct Group {
  Subset first;
  Subset second;
};
template <int FirstModules, int FirstWidest, int SecondModules, int SecondWidest>
constexpr Group kLimitedGroup = {{FirstModules, &kAnyWays<FirstWidest>, &kNoWays},
                                 {SecondModules, &kAnyWays<SecondWidest>, &kWideWays<SecondWidest>}};

constexpr std::array kGroups = {
    kLimitedGroup<17, 6, 9, 3>,  kLimitedGroup<13, 5, 13, 4>, kLimitedGroup<9, 3, 17, 6>,
    kLimitedGroup<15, 5, 11, 4>, kLimitedGroup<11, 4, 15, 5>, kLimitedGroup<19, 8, 7, 1>,
    kLimitedGroup<7, 1, 19, 8>,
};
static_assert([] {
  int values = 0;
  for (const Group& group : kGroups) values += group.first.ways() * group.second.ways();
  return values;
}() == kCharacterValues);

/// Writes the subset's widths for `value` to every other element from `elements` on.
void put_subset(const Subset& subset, int value, std::uint8_t* elements) {
  int modules = subset.modules;
  const WayCounts* left_out = subset.left_out;
  for (int rest = kSubsetElements - 1; rest > 0; --rest, elements += 2) {
    const WayCounts* left_out_after = &kNoWays;  // a narrow element is there once the width is 1
    int width = 1;
    for (;; ++width) {
      const int ways = subset.any->of(rest, modules - width) - left_out_after->of(rest, modules - width);
      if (value < ways) break;
      value -= ways;
      left_out_after = left_out;
    }
    left_out = left_out_after;
    modules -= width;
    *elements = static_cast<std::uint8_t>(width);
  }
  *elements = static_cast<std::uint8_t>(modules);
}

void put_character(int value, std::uint8_t* elements) {
  const Group* group = kGroups.data();
  int second_ways = group->second.ways();
  for (;;) {
    const int values = group->first.ways() * second_ways;
    if (value < values) break;
    value -= values;
    second_ways = (++group)->second.ways();
  }
  put_subset(group->first, value / second_ways, elements);
  put_subset(group->second, value % second_ways, elements + 1);
}

using SymbolElements = std::array<std::uint8_t, 3 * kCharacterElements>;

/// Left character, check character, right character.
SymbolElements symbol_elements(int left, int right) {
  constexpr std::size_t kCheck = kCharacterElements;
  constexpr std::size_t kRight = 2 * kCharacterElements;
  SymbolElements elements;
  put_character(left, elements.data());
  put_character(right, elements.data() + kRight);
  std::size_t checksum = 0;
  for (std::size_t i = 0; i < kCharacterElements; ++i) {
    checksum += elements[i] * std::size_t{kWeights[i]} +
                elements[kRight + i] * std::size_t{kWeights[kCharacterElements + i]};
  }
  std::uint64_t check = kLimitedCheckCharacters[checksum % kLimitedCheckCharacters.size()];
  for (std::size_t i = kRight; i-- > kCheck; check /= 10) elements[i] = static_cast<std::uint8_t>(check % 10);
  return elements;
}

}  // namespace

Fault build_databar_limited(const Request& request, Symbol& symbol, Details* details) {
  if (const Fault fault = check_digits(request.linear, kItemDigits)) return fault;
  const std::uint64_t number = number_of(request.linear, 0, request.linear.size());
  if (number > kMostNumber) return {Reason::limited_value_too_large};
  Component2d component;
  if (const Fault fault = encode_cc_a_or_b(request, 3, component, details)) return fault;

  const std::uint64_t value = number + (request.component ? kLinkage : 0);
  const auto left = static_cast<int>(value / kCharacterValues);
  const auto right = static_cast<int>(value % kCharacterValues);
  const Row row = guarded_row(symbol_elements(left, right), false);
  if (details != nullptr) {
    details->linear_text = item_element_string(number);
    details->linear_values = {left, right};
  }
  if (component.kind == Component::none) {
    Stack(symbol, component, 1, kModules).add(row, 0, kHeight);
    return {};
  }
  const int pad = component.kind == Component::cc_b ? kCcBLeftPad : 0;
  Stack stack(symbol, component, 2, kModules + pad);
  stack.add_component(0);
  stack.add(opposite_separator(row), pad, 1);
  stack.add(row, pad, kHeight);
  return {};
}

}  // namespace korvex::composite
