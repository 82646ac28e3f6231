// GS1 DataBar Expanded and Expanded Stacked (ISO/IEC 24724, clause 7).
#include <algorithm>
#include <array>
#include <string_view>

#include "composite/databar.hpp"
#include "composite/databar_tables.hpp"
#include "composite/expanded_encodation.hpp"
#include "composite/separators.hpp"
#include "composite/stack.hpp"
#include "composite/symbologies.hpp"

namespace korvex::composite {
namespace {

constexpr int kHeight = 34;
constexpr int kCharacterModules = 17;
constexpr int kPairModules = 2 * kCharacterModules + kFinderModules;  // with the finder between them
constexpr int kGuardModules = 4;
constexpr int kCharacterElements = 8;
constexpr int kFinderElements = 5;
constexpr int kPairElements = 2 * kCharacterElements + kFinderElements;
constexpr int kMostPairs = (kMostDataCharacters + 2) / 2;
constexpr int kComponentLeftPad = 1;

constexpr int kChecksumModulus = 211;
/// By symbol character and element. Characters are numbered with the finders A1, A2, B1 ... F2 that they
/// stand at: the right one of finder 0 is 0, the left and right ones of finder m are 2m - 1 and 2m.
constexpr auto kWeights = powers_of_3<23 * kCharacterElements>(kChecksumModulus);

// By pairs of data characters from 3 on: the finders from left to right. A capital is a finder from its outer
// end (A1), a small letter the same from its inner end (A2).
constexpr std::array<std::string_view, 10> kFinderSequences = {
    "Aa",        // 3 data characters
    "AbB",       // 4, 5
    "AcBd",      // 6, 7
    "AeBdC",     // 8, 9
    "AeBdDf",    // 10, 11
    "AeBdEfF",   // 12, 13
    "AaBbCcDd",  // 14, 15
    "AaBbCcDeE", "AaBbCcDeFf", "AaBbCdDeEfF",
};

/// The finder sequence of a symbol, and of each finder its number in A1, A2, B1 ... F2.
class Finders {
 public:
  explicit Finders(int data_characters)
      : sequence_(kFinderSequences[static_cast<std::size_t>((data_characters - 2) / 2)]) {}

  [[nodiscard]] std::size_t count() const { return sequence_.size(); }
  [[nodiscard]] bool reversed(std::size_t index) const { return sequence_[index] >= 'a'; }
  [[nodiscard]] std::size_t number(std::size_t index) const {
    return 2 * letter(index) + (reversed(index) ? 1 : 0);
  }
  [[nodiscard]] const FinderWidths& widths(std::size_t index) const {
    return kExpandedFinders[letter(index)];
  }

 private:
  [[nodiscard]] std::size_t letter(std::size_t index) const {
    return static_cast<std::size_t>(sequence_[index] - (reversed(index) ? 'a' : 'A'));
  }
  std::string_view sequence_;
};

/// The whole symbol in one row: its elements, and how many they are.
struct SymbolElements {
  std::array<std::uint8_t, kMostPairs * kPairElements> widths;
  int count = 0;
};

void put_finder(const Finders& finders, std::size_t index, SymbolElements& elements) {
  const std::size_t first = index * kPairElements + kCharacterElements;
  const FinderWidths& wide = finders.widths(index);
  if (finders.reversed(index)) {
    std::ranges::copy(std::array<std::uint8_t, kFinderElements>{1, 1, wide[2], wide[1], wide[0]},
                      elements.widths.begin() + static_cast<std::ptrdiff_t>(first));
  } else {
    std::ranges::copy(std::array<std::uint8_t, kFinderElements>{wide[0], wide[1], wide[2], 1, 1},
                      elements.widths.begin() + static_cast<std::ptrdiff_t>(first));
  }
}

/// The check character comes first: data character i is symbol character i + 1. Returns its value.
int put_elements(const ExpandedData& data, SymbolElements& elements) {
  const Finders finders(data.count);
  for (std::size_t j = 0; j < finders.count(); ++j) put_finder(finders, j, elements);
  int checksum = 0;
  for (int i = 0; i < data.count; ++i) {
    const CharacterWidths widths =
        character_widths(kExpandedGroups, data.values[static_cast<std::size_t>(i)]);
    const std::size_t pair = static_cast<std::size_t>(i + 1) / 2;
    const bool right = i % 2 == 0;
    const std::size_t weights = 2 * finders.number(pair) - (right ? 0 : 1);
    checksum +=
        weighted_sum(widths, std::span(kWeights).subspan(weights * kCharacterElements, kCharacterElements));
    if (right) {
      put_backward(widths, elements.widths, pair * kPairElements + kPairElements - 1);
    } else {
      put_forward(widths, elements.widths, pair * kPairElements);
    }
  }
  const int check = kChecksumModulus * (data.count - kLeastDataCharacters) + checksum % kChecksumModulus;
  put_forward(character_widths(kExpandedGroups, check), elements.widths, 0);
  const int characters = data.count + 1;
  elements.count = characters / 2 * kPairElements + characters % 2 * (kCharacterElements + kFinderElements);
  return check;
}

/// A row of the symbol and the separator above or below it, both as they are drawn.
struct SymbolRow {
  Row modules;
  Row separator;
  int left_pad = 0;
};

/// Cuts the symbol into rows of equal numbers of symbol characters.
class RowCutter {
 public:
  RowCutter(const Request& request, const SymbolElements& elements, int characters, int segments_per_row)
      : request_(request),
        elements_(elements),
        characters_(characters),
        characters_per_row_(std::min(characters, segments_per_row)) {}

