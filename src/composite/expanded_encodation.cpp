#include "composite/expanded_encodation.hpp"

#include <algorithm>

#include "composite/encodation.hpp"
#include "composite/method_field.hpp"
#include "composite/text.hpp"

namespace korvex::composite {
namespace {

constexpr int kCharacterBits = 12;
constexpr int kMostExpandedBits = kCharacterBits * kMostDataCharacters;

// Places in an element string: AI 01 and its 14 digits, then the AI that chooses the method.
constexpr int kGtin = 2;
constexpr int kAfterGtin = 16;
constexpr int kAfterAi = kAfterGtin + 4;

constexpr int kMostCharacters = 74;
constexpr int kMostCharactersWithOthers = 41;  // than digits

/// The number of symbol characters that hold the bits; rows of a stacked symbol have at least two of them.
class ExpandedSizing final : public Sizing {
 public:
  explicit ExpandedSizing(int segments_per_row) : segments_per_row_(segments_per_row) {}

  int remaining_bits(int bits) override {
    if (bits > kMostExpandedBits) return -1;
    count_ = std::max(kLeastDataCharacters, (bits + kCharacterBits - 1) / kCharacterBits);
    if ((count_ + segments_per_row_ + 1) % segments_per_row_ == 1) ++count_;
    if (count_ > kMostDataCharacters) return -1;
    return count_ * kCharacterBits - bits;
  }
  /// Data characters of the last call.
  [[nodiscard]] int count() const { return count_; }

 private:
  int segments_per_row_;
  int count_ = 0;
};

/// The method field and what it covers of the text.
struct MethodField {
  std::string_view name;
  int size_bits_place =
      0;  ///< place of the two bits that say how long the symbol is; 0: it is of fixed length
};

/// Whether AI 01 and 14 digits stand in front.
bool begins_with_item_number(Bytes text) {
  return text.size() >= kAfterGtin && text[0] == '0' && text[1] == '1' && all_digits(text.first(kAfterGtin));
}

Fault check_text(const Request& request) {
  const Bytes text = request.linear;
  if (const int position = find_bad_character(text)) {
    return {Reason::bad_linear_character, position, text[static_cast<std::size_t>(position - 1)]};
  }
  if (const auto caret = std::ranges::find(text, kCaret); caret != text.end()) {
    return {Reason::bad_linear_character, static_cast<int>(caret - text.begin()) + 1, kCaret};
  }
  const int size = static_cast<int>(text.size());
  const bool with_item_number = begins_with_item_number(text);
  if (!request.standard()) {
    if (!with_item_number) return {Reason::not_a_gtin};
    const int most = all_digits(text) ? kMostCharacters : kMostCharactersWithOthers;
    if (size > most) return {Reason::expanded_too_long, 0, size, most};
  } else if (size == 0) {
    return {Reason::no_element_string};
  } else if (with_item_number) {  // readers compute the check digit anew
    const int given = text[kAfterGtin - 1] - '0';
    const int expected = check_digit(text.subspan(kGtin, kAfterGtin - 1 - kGtin));
    if (given != expected) return {Reason::wrong_check_digit, kAfterGtin, given, expected};
  }
  return {};
}

/// The digits 2 to 13 of the item number.
void put_item_digits(Compaction& compaction) {
  for (int i = kGtin + 1; i < kAfterGtin - 1; i += 3) compaction.put_digits(i, 3);
}

/// A 20-bit weight, or the 15 bits of the methods for one AI, stands at the place of six digits behind the
/// AI.
constexpr int kWeightDigits = 6;
constexpr int kNoDate = 38400;  // year 100

class MethodChooser {
 public:
  MethodChooser(const Request& request, ElementText& text, Compaction& compaction)
      : request_(request), text_(text), compaction_(compaction) {}

  Fault put(MethodField& field) {
    if (!begins_with_item_number(text_.bytes())) {  // method 00
      field.name = "general";
      field.size_bits_place = 3;
      compaction_.put(0b0000, 4);
      return {};
    }
    if (text_[kGtin] == '9') {
      if (put_weight_of_one_ai()) {
        field.name = "weight";
        return {};
      }
      if (put_price(field)) return {};
      if (has_weight()) {
        const bool dated = date_kind() >= 0;
        if (dated || text_.size() == kAfterAi + kWeightDigits) {
          field.name = dated ? "weight and date" : "weight";
          return put_weight_and_date();
        }
      }
    }
    field.name = "item number";
    field.size_bits_place = 2;
    compaction_.put(0b100, 3);
    compaction_.put_digits(kGtin, 1);
    put_item_digits(compaction_);
    compaction_.move_to(kAfterGtin);
    return {};
  }

 private:
  [[nodiscard]] int number(int first, int count) const {
    return static_cast<int>(
        number_of(text_.bytes(), static_cast<std::size_t>(first), static_cast<std::size_t>(count)));
  }
  [[nodiscard]] bool ai_is(std::string_view digits) const {
    for (std::size_t i = 0; i < digits.size(); ++i) {
      if (text_[kAfterGtin + static_cast<int>(i)] != static_cast<std::uint8_t>(digits[i])) return false;
    }
    return true;
  }

