// What the linear encoder is asked for, and what it works on.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "korvex/linear.hpp"
#include "linear/bar_writer.hpp"
#include "linear/check_characters.hpp"

namespace korvex::linear {

/// Data bytes that a request may bring, and symbol characters that a symbol may have: those that come from
/// the data, the start character where it has a value (Code 128), and the check characters.
inline constexpr int kMaxDataBytes = 512;
inline constexpr int kMaxSymbolCharacters = 501;

/// Widths in modules of the four elements, chosen one by one. An element of 0 or less is left out.
struct ExplicitWidths {
  int narrow_space = 0;
  int narrow_bar = 0;
  int wide_space = 0;
  int wide_bar = 0;

  [[nodiscard]] constexpr int of(bool bar, bool wide) const {
    return bar ? (wide ? wide_bar : narrow_bar) : (wide ? wide_space : narrow_space);
  }
};

/// A checked request: options are in range; the data is not yet looked at.
struct Request {
  Symbology symbology = Symbology::code128;
  Dialect dialect = Dialect::standard;
  std::span<const std::uint8_t> data;  ///< at most kMaxDataBytes
  Ratio ratio = Ratio::two_to_one;
  const ExplicitWidths* widths = nullptr;  ///< in place of `ratio`
  int gap = 0;                             ///< modules between the characters of discrete symbologies
  CheckRules rules;                        ///< check characters by the six general methods
  CheckCharacters check =
      CheckCharacters::none;  ///< tells MSI and Codabar of checks that have rules of their own
  bool guards = false;        ///< EAN/UPC: mark the guard bars too
  bool gs1 = false;           ///< code128
  int segments = 0;           ///< code128_segments
};

/// Why there is no symbol; the sentence for it is in faults.cpp.
enum class Reason : std::uint8_t {
  none,
  nothing_to_encode,
  bad_character,  ///< position, given: a byte that the symbology, or the code set in force, does not have
  misplaced_start_stop,  ///< position, given: a start or stop character inside the data
  lone_start_stop,       ///< position, given: a start without a stop character, or the other way round
  no_start_stop,         ///< given: data bytes; too few to hold a start and a stop character
  bad_length,            ///< given: digits
  wrong_check_digit,     ///< position, given, expected: digits
  bad_number_system,     ///< given: the digit
  check_digit_is_ten,    ///< MSI modulo 11
  bad_escape,            ///< position of the escape character, given: the byte after it, or -1 for none
  odd_digits,            ///< position of the digit without a partner in code set C
  no_segments,
  bad_segment_header,    ///< position
  same_set_twice,        ///< position of the second header
  segments_too_long,     ///< given: sum of the lengths
  data_ends_in_segment,  ///< given: number of the segment from 1
  data_after_segments,   ///< position
  too_many_characters,   ///< given: symbol characters
  too_many_modules,
  widths_not_offered,
  no_modules,
};

struct Fault {
  Reason reason = Reason::none;
  int position = 0;  ///< of a byte in the data, counted from 1
  int given = 0;
  int expected = 0;

  explicit operator bool() const { return reason != Reason::none; }
};

/// Symbol character values of a symbol, in drawing order.
class Values {
 public:
  void push(int value) { values_[static_cast<std::size_t>(size_++)] = static_cast<Value>(value); }
  void add_to_last(int amount) {
    Value& last = values_[static_cast<std::size_t>(size_ - 1)];
    last = static_cast<Value>(last + amount);
  }
  /// Room for `count` more values, which the caller fills.
  Value* extend(std::size_t count) {
    Value* const first = values_.data() + size_;
    size_ += static_cast<int>(count);
    return first;
  }
  int pop() { return values_[static_cast<std::size_t>(--size_)]; }

  [[nodiscard]] int size() const { return size_; }
  [[nodiscard]] int operator[](int index) const { return values_[static_cast<std::size_t>(index)]; }
  [[nodiscard]] std::span<const Value> all() const {
    return {values_.data(), static_cast<std::size_t>(size_)};
  }

 private:
  // At most three a byte (Code 128: FNC4, Shift, the character), and start and check characters.
  static constexpr int kCapacity = 3 * kMaxDataBytes + 8;
  int size_ = 0;
  std::array<Value, kCapacity> values_;  // not cleared: size_ says what is there
};

/// The symbol as it comes into being. All working state of a call is here.
struct Drawing {
  Values values;
  Bars bars;
  Bars guards;  ///< stays empty when no guards are asked for or the symbology has none
};

/// Codabar, Code 39 and the 2 of 5 codes: those whose element widths can be chosen.
bool has_two_widths(Symbology symbology);

/// Encodes `request`: data bytes to symbol character values, check characters, modules.
Fault draw(const Request& request, Drawing& drawing);

/// The sentence for `fault`, with its code.
Error describe(const Fault& fault, const Request& request);
/// The code that Korvex_Bit has for it: its own for all data, also where it is too long.
Code code_of(Reason reason);

}  // namespace korvex::linear
