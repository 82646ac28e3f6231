#include "call/console.hpp"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace korvex::cli::call {
namespace {

#if defined(_WIN32)
void set_binary(int descriptor) {
  setmode(descriptor, O_BINARY);
}
#else
void set_binary(int) {}
#endif

/// A new file that nobody else sees and that goes away with its descriptor; -1 and errno when that fails.
int open_temporary() {
#if defined(_WIN32)
  // A program that was killed leaves its file behind, and its number is given to another one in time.
  const auto folder = std::filesystem::temp_directory_path();
  const std::string name = "korvex-" + std::to_string(getpid());
  int descriptor = -1;
  for (int attempt = 0; attempt < 1000; ++attempt) {
    const auto path = folder / (name + '-' + std::to_string(attempt) + ".tmp");
    descriptor = _wopen(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_BINARY | O_TEMPORARY, 0600);
    if (descriptor >= 0 || errno != EEXIST) break;
  }
  return descriptor;
#else
  std::string path = (std::filesystem::temp_directory_path() / "korvex-XXXXXX").string();
  const int descriptor = mkstemp(path.data());
  if (descriptor >= 0) unlink(path.c_str());
  return descriptor;
#endif
}

}  // namespace

Console::Console() {
  std::fflush(stdout);
  file_ = open_temporary();
  if (file_ < 0) throw std::system_error(errno, std::generic_category(), "Cannot make a temporary file");
  standard_output_ = dup(STDOUT_FILENO);
  if (standard_output_ < 0 || dup2(file_, STDOUT_FILENO) < 0) {
    throw std::system_error(errno, std::generic_category(), "Cannot duplicate standard output");
  }
  set_binary(STDOUT_FILENO);
}

Console::~Console() {
  std::fflush(stdout);
  dup2(standard_output_, STDOUT_FILENO);
  close(standard_output_);
  close(file_);
}

int Console::duplicate() const {
  const int descriptor = dup(standard_output_);
  set_binary(descriptor);
  return descriptor;
}

std::string Console::take() {
  std::fflush(stdout);
  const auto size = lseek(file_, 0, SEEK_CUR);  // the two descriptors share one position
  if (size <= 0) return {};
  std::string text(static_cast<std::size_t>(size), '\0');
  lseek(file_, 0, SEEK_SET);
  const auto count = read(file_, text.data(), static_cast<unsigned>(text.size()));
  text.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  lseek(file_, 0, SEEK_SET);
  if (ftruncate(file_, 0) != 0)
    throw std::system_error(errno, std::generic_category(), "Cannot empty the file");
  return text;
}

}  // namespace korvex::cli::call
