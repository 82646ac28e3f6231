// Where the data of a symbol comes from.
#pragma once

#include <optional>
#include <string>

namespace korvex::cli {

/// The data given as an argument, else the bytes of `file`, else standard input without one line ending at
/// its end. Throws UsageError when nothing is there or too much, Failure when it cannot be read or is no
/// hexadecimal.
std::string read_data(const std::optional<std::string>& argument, const std::string& file,
                      bool is_hexadecimal);

}  // namespace korvex::cli
