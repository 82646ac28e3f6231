#include "linear/text.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "linear/code128_tables.hpp"
#include "linear/layout.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

using namespace code128;

void add_digits(GroupedText& text, const Values& values, int first) {
  for (int i = first; i < values.size(); ++i) text.add(kDigits[static_cast<std::size_t>(values[i])]);
}

/// Start C, FNC1, ten pairs of digits, the symbol's check character.
void add_sscc18(GroupedText& text, const Values& values) {
  constexpr int kFirstPair = 2;
  constexpr int kPairs = 10;
  text.add('(');
  for (int pair = 0; pair < kPairs; ++pair) {
    const int value = values[kFirstPair + pair];
    text.add(kDigits[static_cast<std::size_t>(value / 10)]);
    text.add(kDigits[static_cast<std::size_t>(value % 10)]);
    if (pair == 0) text.add(')');
  }
}

std::string by_value(std::string_view characters, const Values& values) {
  std::string text;
  text.reserve(static_cast<std::size_t>(values.size()));
  for (const Value value : values.all()) text += characters[value];
  return text;
}

/// A byte of ISO/IEC 8859-1 in UTF-8; a control character as a blank.
void add_latin1(std::string& text, int byte) {
  if (byte < ' ' || (byte >= 0x7F && byte < 0xA0)) {
    text += ' ';
  } else if (byte < 0x80) {
    text += static_cast<char>(byte);
  } else {
    text += static_cast<char>(0xC0 | byte >> 6);
    text += static_cast<char>(0x80 | (byte & 0x3F));
  }
}

/// Follows the code sets from the start character to before the check character, as a reader does.
class Code128Text {
 public:
  std::string read(std::span<const Value> values) {
    text_.reserve(2 * values.size());
    set_ = static_cast<Set>(values.front() - kStartA);
    for (const int value : values.subspan(1, values.size() - 2)) {
      const Set set = shifted_ ? other(set_) : set_;
      shifted_ = false;
      if (set == Set::c) {
        add_in_c(value);
      } else if (value < kFnc3) {
        add_character(set == Set::a && value >= 64 ? value - 64 : value + ' ');
      } else {
        follow(value);
      }
    }
    return std::move(text_);
  }

 private:
  static Set other(Set set) { return set == Set::a ? Set::b : Set::a; }

  void add_in_c(int value) {
    if (value < 100) {
      text_ += kDigits[static_cast<std::size_t>(value / 10)];
      text_ += kDigits[static_cast<std::size_t>(value % 10)];
    } else if (value != kFnc1) {
      set_ = value == kCodeA ? Set::a : Set::b;
    }
  }
  void add_character(int byte) {
    add_latin1(text_, byte + (upper_ != upper_once_ ? 0x80 : 0));
    upper_once_ = false;
  }
  /// Two FNC4 change the half for good, one for the next character.
  void follow(int value) {
    if (value == fnc4_value(set_)) {
      if (upper_once_) upper_ = !upper_;
      upper_once_ = !upper_once_;
    } else if (value == kShift) {
      shifted_ = true;
    } else if (value == kCodeA || value == kCodeB || value == kCodeC) {
      set_ = static_cast<Set>(kCodeA - value);
    }
  }

  std::string text_;
  Set set_ = Set::b;
  bool shifted_ = false;
  bool upper_ = false;
  bool upper_once_ = false;
};

/// The data themselves, without the FNC1 that `separator` stands for.
std::string printable(std::span<const std::uint8_t> data, std::optional<std::uint8_t> separator = {}) {
  const auto is_plain = [](std::uint8_t byte) { return byte >= ' ' && byte < 0x7F; };
  if (std::all_of(data.begin(), data.end(), is_plain)) return {data.begin(), data.end()};
  std::string text;
  for (const std::uint8_t byte : data) {
    if (byte != separator) add_latin1(text, byte);
  }
  return text;
}

}  // namespace

GroupedText grouped_text(const Request& request, const Values& values) {
  GroupedText text;
  const auto set_groups = [&text](std::initializer_list<std::uint16_t> groups) {
    for (const std::uint16_t group : groups)
      text.groups[static_cast<std::size_t>(text.group_count++)] = group;
  };
  const bool upca =
      request.symbology == Symbology::upca ||
      (request.symbology == Symbology::ean13 && request.dialect == Dialect::korvex32 && values[0] == 0);
  switch (request.symbology) {
    case Symbology::ean13:
    case Symbology::upca:
      add_digits(text, values, upca ? 1 : 0);
      upca ? set_groups({1, 5, 5, 1}) : set_groups({1, 6, 6});
      break;
    case Symbology::ean8:
      add_digits(text, values, 0);
      set_groups({0, 4, 4});
      break;
    case Symbology::upce:
      text.add('0');
      add_digits(text, values, 0);
      text.add(kDigits[static_cast<std::size_t>(upce_check_digit(values.all()))]);
      set_groups({1, 6, 1});
      break;
    case Symbology::sscc18:
      add_sscc18(text, values);
      set_groups({4, 1, 7, 9, 1});
      break;
    default:
      break;
  }
  return text;
}

std::string plain_text(const Request& request, const Values& values) {
  switch (request.symbology) {
    case Symbology::codabar:
      return by_value(kCodabarCharacters, values);
    case Symbology::code39:
      return by_value(kCode39Characters, values);
    case Symbology::code11:
      return by_value(kCode11Characters, values);
    case Symbology::itf:
    case Symbology::industrial25:
    case Symbology::code25_3bar:
    case Symbology::msi:
    case Symbology::addon:
      return by_value(kDigits, values);
    case Symbology::code128:
      return printable(request.data, request.gs1 ? std::optional(kGroupSeparator) : std::nullopt);
    case Symbology::code128_inband:
    case Symbology::code128_segments:
      return Code128Text().read(values.all());
    case Symbology::code93:
      return printable(request.data);
    default:  // these have grouped text
      return {};
  }
}

}  // namespace korvex::linear
