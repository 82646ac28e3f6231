// What the composite encoder is asked for, and why it may not do it.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "korvex/composite.hpp"

namespace korvex::composite {

/// Bytes of both texts and the vertical bar between them.
inline constexpr int kMaxTextBytes = 2436;

using Bytes = std::span<const std::uint8_t>;

/// A request. Nothing is checked yet but the length.
struct Request {
  Symbology symbology = Symbology::databar;
  Dialect dialect = Dialect::standard;
  Bytes linear;                    ///< text of the linear component
  std::optional<Bytes> component;  ///< text of the 2D component; without it the linear component stands alone
  int segments_per_row = 0;
  int linear_height = 0;  ///< modules

  [[nodiscard]] bool standard() const { return dialect == Dialect::standard; }
};

/// Takes the texts apart at the first vertical bar. A zero byte ends them.
void split_text(Bytes text, Request& request);

/// Why there is no symbol; the sentence for it is in faults.cpp.
enum class Reason : std::uint8_t {
  none,
  // Options.
  bad_segments,         ///< given: segments a row
  bad_linear_height,    ///< given: modules
  few_segments_for_2d,  ///< given: segments a row
  odd_segments,         ///< given: segments a row, expected: those of one row
  // Text of the linear component. Positions count from 1 in it.
  linear_too_long,  ///< given, expected: characters
  not_a_digit,      ///< position, given
  limited_value_too_large,
  number_system_not_zero,  ///< UPC-E
  zeros_not_suppressible,  ///< UPC-E
  not_a_gtin,              ///< DataBar Expanded
  wrong_check_digit,       ///< DataBar Expanded, given, expected: digits
  bad_linear_character,    ///< position, given
  expanded_too_long,       ///< given, expected: characters
  expanded_too_many_bits,
  impossible_date_in_linear,  ///< position
  gs1_128_too_long,           ///< expected: characters that fit
  linear_too_narrow,          ///< given, expected: symbol characters
  // Text of the 2D component. Positions count from 1 in it.
  bad_component_character,  ///< position, given
  date_not_digits,          ///< position, given
  impossible_date,          ///< position
  component_too_long,
};

struct Fault {
  Reason reason = Reason::none;
  int position = 0;
  int given = 0;
  int expected = 0;

  explicit operator bool() const { return reason != Reason::none; }
};

/// What the symbology is called in a sentence.
std::string name_of(Symbology symbology);

/// The sentence for `fault`, with its code.
Error describe(const Fault& fault, const Request& request);

}  // namespace korvex::composite
