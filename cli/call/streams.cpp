#include "call/streams.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>

namespace korvex::cli::call {
namespace {

constexpr std::size_t kEnoughToWrite = std::size_t{1} << 20;
/// In one read or write; Windows counts in unsigned ints.
constexpr std::size_t kMostAtOnce = std::size_t{1} << 24;

#if defined(_WIN32)
void set_binary(int descriptor) {
  setmode(descriptor, O_BINARY);
}
#else
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
    text_ = decoder_.convert({chunk_.data(), count > 0 ? static_cast<std::size_t>(count) : 0}, count <= 0);
    if (count <= 0 || !text_.empty()) return !text_.empty();
  }
}

bool LineReader::next(std::string& line) {
  line.clear();
  for (;;) {
    if (text_.empty() && !refill()) return !line.empty() && error_ == 0;
    const std::size_t length = std::min(text_.find('\n'), text_.size());
    line += text_.substr(0, std::min(length, kLongest + 1 - line.size()));
    const bool ends = length < text_.size();
    text_.remove_prefix(length + (ends ? 1 : 0));
    if (ends) return true;
  }
}

int open_for_reading(const std::string& path) {
#if defined(_WIN32)
  return _wopen(std::filesystem::path(std::u8string(path.begin(), path.end())).c_str(), O_RDONLY | O_BINARY);
#else
  return open(path.c_str(), O_RDONLY);
#endif
}

void close_descriptor(int descriptor) {
  close(descriptor);
}

int standard_input() {
  set_binary(STDIN_FILENO);
  return STDIN_FILENO;
}

}  // namespace korvex::cli::call
