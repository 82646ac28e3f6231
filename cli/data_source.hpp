// Where the data of a symbol comes from.
#pragma once

#include <optional>
#include <string>

#include "draw_settings.hpp"

namespace korvex::cli {

/// The data given as an argument, else the bytes of `file`, else standard input without one line ending at
/// its end. Throws UsageError when nothing is there or too much, Failure when it cannot be read, Interrupted
/// while it waits.
std::string read_data(const std::optional<std::string>& argument, const std::string& file);

/// The bytes that are meant, with hexadecimal digits or names of control characters replaced as the settings
/// say. Throws UsageError, or Failure when the data is no hexadecimal or has a name that nobody knows.
std::string decoded_data(const std::string& data, const DrawSettings& settings);

}  // namespace korvex::cli
