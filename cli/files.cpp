#include "files.hpp"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "failure.hpp"
#include "interruption.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr std::size_t kMostBytes = std::size_t{1} << 20;  // far more than any symbol holds

std::string reason_of(int error) {
  return std::generic_category().message(error) + ".";
}

[[noreturn]] void fail_reading(const std::string& name) {
  throw Failure("Cannot read " + printable(name) + ": " + reason_of(errno));
}

[[noreturn]] void fail_writing(const std::string& path) {
  constexpr std::array kOfTheDisk = {ENOSPC, EDQUOT, EIO, EROFS, EMFILE, ENFILE, ENOMEM};
  const std::string sentence =
      "Cannot write " + (path == "-" ? "standard output" : printable(path)) + ": " + reason_of(errno);
  if (std::ranges::find(kOfTheDisk, errno) != kOfTheDisk.end()) throw StorageFailure(sentence);
  throw Failure(sentence);
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
    fail_writing(path);
  }
  return Target::stream;
}

void write_stream(const OutputFile& file) {
  Descriptor descriptor(file.path == "-" ? dup(STDOUT_FILENO)
                                         : open(file.path.c_str(), O_WRONLY | O_CLOEXEC));
  if (descriptor.number() < 0 || !write_all(descriptor.number(), file.bytes) || !descriptor.close()) {
    fail_writing(file.path);
  }
}

}  // namespace

Input::Input(const std::string& path) : name_(path == "-" ? "standard input" : path) {
  if (path.find('\0') != std::string::npos) {
    throw Failure("The name of the file " + printable(path) + " has a NUL in it.");
  }
  descriptor_ = path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0)
                            : open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  if (descriptor_ < 0) fail_reading(name_);
  struct stat status {};
  is_file_ = fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
  if (is_file_) size_ = static_cast<std::uintmax_t>(status.st_size);
}

Input::~Input() {
  ::close(descriptor_);
}

std::size_t Input::read(std::span<char> bytes) {
  for (;;) {
    if (!is_file_) await_input(descriptor_);
    const ssize_t count = ::read(descriptor_, bytes.data(), bytes.size());
    if (count >= 0) return static_cast<std::size_t>(count);
    if (errno != EINTR && errno != EAGAIN) fail_reading(name_);
  }
}

bool Input::must_wait() const {
  return !is_file_ && must_await_input(descriptor_);
}

std::string read_file(const std::string& path) {
  Input input(path);
  std::string bytes;
  std::array<char, 1 << 16> chunk;
  while (const std::size_t count = input.read(chunk)) {
    bytes.append(chunk.data(), count);
    if (bytes.size() > kMostBytes) {
      throw Failure("There is more data in " + printable(input.name()) +
                    " than the 1048576 bytes that are read; no symbol holds so much.");
    }
  }
  return bytes;
}

bool is_standard_input(const std::string& path) {
  if (path == "-") return true;
  struct stat input {};
  struct stat file {};
  if (fstat(STDIN_FILENO, &input) != 0 || stat(path.c_str(), &file) != 0) return false;
  // A regular file is read from its beginning whoever else reads it.
  return !S_ISREG(file.st_mode) && input.st_dev == file.st_dev && input.st_ino == file.st_ino;
}

namespace {

constexpr std::string_view kDraftPrefix = ".korvex-";
constexpr std::string_view kDraftSuffix = ".tmp";

enum class Lock { taken, held_by_another, impossible };

/// Of whoever makes a draft, or takes it for left behind; it ends with the process.
Lock lock(int descriptor) {
  if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) return Lock::taken;
  return errno == EWOULDBLOCK ? Lock::held_by_another : Lock::impossible;
}

/// Whether a new draft stays: somebody who removes what is left behind may have been faster than its lock.
bool is_secured(int descriptor) {
  struct stat status {};
  return lock(descriptor) != Lock::held_by_another && fstat(descriptor, &status) == 0 && status.st_nlink > 0;
}

}  // namespace

Draft::Draft(const std::string& path) : shown_path_(path), target_(end_of_links(path)) {
  static std::atomic<unsigned> count = 0;  // of drafts in this process, whichever thread makes them
  for (;;) {
    path_ = target_.parent_path() / (std::string(kDraftPrefix) + std::to_string(getpid()) + "-" +
                                     std::to_string(count++) + std::string(kDraftSuffix));
    descriptor_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
    if (descriptor_ < 0 && errno == EEXIST) continue;  // a killed program left it behind
    if (descriptor_ < 0) fail_writing(path);
    if (is_secured(descriptor_)) break;
    ::close(descriptor_);
  }
  exists_ = true;
  struct stat old {};
  if (stat(target_.c_str(), &old) == 0) (void)!fchmod(descriptor_, old.st_mode & 07777);
}

Draft::~Draft() {
  if (exists_) unlink(path_.c_str());
  if (descriptor_ >= 0) ::close(descriptor_);
  if (lock_ >= 0) ::close(lock_);
}

