#include "core/element_string.hpp"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "core/gs1_checks.hpp"
#include "core/gs1_identifiers.hpp"
#include "core/shown.hpp"

namespace korvex {
namespace {

constexpr std::string_view kSeparatorName = "{GS}";
constexpr char kHash = '#';
constexpr std::string_view kIdentifierWithHash = "8010";  // of whose data # is a character

/// An element string where it stands in the text.
struct Place {
  std::string_view identifier;
  std::string_view data;
  std::size_t identifier_at = 0;
  std::size_t data_at = 0;
};

class Reader {
 public:
  Reader(const Gs1Text& text, const Gs1Reading& reading, std::string& plain)
      : text_(text.text), name_(text.name), reading_(reading), plain_(plain), start_(plain.size()) {}

  std::optional<Error> read() {
    if (text_.empty() || separator_at(0) == text_.size()) {
      complain("The " + std::string(name_) + " is empty; it takes element strings such as (10)AB-123.");
    } else if (gs1::is_bracketed(text_)) {
      read_bracketed();
    } else {
      read_plain();
    }
    return std::move(error_);
  }

 private:
  /// Whether to go on all the same.
  bool complain(std::string sentence) {
    complained_ = true;
    if (reading_.checking == gs1::Checking::strict) return refuse(std::move(sentence));
    if (reading_.findings != nullptr) reading_.findings->warnings.push_back(std::move(sentence));
    return true;
  }
  bool refuse(std::string sentence) {
    error_ = Error{Code::bad_data, std::move(sentence)};
    return false;
  }
  [[nodiscard]] std::string at(std::size_t index) const {
    return " at position " + std::to_string(index + 1) + " of the " + std::string(name_);
  }

  // ---- bracketed ----

  /// Digits of the bracketed identifier at `index`, 0 when none stands there. It has 2 to 4 digits; any other
  /// bracket is data.
  [[nodiscard]] std::size_t identifier_digits(std::size_t index) const {
    if (text_[index] != text_.front()) return 0;
    const char close = text_.front() == '(' ? ')' : ']';
    std::size_t end = index + 1;
    while (end < text_.size() && gs1::is_digit(text_[end])) ++end;
    const std::size_t digits = end - index - 1;
    return end < text_.size() && text_[end] == close && digits >= 2 && digits <= 4 ? digits : 0;
  }

  void read_bracketed() {
    if (identifier_digits(0) == 0) {
      if (complain("An application identifier of 2 to 4 digits in brackets is due" + at(0) + ".")) {
        append_as_it_stands();
      }
      return;
    }
    for (std::size_t index = 0; index < text_.size();) {
      const std::size_t digits = identifier_digits(index);
      Place place{text_.substr(index + 1, digits), {}, index, index + digits + 2};
      index = place.data_at;
      while (index < text_.size() && identifier_digits(index) == 0) ++index;
      place.data = text_.substr(place.data_at, index - place.data_at);
      if (!take(place)) return;
    }
  }

  // ---- plain ----

  /// Characters of the separator at `index`; 0: there is none.
  [[nodiscard]] std::size_t separator_at(std::size_t index, bool hash_separates = true) const {
    const char c = text_[index];
    if (c == gs1::kSeparator || (c == kHash && hash_separates)) return 1;
    return c == '{' && text_.substr(index).starts_with(kSeparatorName) ? kSeparatorName.size() : 0;
  }

  /// The element string at `index`, as far as its predefined length or the next separator.
  [[nodiscard]] Place place_at(std::size_t index) const {
    const gs1::Prefix* const prefix = gs1::find_prefix(text_.substr(index));
    const std::size_t digits = prefix == nullptr ? 0 : prefix->digits;
    const bool hash_separates = text_.substr(index, digits) != kIdentifierWithHash;
    std::size_t most = text_.size();
    if (prefix != nullptr && prefix->predefined != 0) most = std::min(most, index + prefix->predefined);
    std::size_t end = index;
    while (end < most && separator_at(end, hash_separates) == 0) ++end;
    const std::size_t data = std::min(index + digits, end);
    return {text_.substr(index, data - index), text_.substr(data, end - data), index, data};
  }
  /// Where the next one begins.
  [[nodiscard]] std::size_t behind(const Place& place) const {
    const std::size_t end = place.data_at + place.data.size();
    return end < text_.size() ? end + separator_at(end) : end;
  }

