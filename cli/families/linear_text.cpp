#include "families/linear_text.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

namespace korvex::cli::families {
namespace {

// In modules; ISO/IEC 15420 has digits of 2.75 mm and 0.33 mm a module.
constexpr double kDigitHeight = 8;
constexpr double kSmallDigitHeight = 5;  // four modules wide, beside the bars of UPC-A and UPC-E
constexpr double kGap = 1;               // between bars and digits of EAN/UPC
constexpr double kTextGap = 2;
constexpr double kLongerGuards = 5;

/// Modules [begin, end) over which a group of digits spreads; from the symbol's right edge when `from_right`.
struct Place {
  int begin;
  int end;
  bool from_right = false;
  bool small = false;
};

struct Arrangement {
  std::array<std::uint16_t, 5> groups;  ///< as the symbol gives them: how an arrangement is recognised
  std::array<Place, 4> places;          ///< one a group
  int long_edge = 0;                    ///< all bars are long within so many modules of either end
};

constexpr Arrangement kArrangements[] = {
    // EAN-13: a digit in the left quiet zone, six under each half
    {{1, 6, 6}, {{{-11, -4}, {3, 45}, {50, 92}}}},
    // UPC-A: small digits beside, five under each half; the bars of the outer digits are long
    {{1, 5, 5, 1}, {{{-9, -5, false, true}, {10, 45}, {50, 85}, {5, 9, true, true}}}, 10},
    // EAN-8
    {{0, 4, 4}, {{{}, {3, 31}, {36, 64}}}},
    // UPC-E: small digits beside, six under the bars
    {{1, 6, 1}, {{{-9, -5, false, true}, {3, 45}, {3, 7, true, true}}}},
};

const Arrangement* arrangement_of(const linear::Symbol& symbol) {
  const auto found = std::ranges::find(kArrangements, symbol.text_groups, &Arrangement::groups);
  return found == std::end(kArrangements) ? nullptr : &*found;
}

LongBars long_bars(const linear::Symbol& symbol, int long_edge) {
  const int modules = symbol.bars.size();
  LongBars bars{ModuleMatrix(1, modules), kLongerGuards};
  for (int module = 0; module < modules; ++module) {
    const bool at_edge = module < long_edge || module >= modules - long_edge;
    bars.modules.set_dark(0, module, symbol.bars.bar(module) && (symbol.guards.bar(module) || at_edge));
  }
  return bars;
}

void place_groups(Picture& picture, const linear::Symbol& symbol, const Arrangement& arrangement) {
  picture.long_bars = long_bars(symbol, arrangement.long_edge);
  const double bottom = picture.row_heights.back() + kGap + kDigitHeight;
  std::size_t begin = 0;
  for (std::size_t group = 0; group < arrangement.places.size(); ++group) {
    const std::size_t length = arrangement.groups[group];
    if (length == 0) continue;
    const Place& place = arrangement.places[group];
    const double height = place.small ? kSmallDigitHeight : kDigitHeight;
    const double left = place.begin + (place.from_right ? symbol.bars.size() : 0);
    const double width = place.end - place.begin;
    picture.texts.push_back(
        {symbol.text.substr(begin, length), {left, bottom - height, width, height}, true});
    begin += length;
  }
}

/// Above the bars, each digit over its own; the first begins behind the four modules of the add-on's start.
void place_addon(Picture& picture, const std::string& digits) {
  constexpr double kFirst = 3;
  constexpr double kPitch = 9;  // a digit and a separator
  const Box box{kFirst, -kGap - kDigitHeight, kPitch * static_cast<double>(digits.size()), kDigitHeight};
  picture.texts.push_back({digits, box, true});
}

/// The groups of a text with spaces between them; the text itself when it has none.
std::string spaced(const linear::Symbol& symbol) {
  std::string text;
  std::size_t begin = 0;
  for (const std::uint16_t length : symbol.text_groups) {
    if (length == 0) continue;
    if (begin > 0) text += ' ';
    text += symbol.text.substr(begin, length);
    begin += length;
  }
  return begin == 0 ? symbol.text : text;
}

}  // namespace

void place_linear_text(Picture& picture, linear::Symbology symbology, const linear::Symbol& symbol,
                       int narrow) {
  if (symbol.text.empty()) return;
  if (symbology == linear::Symbology::addon) {
    place_addon(picture, symbol.text);
  } else if (const Arrangement* const arrangement = arrangement_of(symbol)) {
    place_groups(picture, symbol, *arrangement);
  } else {
    const Box box{0, picture.row_heights.back() + kTextGap * narrow, static_cast<double>(symbol.bars.size()),
                  kDigitHeight * narrow};
    picture.texts.push_back({spaced(symbol), box, false});
  }
}

}  // namespace korvex::cli::families
