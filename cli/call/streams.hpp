// Whole lines in and whole answers out, as `korvex call` reads and writes them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "call/utf16.hpp"

namespace korvex::cli::call {

/// Text on its way to a file descriptor. Write errors are remembered, not thrown.
class Output {
 public:
  /// Takes the descriptor over.
  explicit Output(int descriptor) : descriptor_(descriptor) {}
  ~Output();
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;

  void write(std::string_view text);
  void flush();
  /// The errno of the first write that failed, 0 when none did.
  [[nodiscard]] int error() const { return error_; }

 private:
  int descriptor_;
  int error_ = 0;
  std::string waiting_;
};

/// Lines of a file descriptor, as UTF-8. Before it waits for more input it flushes `output`, so that a
/// program that writes a request and waits for its answer gets it.
class LineReader {
 public:
  /// Does not take the descriptor over.
  LineReader(int descriptor, Output& output) : descriptor_(descriptor), output_(output), chunk_(1 << 16) {}

  /// The next line without its line feed, or the first kLongest bytes and one more of a line that is longer.
  /// False at the end, and after a read error.
  bool next(std::string& line);
  /// Many times what the longest data takes, every byte of it written as an escape.
  static constexpr std::size_t kLongest = std::size_t{1} << 24;
  /// The errno of the read that failed, 0 when none did.
  [[nodiscard]] int error() const { return error_; }

 private:
  bool refill();

  int descriptor_;
  Output& output_;
  int error_ = 0;
  std::vector<char> chunk_;
  ToUtf8 decoder_;
  std::string_view text_;  // what is left of the chunk, as UTF-8
};

/// Opens a file, whose path is UTF-8, for reading without any translation; -1 and errno when that fails.
int open_for_reading(const std::string& path);
void close_descriptor(int descriptor);
/// Standard input's descriptor, without any translation.
int standard_input();

}  // namespace korvex::cli::call
