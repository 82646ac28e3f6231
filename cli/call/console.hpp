// Standard output while the library runs: what it prints there must not mix with the answers.
#pragma once

#include <string>

namespace korvex::cli::call {

/// While it lives, what anybody in the process writes to standard output goes to a temporary file instead.
class Console {
 public:
  /// Throws std::system_error when there is no temporary file to be had.
  Console();
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  /// A new descriptor of the true standard output, for the driver's own answers.
  [[nodiscard]] int duplicate() const;
  /// What was written since the last time.
  std::string take();

 private:
  int standard_output_;
  int file_;
};

}  // namespace korvex::cli::call
