// The value or the error of an encoding, and the two dialects every encoder speaks.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>

#include "korvex/korvex32.h"

namespace korvex {

/// Why nothing was encoded. The values are the result codes of the C functions.
enum class Code : std::int16_t {
  bad_parameter = KORVEX_BAD_PARAMETER,    ///< an option is out of range, or does not go with another one
  no_symbol = KORVEX_NO_SYMBOL,            ///< no symbol of the kind asked for holds the data
  bad_data = KORVEX_BAD_DATA,              ///< a character or the length is not allowed
  gs1_fixed_mode = KORVEX_GS1_FIXED_MODE,  ///< QR: a fixed mode together with GS1 data
};

/// A code and one sentence that says what was wrong, what was given and what is allowed.
struct Error {
  Code code = Code::bad_parameter;
  std::string message;
};

/// A value, or the error that stands in its place.
template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

  [[nodiscard]] bool has_value() const { return state_.index() == 0; }
  explicit operator bool() const { return has_value(); }

  /// The value. Asking an error for its value throws std::bad_variant_access.
  [[nodiscard]] const T& value() const& { return std::get<0>(state_); }
  [[nodiscard]] T&& value() && { return std::get<0>(std::move(state_)); }
  const T& operator*() const& { return value(); }
  T&& operator*() && { return std::move(*this).value(); }
  const T* operator->() const { return &value(); }

  /// The error. Asking a value for its error throws std::bad_variant_access.
  [[nodiscard]] const Error& error() const { return std::get<1>(state_); }

 private:
  std::variant<T, Error> state_;
};

/// Which form of a symbol is wanted where the two differ; each family's header names the places.
enum class Dialect : std::uint8_t {
  standard,  ///< the published standard's
  korvex32,  ///< what the C functions draw, to the module
};

}  // namespace korvex
