#include "composite/encodation.hpp"

#include <algorithm>
#include <string_view>

#include "composite/text.hpp"

namespace korvex::composite {
namespace {

/// Each set holds those with a greater number.
enum Class : std::uint8_t { kInvalid, kIso646, kAlphanumeric, kNumeric };

/// A codeword of a mode.
struct Code {
  std::uint8_t value = 0;
  std::uint8_t bits = 0;
};

struct Character {
  Class set = kInvalid;
  Code alphanumeric;
  Code iso646;
};

// ISO/IEC 24724, clause 7: the general-purpose encodation schemes.
constexpr std::array<Character, 256> kCharacters = [] {
  std::array<Character, 256> all{};
  const auto at = [&all](int byte) -> Character& { return all[static_cast<std::size_t>(byte)]; };
  for (std::uint8_t i = 0; i < 10; ++i) {
    const Code code{static_cast<std::uint8_t>(5 + i), 5};
    at('0' + i) = {kNumeric, code, code};
  }
  at(kFnc1) = {kNumeric, {15, 5}, {15, 5}};
  for (std::uint8_t i = 0; i < 26; ++i) {
    at('A' + i) = {
        kAlphanumeric, {static_cast<std::uint8_t>(32 + i), 6}, {static_cast<std::uint8_t>(64 + i), 7}};
    at('a' + i) = {kIso646, {}, {static_cast<std::uint8_t>(90 + i), 7}};
  }
  std::uint8_t value = 232;
  for (const char c : std::string_view("!\"%&'()*+,-./:;<=>?_ ^")) at(c) = {kIso646, {}, {value++, 8}};
  value = 58;
  for (const char c : std::string_view("*,-./^")) {
    at(c).set = kAlphanumeric;
    at(c).alphanumeric = {value++, 6};
  }
  return all;
}();
static_assert(kCharacters['^'].iso646.value == 253 && kCharacters['^'].alphanumeric.value == 63);
static_assert(kCharacters[' '].iso646.value == 252 && kCharacters['/'].alphanumeric.value == 62);

const Character& character(std::uint8_t byte) {
  return kCharacters[byte];
}
bool is_numeric(std::uint8_t byte) {
  return character(byte).set == kNumeric;
}
/// FNC1 is the value after the digits'.
unsigned numeric_value(std::uint8_t byte) {
  return byte == kFnc1 ? 10U : byte - unsigned{'0'};
}
/// The numeric mode comes back after them.
bool separates(std::uint8_t byte) {
  return byte == kFnc1 || byte == kCaret;
}

constexpr unsigned kNumericLatch = 0b000;  // from the alphanumeric and ISO/IEC 646 modes
constexpr unsigned kOtherLatch = 0b00100;  // between these two; it also pads
constexpr int kOtherLatchBits = 5;

}  // namespace

int find_bad_character(Bytes text) {
  const auto bad = std::ranges::find(text, kInvalid, [](std::uint8_t byte) { return character(byte).set; });
  return bad == text.end() ? 0 : static_cast<int>(bad - text.begin()) + 1;
}

bool all_digits(Bytes text) {
  bool all = true;
  for (const std::uint8_t byte : text) all &= is_digit(byte);
  return all;
}

bool digits_at(const ElementText& text, int first, int count) {
  for (int i = first; i < first + count; ++i) {
    if (!is_digit(text[i])) return false;  // the zero at the end is none
  }
  return true;
}

int Compaction::Run::length_at(const ElementText& text, int index) {
  if (end_ <= index) {
    end_ = index;
    while (character(text[end_]).set > least_class_) ++end_;
  }
  return end_ - index;
}

void Compaction::put_digits(int first, int count) {
  put(static_cast<unsigned>(
          number_of(text_.bytes(), static_cast<std::size_t>(first), static_cast<std::size_t>(count))),
      count == 1 ? 4 : 10);
}

void Compaction::step() {
  switch (mode_) {
    case Mode::numeric:
      return step_numeric();
    case Mode::alphanumeric:
      return step_alphanumeric();
    case Mode::iso646:
      return step_iso646();
    case Mode::upper_case:
      return step_upper_case();
    case Mode::finished:
      return;
  }
}

void Compaction::step_numeric() {
  const std::uint8_t first = text_[index_];
  const std::uint8_t second = text_[index_ + 1];
  if (is_numeric(first) && is_numeric(second) && !(first == kFnc1 && second == kFnc1)) {
    put(numeric_value(first) * 11 + numeric_value(second) + 8, 7);
    index_ += 2;
    return;
  }
  if (first == 0) {
    put(0, std::clamp(remaining_bits(), 0, 4));
    mode_ = Mode::finished;
    return;
  }
  if (second != 0 || !is_digit(first)) return latch(0b0000, 4, Mode::alphanumeric);

  // The last digit is alone: in short of a pair's bits it stands for itself, else it is paired with FNC1.
  const int remaining = remaining_bits();
  if (remaining >= 4 && remaining < 7) {
    put(numeric_value(first) + 1, 4);
    put(0, remaining - 4);
  } else {
    put(numeric_value(first) * 11 + 18, 7);
    put(0, remaining < 7 ? 4 : std::min(remaining - 7, 4));
  }
  ++index_;
  mode_ = Mode::finished;
}

void Compaction::step_alphanumeric() {
  const std::uint8_t byte = text_[index_];
  if (byte == 0) {
    mode_ = Mode::finished;
    return;
  }
  if (is_digit(byte) && text_[index_ + 1] != kFnc1) {
    const int digits = numeric_run_.length_at(text_, index_);
    if (digits >= 6 || (digits >= 4 && text_[index_ + digits] == 0)) {
      return latch(kNumericLatch, 3, Mode::numeric);
    }
  }
  const Code code = character(byte).alphanumeric;
  if (code.bits == 0) return latch(kOtherLatch, kOtherLatchBits, Mode::iso646);
  put(code.value, code.bits);
  ++index_;
  if (separates(byte)) mode_ = Mode::numeric;
}

void Compaction::step_iso646() {
  const std::uint8_t byte = text_[index_];
  if (byte == 0) {
    mode_ = Mode::finished;
    return;
  }
  if (character(byte).set >= kAlphanumeric && byte != kFnc1) {
    constexpr int kLookAhead = 9;  // characters after this one
    const int run = alphanumeric_run_.length_at(text_, index_);
    const bool to_the_end = run <= kLookAhead && text_[index_ + run] == 0;
    if (run > kLookAhead || to_the_end) {
      if (is_digit(byte) && numeric_run_.length_at(text_, index_) >= 4) {
        return latch(kNumericLatch, 3, Mode::numeric);
      }
      if (run >= 5) return latch(kOtherLatch, kOtherLatchBits, Mode::alphanumeric);
    }
  }
  const Code code = character(byte).iso646;
  put(code.value, code.bits);
  ++index_;
  if (separates(byte)) mode_ = Mode::numeric;
}

void Compaction::step_upper_case() {
  const std::uint8_t byte = text_[index_];
  if (byte >= 'A' && byte <= 'Z') {
    put(byte - unsigned{'A'}, 5);
    ++index_;
  } else if (is_digit(byte)) {
    put(byte - unsigned{'0'} + 52, 6);
    ++index_;
  } else if (byte == kFnc1) {
    latch(0b11111, 5, Mode::numeric);
    ++index_;
  } else {
    const int count = std::clamp(remaining_bits(), 0, 5);
    latch((1U << count) - 1, count, Mode::numeric);
  }
}

bool Compaction::finish() {
  while (mode_ != Mode::finished && !overfull()) step();
  data_bits_ = size_bits();
  if (overfull()) return false;
  int remaining = remaining_bits();
  if (remaining < 0 || size_bits() + remaining > most_bits_) return false;
  for (; remaining >= kOtherLatchBits; remaining -= kOtherLatchBits) put(kOtherLatch, kOtherLatchBits);
  put(kOtherLatch >> (kOtherLatchBits - remaining), remaining);
  bits_.flush();
  return true;
}

}  // namespace korvex::composite
