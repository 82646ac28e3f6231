// The encodation method field in front of a 2D component's data (ISO/IEC 24723).
#pragma once

#include <cstdint>

#include "composite/encodation.hpp"
#include "composite/request.hpp"

namespace korvex::composite {

enum class Method : std::uint8_t {
  general,
  date,   ///< AI 11 or 17, and AI 10 after it
  batch,  ///< AI 10
  ai_90,
};

/// Appends the method field that `text` asks for, and with AI 90 its data; `compaction` stands behind the
/// characters that this covers. In Dialect::korvex32 a date's month and day may be any two digits, a zero
/// in front of the number of AI 90 is dropped, and AI 10 alone takes the general method.
Fault put_method_field(Dialect dialect, ElementText& text, Compaction& compaction, Method& method);

/// YY, MM and DD at `first` as the 16 bits of a date. Requires six digits.
unsigned date_value(const ElementText& text, int first);
/// Whether a reader of these bits gets the same month and day.
bool date_survives(const ElementText& text, int first);

}  // namespace korvex::composite
