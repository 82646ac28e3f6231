// Files in and out.
#pragma once

#include <string>
#include <vector>

namespace korvex::cli {

/// What a file (or standard input, for "-") holds. Throws Failure, also for more than no symbol ever holds.
std::string read_file(const std::string& path);

struct OutputFile {
  std::string path;  ///< "-" is standard output
  std::string bytes;
};

/// Writes all of them or none: a file appears under its name only when every one of them is written whole
/// (what is no regular file, such as a pipe, gets its bytes as they come). Throws Failure.
void write_files(const std::vector<OutputFile>& files);

}  // namespace korvex::cli
