// Text that other programs wrote: Windows' own write UTF-16.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace korvex::cli::call {

/// Makes UTF-8 of a stream whose byte order mark says that it is UTF-16. Any other stream passes as it is.
class ToUtf8 {
 public:
  /// What can be told so far, valid until the next call. `last`: nothing follows. What is no character
  /// becomes U+FFFD.
  std::string_view convert(std::string_view bytes, bool last);

 private:
  enum class Encoding : std::uint8_t { unknown, utf8, utf16_le, utf16_be };

  Encoding encoding_ = Encoding::unknown;
  std::string held_;  // bytes that wait for the rest of their character
  std::string text_;
};

}  // namespace korvex::cli::call
