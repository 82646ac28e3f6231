#include "files.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <thread>
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
  if (!std::filesystem::is_symlink(path, error)) return path;
  std::filesystem::path end = std::filesystem::canonical(path, error);
  return error ? std::filesystem::path(path) : end;
}

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

Draft::Draft(const std::string& path) : shown_path_(path), target_(end_of_links(path)) {
  static std::atomic<unsigned> count = 0;  // of drafts in this process, whichever thread makes them
  do {
    path_ = target_.parent_path() /
            (".korvex-" + std::to_string(getpid()) + "-" + std::to_string(count++) + ".tmp");
    descriptor_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  } while (descriptor_ < 0 && errno == EEXIST);  // a killed program left it behind
  if (descriptor_ < 0) fail("write", path);
  exists_ = true;
  struct stat old {};
  if (stat(target_.c_str(), &old) == 0) (void)!fchmod(descriptor_, old.st_mode & 07777);
}

Draft::~Draft() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (exists_) unlink(path_.c_str());
}

Draft::Draft(Draft&& other) noexcept
    : shown_path_(std::move(other.shown_path_)),
      target_(std::move(other.target_)),
      path_(std::move(other.path_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      exists_(std::exchange(other.exists_, false)) {}

void Draft::give_up() {
  const int error = errno;
  if (std::exchange(exists_, false)) unlink(path_.c_str());
  errno = error;
  fail("write", shown_path_);
}

void Draft::append(std::string_view bytes) {
  if (!write_all(descriptor_, bytes)) give_up();
}

void Draft::close() {
  if (::close(std::exchange(descriptor_, -1)) != 0) give_up();
}

void Draft::rename() {
  if (std::rename(path_.c_str(), target_.c_str()) != 0) give_up();
  exists_ = false;
}

namespace {

struct Written {
  std::vector<Draft> drafts;               // still to be renamed
  std::vector<const OutputFile*> streams;  // still to be written
};

Written written(const std::vector<OutputFile>& files) {
  Written all;
  for (const OutputFile& file : files) {
    if (target_of(file.path) == Target::stream) {
      all.streams.push_back(&file);
      continue;
    }
    Draft& draft = all.drafts.emplace_back(file.path);
    draft.append(file.bytes);
    draft.close();
  }
  return all;
}

timespec time_of(const struct stat& status) {
  return status.st_mtim;
}

bool is_before(const timespec& a, const timespec& b) {
  return std::pair(a.tv_sec, a.tv_nsec) < std::pair(b.tv_sec, b.tv_nsec);
}

}  // namespace

void write_files(const std::vector<OutputFile>& files) {
  Written all = written(files);
  for (const OutputFile* const file : all.streams) write_stream(*file);
  for (Draft& draft : all.drafts) draft.rename();
}

RunFiles::RunFiles(const std::string& folder) : folder_(folder) {
  // File systems count time in steps; a step that begins now parts this run's files from all earlier ones.
  const std::string path = folder + "/.korvex-" + std::to_string(getpid()) + "-clock.tmp";
  const Descriptor probe(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (probe.number() < 0) fail("write into", folder);
  unlink(path.c_str());
  struct stat status {};
  const auto touch = [&] {
    return futimens(probe.number(), nullptr) == 0 && fstat(probe.number(), &status) == 0;
  };
  bool is_good = touch();
  const timespec first = time_of(status);
  constexpr int kMostTries = 3000;  // of a millisecond; some file systems count whole seconds or two
  for (int tries = 0; is_good && !is_before(first, time_of(status)) && tries < kMostTries; ++tries) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
    is_good = touch();
  }
  if (!is_good) fail("write into", folder);
  began_ = time_of(status);
}

bool RunFiles::is_of_this_run(const std::filesystem::path& path) const {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 && !is_before(time_of(status), began_);
}

void RunFiles::write(const std::vector<OutputFile>& files) {
  for (const OutputFile& file : files) {
    const std::filesystem::path folder = std::filesystem::path(file.path).parent_path();
    if (folder == folder_) continue;
    std::error_code error;  // what went wrong shows when the file is opened
    std::filesystem::create_directories(folder, error);
  }
  Written all = written(files);
  if (!all.streams.empty()) {
    throw Failure("Cannot write " + printable(all.streams.front()->path) + ": it is no file.");
  }
  const std::lock_guard lock(renaming_);
  for (const Draft& draft : all.drafts) {
    if (!is_of_this_run(draft.target())) continue;
    throw Failure("Another symbol of this list has the file " + printable(draft.target().string()) +
                  " already.");
  }
  for (Draft& draft : all.drafts) draft.rename();
}

}  // namespace korvex::cli
