#include "batch/progress.hpp"

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace korvex::cli::batch {
namespace {

constexpr std::chrono::milliseconds kBetween{100};
constexpr std::size_t kBarWidth = 30;

std::string time_of(double seconds) {
  const long whole = std::lround(seconds);
  char text[32];
  std::snprintf(text, sizeof text, "%ld:%02ld", whole / 60, whole % 60);
  return text;
}

std::string bar(double share) {
  const auto filled = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * kBarWidth);
  return "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "]";
}

}  // namespace

std::string with_commas(std::uintmax_t number) {
  std::string digits = std::to_string(number);
  for (std::size_t at = digits.size(); at > 3;) digits.insert(at -= 3, 1, ',');
  return digits;
}

Progress::Progress() : is_shown_(isatty(STDERR_FILENO) != 0) {}
Progress::~Progress() {
  clear();
}

double Progress::seconds() const {
  return std::chrono::duration<double>(Clock::now() - began_).count();
}

void Progress::show(std::size_t done, std::uintmax_t read, std::uintmax_t all) {
  const auto now = Clock::now();
  if (!is_shown_ || now - shown_at_ < kBetween) return;
  shown_at_ = now;
  is_on_line_ = true;
  const double passed = seconds();
  const double rate = passed > 0 ? static_cast<double>(done) / passed : 0;
  std::string line =
      with_commas(done) + " symbols, " + with_commas(static_cast<std::uintmax_t>(rate)) + " a second";
  if (all > 0 && read > 0) {
    const double share = static_cast<double>(read) / static_cast<double>(all);
    char percent[16];
    std::snprintf(percent, sizeof percent, " %3.0f%%  ", 100 * std::min(share, 1.0));
    line = bar(share) + percent + line + ", " + time_of(passed / share - passed) + " left";
  }
  std::fprintf(stderr, "\r%s\x1b[K", line.c_str());
}

void Progress::clear() {
  if (is_on_line_) std::fputs("\r\x1b[K", stderr);
  is_on_line_ = false;
}

}  // namespace korvex::cli::batch
