#include "data_source.hpp"

#include <unistd.h>

#include <mutex>
#include <string_view>

#include "escapes.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

/// One line ending at the end of what somebody typed or piped is no data.
void drop_line_ending(std::string& data) {
  if (!data.ends_with('\n')) return;
  data.pop_back();
  if (data.ends_with('\r')) data.pop_back();
}

std::string from_hexadecimal(std::string_view digits) {
  std::string bytes;
  int high = -1;
  for (std::size_t index = 0; index < digits.size(); ++index) {
    if (std::string_view(" \t\r\n").find(digits[index]) != std::string_view::npos) continue;
    const int value = hexadecimal_value(digits[index]);
    if (value < 0) {
      throw Failure("The character \"" + printable(digits.substr(index, 1)) + "\" at position " +
                    std::to_string(index + 1) +
                    " is no hexadecimal digit; 0-9, a-f, A-F and spaces are allowed.");
    }
    if (high >= 0) bytes += static_cast<char>(high * 16 + value);
    high = high >= 0 ? -1 : value;
  }
  if (high >= 0) throw Failure("The hexadecimal data ends with half a byte; two digits make one.");
  return bytes;
}

}  // namespace

std::string read_data(const std::optional<std::string>& argument, const std::string& file) {
  if (argument && !file.empty()) {
    throw UsageError("The data is given twice, as an argument and with --data-file.");
  }
  if (argument) return *argument;
  if (!file.empty()) {
    // Jobs of a list run side by side: the first that asks gets all of standard input.
    static std::mutex reading;
    std::unique_lock lock(reading, std::defer_lock);
    if (file == "-") lock.lock();
    return read_file(file);
  }
  if (isatty(STDIN_FILENO) != 0) {
    throw UsageError(
        "No data is given; it stands behind the symbology, in --data-file or on standard input.");
  }
  std::string data = read_file("-");
  drop_line_ending(data);
  return data;
}

std::string decoded_data(const std::string& data, const DrawSettings& settings) {
  if (settings.has_escapes && settings.is_hexadecimal) {
    throw UsageError("--hex has no use for names of control characters; --escapes does not go with it.");
  }
  if (settings.is_hexadecimal) return from_hexadecimal(data);
  return settings.has_escapes ? with_escapes(data) : data;
}

}  // namespace korvex::cli