  [[nodiscard]] int row_count() const {
    return (characters_ + characters_per_row_ - 1) / characters_per_row_;
  }
  [[nodiscard]] int width() const {
    return characters_per_row_ / 2 * kPairModules +
           characters_per_row_ % 2 * (kCharacterModules + kFinderModules) + kGuardModules;
  }
  /// The last row and its separator, where there are several rows: how many of them reach one module beyond
  /// the width. With an odd number of characters in each row the last one may be full and moved all the same.
  [[nodiscard]] int overhanging_rows() const {
    const int rows = row_count();
    const bool full = characters_ % characters_per_row_ == 0;
    if (rows == 1 || !full || characters_per_row_ % 2 == 0) return 0;
    return row(rows - 1, false).left_pad > 0 ? 2 : 0;
  }
  /// Row `index` from the top, with its separator where one is wanted.
  [[nodiscard]] SymbolRow row(int index, bool with_separator) const {
    const int first_character = index * characters_per_row_;
    const int first = first_character / 2 * kPairElements + first_character % 2 * kCharacterElements;
    const int full = characters_per_row_ / 2 * kPairElements +
                     characters_per_row_ % 2 * (kCharacterElements + kFinderElements);
    const int count = std::min(full, elements_.count - first);
    const Elements widths =
        Elements(elements_.widths).subspan(static_cast<std::size_t>(first), static_cast<std::size_t>(count));
    const bool dark_first = first_character / 2 % 2 != 0;
    // Every other row is drawn from its other end, so that finders stand above finders of the same colours.
    bool reversed = first_character / 2 % 2 != index % 2;

    SymbolRow row;
    row.modules = guarded_row(widths, dark_first);
    if (with_separator) {
      const auto first_element = static_cast<std::size_t>(first);
      row.separator = adjacent_row_separator(row.modules, widths, dark_first,
                                             finder_places(widths, first_element, dark_first));
    }
    if (reversed && index == row_count() - 1 && count % 2 != 0) {
      reversed = false;  // the colours would not go with those of the row above: it is moved instead
      row.left_pad = 1;
    }
    if (reversed) {
      row.modules = row.modules.mirrored();
      if (with_separator) row.separator = row.separator.mirrored();
    }
    return row;
  }

 private:
  /// The finder patterns among `widths`, of which the first is element `first` of the symbol.
  [[nodiscard]] FinderPlaces finder_places(Elements widths, std::size_t first, bool dark_first) const {
    if (!request_.standard()) return finder_like_places(widths, dark_first);
    FinderPlaces places;
    for (std::size_t element = 0; element + kFinderElements <= widths.size(); ++element) {
      if ((first + element) % kPairElements != kCharacterElements) continue;
      // From its inner end a finder begins with its two narrow elements.
      const bool reversed = widths[element] == 1 && widths[element + 1] == 1;
      places.push(element + (reversed ? 2 : 0));
    }
    return places;
  }

  const Request& request_;
  const SymbolElements& elements_;
  int characters_;
  int characters_per_row_;
};

Fault check_segments(const Request& request) {
  constexpr int kLeastUnderComponent = 4;
  const int segments = request.segments_per_row;
  if (segments < 1) return {Reason::bad_segments, 0, segments};
  if (request.component && segments < kLeastUnderComponent) return {Reason::few_segments_for_2d, 0, segments};
  return {};
}

void note_details(const Request& request, const ExpandedData& data, int check, Details& details) {
  details.linear_text.assign(request.linear.begin(), request.linear.end());
  details.linear_values.assign(1, check);
  details.linear_values.insert(details.linear_values.end(), data.values.begin(),
                               data.values.begin() + data.count);
  details.method = data.method;
}

}  // namespace

Fault build_databar_expanded(const Request& request, Symbol& symbol, Details* details) {
  if (const Fault fault = check_segments(request)) return fault;
  ExpandedData data;
  if (const Fault fault = encode_expanded(request, data)) return fault;
  const int characters = data.count + 1;
  if (request.standard() && request.segments_per_row % 2 != 0 && characters > request.segments_per_row) {
    return {Reason::odd_segments, 0, request.segments_per_row, characters};
  }
  Component2d component;
  if (const Fault fault = encode_cc_a_or_b(request, 4, component, details)) return fault;

  SymbolElements elements;
  const int check = put_elements(data, elements);
  if (details != nullptr) note_details(request, data, check, *details);

  const RowCutter cutter(request, elements, characters, request.segments_per_row);
  const int rows = cutter.row_count();
  const bool linked = component.kind != Component::none;
  symbol.overhanging_rows = cutter.overhanging_rows();
  const int width = cutter.width() + (symbol.overhanging_rows > 0 ? 1 : 0);
  Stack stack(symbol, component, rows + 3 * (rows - 1) + (linked ? 1 : 0), width);
  stack.add_component(kComponentLeftPad);
  for (int i = 0; i < rows; ++i) {
    const bool first = i == 0;
    const bool last = i == rows - 1;
    const SymbolRow row = cutter.row(i, linked || rows > 1);
    if (!first) {
      stack.add(alternating_middle_separator(cutter.width()), 0, 1);
    }
    if (!first || linked) stack.add(row.separator, row.left_pad, 1);
    stack.add(row.modules, row.left_pad, kHeight);
    if (!last) stack.add(row.separator, row.left_pad, 1);
  }
  return {};
}

}  // namespace korvex::composite
