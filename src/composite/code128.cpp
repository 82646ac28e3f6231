#include "composite/code128.hpp"

#include <algorithm>

#include "composite/text.hpp"

namespace korvex::composite::code128 {
namespace {

constexpr int kMostText = 48;

// Bytes with a meaning of their own.
constexpr std::uint8_t kHash = '#';
constexpr std::uint8_t kNul = 0x80;
constexpr std::uint8_t kFnc2 = 0x82;
constexpr std::uint8_t kFnc3 = 0x83;
constexpr std::uint8_t kFnc4 = 0x84;

// Symbol character values that mean the same in every code set that has them.
constexpr int kFnc3Value = 96;
constexpr int kFnc2Value = 97;
constexpr int kCodeC = 99;
constexpr int kCodeB = 100;  // in code set B it is FNC4
constexpr int kCodeA = 101;  // in code set A it is FNC4
constexpr int kFnc1Value = 102;
constexpr int kStartA = 103;
constexpr int kCheckModulus = 103;

enum class Set : std::uint8_t { a, b, c };

/// FNC1, the text, and a zero byte.
class Text {
 public:
  Text(Bytes text, bool hash_is_fnc1) {
    if (!hash_is_fnc1 || text.empty() || text[0] != kHash) bytes_[size_++] = kFnc1;
    for (const std::uint8_t byte : text) bytes_[size_++] = hash_is_fnc1 && byte == kHash ? kFnc1 : byte;
    bytes_[size_] = 0;
  }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] std::uint8_t operator[](std::size_t index) const { return bytes_[index]; }

  [[nodiscard]] int digits_at(std::size_t index) const {
    int count = 0;
    while (is_digit(bytes_[index + static_cast<std::size_t>(count)])) ++count;
    return count;
  }
  /// The set of the first character from `index` on that is in one of code sets A and B alone. The end counts
  /// as a control character.
  [[nodiscard]] Set needed_set_at(std::size_t index) const {
    while (bytes_[index] >= 32 && (bytes_[index] < 96 || bytes_[index] > kNul)) ++index;
    return bytes_[index] < 32 || bytes_[index] == kNul ? Set::a : Set::b;
  }

 private:
  std::size_t size_ = 0;
  std::array<std::uint8_t, kMostText + 2> bytes_;
};

/// The value of a character that code set `set`, A or B, has.
int value_in(Set set, std::uint8_t byte) {
  switch (byte) {
    case kNul:
      return 64;
    case kFnc1:
      return kFnc1Value;
    case kFnc2:
      return kFnc2Value;
    case kFnc3:
      return kFnc3Value;
    case kFnc4:
      return set == Set::a ? kCodeA : kCodeB;
    default:
      return byte < 32 ? byte + 64 : byte - 32;
  }
}

bool only_in_a(std::uint8_t byte) {
  return byte < 32 || byte == kNul;
}
bool only_in_b(std::uint8_t byte) {
  return byte >= 96 && byte < kNul;
}

/// Appends symbol characters one by one.
class Encoder {
 public:
  Encoder(const Text& text, Values& values) : text_(text), values_(values) {
    const int digits = text.digits_at(1);
    const bool only_a_pair = digits == 2 && text.size() == 3;
    set_ = digits >= 4 || only_a_pair ? Set::c : text.needed_set_at(1);
    values.push(kStartA + static_cast<int>(set_));
  }

  [[nodiscard]] bool done() const { return index_ == text_.size(); }
  [[nodiscard]] Set set() const { return set_; }

  void step() {
    const std::uint8_t byte = text_[index_];
    if (set_ == Set::c) {
      if (is_digit(byte) && is_digit(text_[index_ + 1])) {
        values_.push((byte - '0') * 10 + text_[index_ + 1] - '0');
        index_ += 2;
      } else if (byte == kFnc1) {
        values_.push(kFnc1Value);
        ++index_;
      } else {
        change_to(text_.needed_set_at(index_));
      }
      return;
    }
    const int digits = text_.digits_at(index_);
    if (digits >= 4 && digits % 2 == 0) {
      change_to(Set::c);
    } else if (set_ == Set::a && only_in_b(byte)) {
      change_to(Set::b);
    } else if (set_ == Set::b && only_in_a(byte)) {
      change_to(Set::a);
    } else {
      values_.push(value_in(set_, byte));
      ++index_;
    }
  }

