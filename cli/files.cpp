#include "files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "failure.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20;  // far more than any symbol holds

[[noreturn]] void fail(const std::string& what, const std::string& path) {
  const std::string reason = std::generic_category().message(errno);
  throw Failure("Cannot " + what + " " + (path == "-" ? "standard output" : printable(path)) + ": " + reason +
                ".");
}

/// A file descriptor that closes itself.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;

  [[nodiscard]] int number() const { return number_; }
  /// False when the system says only now that the bytes did not arrive.
  bool close() { return number_ < 0 || ::close(std::exchange(number_, -1)) == 0; }

 private:
  int number_;
};

bool write_all(int descriptor, std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = write(descriptor, bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

/// Where a link leads, so that it stays a link; the path itself when it is none (or a broken one).
std::filesystem::path end_of_links(const std::string& path) {
  std::error_code error;
  std::filesystem::path end = std::filesystem::canonical(path, error);
  return error ? std::filesystem::path(path) : end;
}

/// A written file that still has another name, beside its own so that the file system is the same. Unless it
/// is renamed it goes away with the object.
class Draft {
 public:
  explicit Draft(const OutputFile& file) : target_(end_of_links(file.path)) {
    for (int attempt = 0;; ++attempt) {
      const std::string name = ".korvex-" + std::to_string(getpid()) + "-" + std::to_string(attempt) + ".tmp";
      path_ = target_.parent_path() / name;
      Descriptor descriptor(open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
      if (descriptor.number() < 0 && errno == EEXIST) continue;
      if (descriptor.number() < 0) fail("write", file.path);
      exists_ = true;
      keep_permissions(descriptor.number());
      if (!write_all(descriptor.number(), file.bytes) || !descriptor.close()) {
        const int error = errno;
        remove();
        errno = error;
        fail("write", file.path);
      }
      return;
    }
  }
  ~Draft() { remove(); }
  Draft(Draft&& other) noexcept
      : target_(std::move(other.target_)),
        path_(std::move(other.path_)),
        exists_(std::exchange(other.exists_, false)) {}
  Draft& operator=(Draft&&) = delete;

  void rename() {
    if (std::rename(path_.c_str(), target_.c_str()) != 0) fail("write", target_.string());
    exists_ = false;
  }

 private:
  void keep_permissions(int descriptor) const {
    struct stat old {};
    if (stat(target_.c_str(), &old) == 0) (void)!fchmod(descriptor, old.st_mode & 07777);
  }
  void remove() {
    if (std::exchange(exists_, false)) unlink(path_.c_str());
  }

  std::filesystem::path target_;
  std::filesystem::path path_;
  bool exists_ = false;
};

/// What a path leads to: something to replace, or something to write into.
enum class Target { file, stream };

Target target_of(const std::string& path) {
  if (path == "-") return Target::stream;
  if (path.empty()) throw UsageError("The name of an output file is empty.");
  struct stat status {};
  if (stat(path.c_str(), &status) != 0 || S_ISREG(status.st_mode)) return Target::file;
  if (S_ISDIR(status.st_mode)) {
    errno = EISDIR;
    fail("write", path);
  }
  return Target::stream;
}

void write_stream(const OutputFile& file) {
  Descriptor descriptor(file.path == "-" ? dup(STDOUT_FILENO)
                                         : open(file.path.c_str(), O_WRONLY | O_CLOEXEC));
  if (descriptor.number() < 0 || !write_all(descriptor.number(), file.bytes) || !descriptor.close()) {
    fail("write", file.path);
  }
}

}  // namespace

std::string read_file(const std::string& path) {
  const std::string name = path == "-" ? "standard input" : path;
  const Descriptor descriptor(path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC));
  if (descriptor.number() < 0) fail("read", name);
  std::string bytes;
  char chunk[1 << 16];
  for (;;) {
    const ssize_t count = read(descriptor.number(), chunk, sizeof chunk);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) fail("read", name);
    if (count == 0) return bytes;
    bytes.append(chunk, static_cast<std::size_t>(count));
    if (bytes.size() > kMostBytes) {
      throw Failure("There is more data in " + name +
                    " than the 1048576 bytes that are read; no symbol holds so much.");
    }
  }
}

void write_files(const std::vector<OutputFile>& files) {
  std::vector<Draft> drafts;
  std::vector<const OutputFile*> streams;
  for (const OutputFile& file : files) {
    if (target_of(file.path) == Target::stream) {
      streams.push_back(&file);
    } else {
      drafts.emplace_back(file);
    }
  }
  for (const OutputFile* const file : streams) write_stream(*file);
  for (Draft& draft : drafts) draft.rename();
}

}  // namespace korvex::cli
