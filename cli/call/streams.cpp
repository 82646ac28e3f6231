#include "call/streams.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace korvex::cli::call {
namespace {

constexpr std::size_t kEnoughToWrite = std::size_t{1} << 20;
/// In one read or write; Windows counts in unsigned ints.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 24;

#if defined(_WIN32)
constexpr int kBinary = O_BINARY;
void set_binary(int descriptor) {
  setmode(descriptor, O_BINARY);
}
#else
constexpr int kBinary = 0;
void set_binary(int) {}
#endif

}  // namespace

Output::~Output() {
  flush();
  close(descriptor_);
}

void Output::write(std::string_view text) {
  waiting_ += text;
  if (waiting_.size() >= kEnoughToWrite) flush();
}

void Output::flush() {
  std::string_view rest = waiting_;
  while (!rest.empty() && error_ == 0) {
    const auto written =
        ::write(descriptor_, rest.data(), static_cast<unsigned>(std::min(rest.size(), kMostAtOnce)));
    if (written >= 0) {
      rest.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno != EINTR) {
      error_ = errno;
    }
  }
  waiting_.clear();
}

bool LineReader::refill() {
  output_.flush();
  for (;;) {
    const auto count = read(descriptor_, chunk_.data(), static_cast<unsigned>(chunk_.size()));
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) error_ = errno;
    begin_ = 0;
    end_ = count > 0 ? static_cast<std::size_t>(count) : 0;
    return count > 0;
  }
}

bool LineReader::next(std::string& line) {
  line.clear();
  for (;;) {
    if (begin_ == end_ && !refill()) return !line.empty() && error_ == 0;
    const auto from = chunk_.begin() + static_cast<std::ptrdiff_t>(begin_);
    const auto to = chunk_.begin() + static_cast<std::ptrdiff_t>(end_);
    const auto line_feed = std::find(from, to, '\n');
    const auto room = static_cast<std::ptrdiff_t>(kLongest + 1 - line.size());
    line.append(from, from + std::min(room, line_feed - from));
    begin_ = static_cast<std::size_t>(line_feed - chunk_.begin()) + (line_feed == to ? 0 : 1);
    if (line_feed != to) return true;
  }
}

int open_for_reading(const std::string& path) {
  return open(path.c_str(), O_RDONLY | kBinary);
}

void close_descriptor(int descriptor) {
  close(descriptor);
}

int standard_input() {
  set_binary(STDIN_FILENO);
  return STDIN_FILENO;
}

}  // namespace korvex::cli::call