Draft::Draft(Draft&& other) noexcept
    : shown_path_(std::move(other.shown_path_)),
      target_(std::move(other.target_)),
      path_(std::move(other.path_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      lock_(std::exchange(other.lock_, -1)),
      exists_(std::exchange(other.exists_, false)) {}

void Draft::give_up() {
  const int error = errno;
  if (std::exchange(exists_, false)) unlink(path_.c_str());
  errno = error;
  fail_writing(shown_path_);
}

void Draft::append(std::string_view bytes) {
  if (!write_all(descriptor_, bytes)) give_up();
}

void Draft::close() {
  lock_ = fcntl(descriptor_, F_DUPFD_CLOEXEC, 0);  // -1: no lock, and all goes well without
  if (::close(std::exchange(descriptor_, -1)) != 0) give_up();
}

void Draft::rename() {
  if (std::rename(path_.c_str(), target_.c_str()) != 0) give_up();
  exists_ = false;
}

namespace {

void remove_if_left(const std::filesystem::path& path) {
  const std::string name = path.filename().string();
  if (!name.starts_with(kDraftPrefix) || !name.ends_with(kDraftSuffix)) return;
  const Descriptor draft(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
  if (draft.number() >= 0 && lock(draft.number()) == Lock::taken) unlink(path.c_str());
}

template <class Iterator>
void remove_drafts_in(const std::string& folder) {
  std::error_code error;  // what cannot be looked at stays
  Iterator entry(folder, std::filesystem::directory_options::skip_permission_denied, error);
  while (!error && entry != Iterator()) {
    if (entry->is_regular_file(error) && !error) remove_if_left(entry->path());
    entry.increment(error);
  }
}

}  // namespace

void remove_left_drafts(const std::string& folder, bool in_all_below) {
  if (in_all_below) {
    remove_drafts_in<std::filesystem::recursive_directory_iterator>(folder);
  } else {
    remove_drafts_in<std::filesystem::directory_iterator>(folder);
  }
}

GrowingFile::GrowingFile(const std::string& path, std::uintmax_t bytes) : path_(path), bytes_(bytes) {
  is_stream_ = target_of(path) == Target::stream;
  if (path == "-") {
    descriptor_ = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
  } else if (is_stream_) {
    descriptor_ = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  } else if (bytes > 0) {
    descriptor_ = open(path.c_str(), O_WRONLY | O_APPEND | O_NOFOLLOW | O_CLOEXEC);
    struct stat status {};
    if (descriptor_ >= 0 && fstat(descriptor_, &status) == 0 &&
        static_cast<std::uintmax_t>(status.st_size) < bytes) {
      ::close(std::exchange(descriptor_, -1));
      throw Failure(
          "The file " + printable(path) +
          " is shorter than the interrupted run left it; without --resume all of the list is drawn again.");
    }
    if (descriptor_ >= 0 && ftruncate(descriptor_, static_cast<off_t>(bytes)) != 0) {
      ::close(std::exchange(descriptor_, -1));
    }
  } else {
    if (unlink(path.c_str()) != 0 && errno != ENOENT) fail_writing(path);
    descriptor_ = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  }
  if (descriptor_ < 0) fail_writing(path);
}

GrowingFile::~GrowingFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

void GrowingFile::add(std::string_view text) {
  constexpr std::size_t kEnough = 1 << 16;
  waiting_ += text;
  bytes_ += text.size();
  if (is_stream_ || waiting_.size() >= kEnough) flush();
}

void GrowingFile::flush() {
  if (!write_all(descriptor_, waiting_)) fail_writing(path_);
  waiting_.clear();
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

}  // namespace

void write_files(const std::vector<OutputFile>& files) {
  Written all = written(files);
  for (const OutputFile* const file : all.streams) write_stream(*file);
  for (Draft& draft : all.drafts) draft.rename();
}

RunFiles::RunFiles(const std::string& folder, std::unordered_set<std::string> written)
    : folder_(folder), real_folder_(std::filesystem::canonical(folder)), written_(std::move(written)) {}

/// From the run's folder on, so that it may be moved, and without links, so that a file has one name.
std::string RunFiles::name_of(const std::filesystem::path& path) {
  if (path.parent_path() != last_parent_ || last_real_parent_.empty()) {
    last_parent_ = path.parent_path();
    last_real_parent_ = std::filesystem::canonical(last_parent_).lexically_relative(real_folder_);
  }
  return (last_real_parent_ / path.filename()).string();
}

std::vector<std::string> RunFiles::write(const std::vector<OutputFile>& files) {
  for (const OutputFile& file : files) {
    const std::filesystem::path folder = std::filesystem::path(file.path).parent_path();
    if (folder == folder_) continue;
    std::error_code error;
    std::filesystem::create_directories(folder, error);
    if (!error) continue;
    errno = error.value();
    fail_writing(file.path);
  }
  Written all = written(files);
  if (!all.streams.empty()) {
    throw Failure("Cannot write " + printable(all.streams.front()->path) + ": it is no file.");
  }
  const std::lock_guard lock(renaming_);
  std::vector<std::string> names;
  for (const Draft& draft : all.drafts) {
    names.push_back(name_of(draft.target()));
    const bool is_twice = std::ranges::find(names.begin(), names.end() - 1, names.back()) != names.end() - 1;
    if (!is_twice && !written_.contains(names.back())) continue;
    throw Failure("Another symbol of this list has the file " + printable(draft.target().string()) +
                  " already.");
  }
  for (std::size_t i = 0; i < names.size(); ++i) {
    all.drafts[i].rename();
    written_.insert(names[i]);
  }
  return names;
}

}  // namespace korvex::cli