 private:
  void change_to(Set set) {
    constexpr int kCodes[] = {kCodeA, kCodeB, kCodeC};
    values_.push(kCodes[static_cast<std::size_t>(set)]);
    set_ = set;
  }

  const Text& text_;
  Values& values_;
  std::size_t index_ = 0;
  Set set_ = Set::a;
};

/// ISO/IEC 24723: a latch to another code set in last place says that there is a 2D component.
int linkage_value(Set set, Component linked_to) {
  constexpr int kCcAOrB[] = {kCodeB, kCodeC, kCodeA};
  constexpr int kCcC[] = {kCodeC, kCodeA, kCodeB};
  return (linked_to == Component::cc_c ? kCcC : kCcAOrB)[static_cast<std::size_t>(set)];
}

int check_value(const Values& values) {
  int sum = values.values[0];
  for (int i = 1; i < values.count; ++i) sum += i * values.values[static_cast<std::size_t>(i)];
  return sum % kCheckModulus;
}

// ISO/IEC 15417, Table 1: widths of bar, space, bar, space, bar, space as six decimal digits.
constexpr std::array<int, 107> kWidths = {
    212222, 222122, 222221, 121223, 121322, 131222, 122213, 122312, 132212, 221213, 221312, 231212,
    112232, 122132, 122231, 113222, 123122, 123221, 223211, 221132, 221231, 213212, 223112, 312131,
    311222, 321122, 321221, 312212, 322112, 322211, 212123, 212321, 232121, 111323, 131123, 131321,
    112313, 132113, 132311, 211313, 231113, 231311, 112133, 112331, 132131, 113123, 113321, 133121,
    313121, 211331, 231131, 213113, 213311, 213131, 311123, 311321, 331121, 312113, 312311, 332111,
    314111, 221411, 431111, 111224, 111422, 121124, 121421, 141122, 141221, 112214, 112412, 122114,
    122411, 142112, 142211, 241211, 221114, 413111, 241112, 134111, 111242, 121142, 121241, 114212,
    124112, 124211, 411212, 421112, 421211, 212141, 214121, 412121, 111143, 111341, 131141, 114113,
    114311, 411113, 411311, 113141, 114131, 311141, 411131, 211412, 211214, 211232, 233111,
};

constexpr std::array<std::uint16_t, 107> make_patterns() {
  std::array<std::uint16_t, 107> patterns{};
  for (std::size_t value = 0; value < patterns.size(); ++value) {
    unsigned modules = 0;
    bool bar = true;
    for (int place = 100'000; place > 0; place /= 10, bar = !bar) {
      for (int width = kWidths[value] / place % 10; width > 0; --width)
        modules = modules << 1 | (bar ? 1U : 0U);
    }
    patterns[value] = static_cast<std::uint16_t>(modules);
  }
  return patterns;
}

}  // namespace

constexpr std::array<std::uint16_t, 107> kPatterns = make_patterns();
// Every character has eleven modules, begins with a bar and ends with a space.
static_assert(std::ranges::all_of(kPatterns,
                                  [](unsigned modules) { return modules >> 10 == 1 && modules % 2 == 0; }));

Fault encode(const Request& request, Component linked_to, Values& values) {
  const Bytes bytes = request.linear;
  if (bytes.size() > kMostText)
    return {Reason::linear_too_long, 0, static_cast<int>(bytes.size()), kMostText};
  const auto is_bad = [](std::uint8_t byte) { return byte > kFnc4 || byte == 0; };
  if (const auto bad = std::ranges::find_if(bytes, is_bad); bad != bytes.end()) {
    return {Reason::bad_linear_character, static_cast<int>(bad - bytes.begin()) + 1, *bad};
  }
  const Text text(bytes, !request.standard());
  Encoder encoder(text, values);
  while (!encoder.done() && values.count < kMostTextCharacters) encoder.step();
  if (request.standard() && !encoder.done()) return {Reason::gs1_128_too_long, 0, 0, kMostTextCharacters};
  if (linked_to != Component::none) values.push(linkage_value(encoder.set(), linked_to));
  values.push(check_value(values));
  values.push(kStop);
  return {};
}

}  // namespace korvex::composite::code128