  void read_plain() {
    for (std::size_t index = separator_at(0); index < text_.size();) {
      const Place place = place_at(index);
      if (!take(place)) return;
      index = behind(place);
    }
    if (complained_) append_as_it_stands();
  }

  /// Separators where they are, but for the one in front, and no others.
  void append_as_it_stands() {
    plain_.resize(start_);
    for (std::size_t index = separator_at(0); index < text_.size();) {
      const Place place = place_at(index);
      plain_.append(place.identifier).append(place.data);
      index = behind(place);
      if (index > place.data_at + place.data.size()) plain_.push_back(reading_.separator);
    }
  }

  // ---- both ----

  bool take(const Place& place) {
    const gs1::IdentifierRow* const row = gs1::find_identifier(place.identifier);
    if (row == nullptr && !complain(unknown(place))) return false;
    if (row != nullptr) {
      const std::string fault = gs1::fault_of(*row, place.data, place.data_at + 1);
      if (!fault.empty() &&
          !complain("(" + std::string(place.identifier) + ")" + at(place.identifier_at) + fault)) {
        return false;
      }
    }
    if (reading_.separator_is_no_data && place.data.find(reading_.separator) != std::string_view::npos) {
      return refuse("The symbol has no " + shown(reading_.separator) + " for the data of (" +
                    std::string(place.identifier) + ")" + at(place.identifier_at) +
                    "; GS1-128, GS1 DataMatrix and GS1 QR Code have. A separator behind them is {GS}.");
    }
    if (separate_) plain_.push_back(reading_.separator);
    plain_.append(place.identifier).append(place.data);
    const gs1::Prefix* const prefix = gs1::find_prefix(place.identifier);
    separate_ = prefix == nullptr || prefix->predefined == 0;
    if (reading_.findings != nullptr) {
      reading_.findings->elements.push_back({std::string(place.identifier), std::string(place.data),
                                             row == nullptr ? std::string_view() : row->title});
    }
    return true;
  }

  [[nodiscard]] std::string unknown(const Place& place) const {
    if (gs1::is_bracketed(text_)) {
      return "(" + std::string(place.identifier) + ")" + at(place.identifier_at) +
             " is no application identifier.";
    }
    return "An application identifier is due" + at(place.identifier_at) + "; " +
           gs1::excerpt(text_.substr(place.identifier_at, 4)) +
           " begins with none. A separator such as {GS} ends a field of variable length.";
  }

  std::string_view text_;
  std::string_view name_;
  const Gs1Reading& reading_;
  std::string& plain_;
  std::size_t start_;      // of the plain form
  bool separate_ = false;  // before the next element
  bool complained_ = false;
  std::optional<Error> error_;
};

}  // namespace

std::optional<Error> append_plain(const Gs1Text& text, const Gs1Reading& reading, std::string& plain) {
  return Reader(text, reading, plain).read();
}

Result<std::string> plain_element_string(std::span<const std::uint8_t> data, gs1::Checking checking) {
  std::string plain;
  plain.reserve(data.size());
  const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
  if (auto error = append_plain({text}, {.checking = checking}, plain)) return *std::move(error);
  return plain;
}

namespace gs1 {

Result<ElementString> parse(std::string_view text, Checking checking) {
  ElementString result;
  std::string plain;
  if (auto error = append_plain({text}, {.checking = checking, .findings = &result}, plain)) {
    return *std::move(error);
  }
  result.plain = std::move(plain);
  return result;
}

Result<std::string> element_string(std::string_view text) {
  std::string plain;
  if (auto error = append_plain({text}, {}, plain)) return *std::move(error);
  return plain;
}

std::string bracketed(const std::vector<Element>& elements) {
  std::string text;
  for (const Element& element : elements) {
    text.append("(").append(element.identifier).append(")").append(element.data);
  }
  return text;
}

bool is_bracketed(std::string_view text) {
  return text.starts_with('(') || text.starts_with('[');
}

}  // namespace gs1
}  // namespace korvex
