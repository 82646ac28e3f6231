// What the MaxiCode encoder is asked for, and the messages that it makes of it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "korvex/maxicode.hpp"

namespace korvex::maxicode {

inline constexpr int kPrimaryData = 10;
inline constexpr int kPrimaryCheck = 10;
inline constexpr int kSecondaryData = 84;
inline constexpr int kSecondaryCheck = 40;
static_assert(kPrimaryData + kPrimaryCheck == kPrimaryCodewords);
static_assert(kPrimaryCodewords + kSecondaryData + kSecondaryCheck == kCodewords);

/// The most message codewords of any mode: what modes 4 and 6 hold.
inline constexpr int kMaxMessage = kPrimaryData - 1 + kSecondaryData;

inline constexpr std::size_t kPostalCharacters = 6;

/// A checked request.
struct Request {
  Mode mode = Mode::standard;
  Dialect dialect = Dialect::standard;
  std::uint32_t postal_number = 0;  ///< carrier_numeric: the low 30 bits count
  int postal_length = 0;            ///< carrier_numeric: the low six bits count
  std::array<std::uint8_t, kPostalCharacters> postal_characters{};  ///< carrier_alphanumeric
  int country_code = 0;
  int service_class = 0;
  int position = 1;
  int total = 1;
  std::span<const std::uint8_t> message;

  [[nodiscard]] bool is_carrier() const {
    return mode == Mode::carrier_numeric || mode == Mode::carrier_alphanumeric;
  }
  /// Codewords for the series header and the message.
  [[nodiscard]] int capacity() const { return is_carrier() ? kSecondaryData : kMaxMessage; }
};

/// The codewords between a message's end and the symbol's.
struct Pads {
  int first = 0;
  int others = 0;
};

/// Codewords of a message as they are written. What passes the capacity is counted, not kept.
class Codewords {
 public:
  explicit Codewords(int capacity) : capacity_(capacity) {}

  /// `set` is what Symbol::code_sets says of the codeword.
  void put(int value, char set) {
    if (count_ < capacity_) {
      values_[static_cast<std::size_t>(count_)] = static_cast<std::uint8_t>(value);
      sets_[static_cast<std::size_t>(count_)] = set;
    }
    ++count_;
  }
  [[nodiscard]] int count() const { return count_; }
  [[nodiscard]] int capacity() const { return capacity_; }
  [[nodiscard]] bool overflowed() const { return count_ > capacity_; }
  /// Requires index < count() and not overflowed().
  [[nodiscard]] std::uint8_t operator[](int index) const { return values_[static_cast<std::size_t>(index)]; }
  [[nodiscard]] char set(int index) const { return sets_[static_cast<std::size_t>(index)]; }

  Pads pads;

 private:
  int capacity_;
  int count_ = 0;
  std::array<std::uint8_t, kMaxMessage> values_;  // not cleared: count_ says what is there
  std::array<char, kMaxMessage> sets_;
};

using AllCodewords = std::array<std::uint8_t, kCodewords>;

/// encodation.cpp: appends the codewords of `message`, from code set A on, until it ends or they overflow.
/// Returns the pads that a reader takes for such, in the code set that it is left in.
Pads append_message(std::span<const std::uint8_t> message, Dialect dialect, Codewords& codewords);

/// messages.cpp: the decimal number at the start of a postal code, white space and a sign before it allowed,
/// modulo 2^32.
std::uint32_t leading_number(std::string_view text);

/// messages.cpp: primary and secondary data in their places; check codewords 0. Requires codewords that fit.
AllCodewords data_codewords(const Request& request, const Codewords& message);

/// error_correction.cpp: fills in the check codewords of both messages.
void add_check_codewords(AllCodewords& codewords);

/// construction.cpp: the modules of the codewords, orientation modules included.
ModuleMatrix construct(const AllCodewords& codewords);

/// encode.cpp: the series header and the message. Overflowed when the request's mode does not hold them.
Codewords message_codewords(const Request& request);
AllCodewords all_codewords(const Request& request, const Codewords& message);

}  // namespace korvex::maxicode