  /// Methods 0100 and 0101: AI 3103, 3202 or 3203 with a small weight.
  bool put_weight_of_one_ai() {
    if (text_.size() != kAfterAi + kWeightDigits || !digits_at(text_, kAfterAi, kWeightDigits)) return false;
    const int weight = number(kAfterAi, kWeightDigits);
    if (ai_is("3103") && weight <= 32767) {
      put_fixed(0b0100, weight);
    } else if (ai_is("3202") && weight <= 9999) {
      put_fixed(0b0101, weight);
    } else if (ai_is("3203") && weight < 22768) {
      put_fixed(0b0101, weight + 10000);
    } else {
      return false;
    }
    return true;
  }
  void put_fixed(unsigned method, int weight) {
    compaction_.put(method, 4);
    put_item_digits(compaction_);
    compaction_.put(static_cast<unsigned>(weight), 15);
    compaction_.move_to(text_.size());
  }

  /// Methods 01100 and 01101: AI 392x or 393x, x decimal places.
  bool put_price(MethodField& field) {
    constexpr int kCurrencyDigits = 3;
    const bool currency = ai_is("393");
    if (!currency && !ai_is("392")) return false;
    const std::uint8_t places = text_[kAfterAi - 1];
    if (places < '0' || places > '3') return false;
    const int price = kAfterAi + (currency ? kCurrencyDigits : 0);
    if (text_.size() <= price || (currency && !digits_at(text_, kAfterAi, kCurrencyDigits))) return false;
    compaction_.put(currency ? 0b0110100 : 0b0110000, 7);
    put_item_digits(compaction_);
    compaction_.put(places - unsigned{'0'}, 2);
    if (currency) compaction_.put_digits(kAfterAi, kCurrencyDigits);
    compaction_.move_to(price);
    field = {currency ? "price with currency" : "price", 6};
    return true;
  }

  /// AI 310x or 320x with a weight of at most five digits.
  [[nodiscard]] bool has_weight() const {
    return (ai_is("310") || ai_is("320")) && digits_at(text_, kAfterAi - 1, 1 + kWeightDigits) &&
           text_[kAfterAi] == '0';
  }
  /// 0 to 3 for a date of AI 11, 13, 15 or 17 behind the weight at the end of the text, else -1.
  [[nodiscard]] int date_kind() const {
    constexpr int kDateAi = kAfterAi + kWeightDigits;
    if (text_.size() != kDateAi + 8 || text_[kDateAi] != '1' || !digits_at(text_, kDateAi + 2, 6)) return -1;
    const std::size_t kind = std::string_view("1357").find(static_cast<char>(text_[kDateAi + 1]));
    return kind == std::string_view::npos ? -1 : static_cast<int>(kind);
  }
  /// Methods 0111000 to 0111111.
  Fault put_weight_and_date() {
    constexpr int kDate = kAfterAi + kWeightDigits + 2;
    const int kind = date_kind();
    if (kind >= 0 && request_.standard() && !date_survives(text_, kDate)) {
      return {Reason::impossible_date_in_linear, kDate + 1};
    }
    compaction_.put(0b0111000 + 2 * static_cast<unsigned>(std::max(kind, 0)) + (ai_is("320") ? 1 : 0), 7);
    put_item_digits(compaction_);
    const int weight = number(kAfterAi - 1, 1) * 100'000 + number(kAfterAi, kWeightDigits);
    compaction_.put(static_cast<unsigned>(weight) >> 16, 4);
    compaction_.put(static_cast<unsigned>(weight) & 0xFFFF, 16);
    compaction_.put(kind >= 0 ? date_value(text_, kDate) : kNoDate, 16);
    compaction_.move_to(text_.size());
    return {};
  }

  const Request& request_;
  ElementText& text_;
  Compaction& compaction_;
};

}  // namespace

Fault encode_expanded(const Request& request, ExpandedData& data) {
  if (const Fault fault = check_text(request)) return fault;
  ElementText text(request.linear);
  ExpandedSizing sizing(request.segments_per_row);
  Compaction compaction(text, sizing, kMostBits);
  compaction.put(request.component ? 1 : 0, 1);  // the linkage flag
  MethodField field;
  if (const Fault fault = MethodChooser(request, text, compaction).put(field)) return fault;
  if (!compaction.finish()) return {Reason::expanded_too_many_bits};

  data.count = sizing.count();
  data.method = field.name;
  const std::span<std::uint8_t> bytes = compaction.bytes();
  if (field.size_bits_place > 0) {
    constexpr int kLongSymbol = 14;  // data characters
    const bool odd = (data.count + 1) % 2 != 0;
    const bool is_long = data.count >= kLongSymbol;
    const int size_bits = (odd ? 2 : 0) + (is_long ? 1 : 0);
    bytes[0] = static_cast<std::uint8_t>(bytes[0] | size_bits << (6 - field.size_bits_place));
  }
  for (std::size_t i = 0; i < static_cast<std::size_t>(data.count); ++i) {
    const std::size_t byte = i / 2 * 3;
    data.values[i] =
        i % 2 == 0 ? bytes[byte] << 4 | bytes[byte + 1] >> 4 : (bytes[byte + 1] & 0xF) << 8 | bytes[byte + 2];
  }
  return {};
}

}  // namespace korvex::composite
