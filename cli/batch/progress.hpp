// A line on standard error that says how far a batch is.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>

namespace korvex::cli::batch {

/// "4,250".
std::string with_commas(std::uintmax_t number);

class Progress {
 public:
  /// Nothing is shown when standard error is no terminal.
  Progress();
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  /// Of what this run has to do: symbols drawn, and bytes of the list read; 0 in all: nobody knows.
  void show(std::size_t done, std::uintmax_t read, std::uintmax_t all);
  /// Takes the line away.
  void clear();
  [[nodiscard]] double seconds() const;

 private:
  using Clock = std::chrono::steady_clock;
  bool is_shown_ = false;
  bool is_on_line_ = false;
  Clock::time_point began_ = Clock::now();
  Clock::time_point shown_at_;
};

}  // namespace korvex::cli::batch
