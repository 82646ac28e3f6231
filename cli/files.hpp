// Files in and out.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace korvex::cli {

/// A file that is read, or standard input for "-".
class Input {
 public:
  /// Throws Failure. Does not wait for whoever writes into a named pipe.
  explicit Input(const std::string& path);
  ~Input();
  Input(const Input&) = delete;
  Input& operator=(const Input&) = delete;

  /// Fills `bytes` with what comes next; returns how many there were, 0 at the end. Throws Failure, or
  /// Interrupted while it waits.
  std::size_t read(std::span<char> bytes);
  /// Whether read() would wait.
  [[nodiscard]] bool must_wait() const;
  /// Bytes of a file; 0 when nobody knows, as for a pipe.
  [[nodiscard]] std::uintmax_t size() const { return size_; }
  [[nodiscard]] const std::string& name() const { return name_; }

 private:
  std::string name_;
  int descriptor_;
  bool is_file_ = false;
  std::uintmax_t size_ = 0;
};

/// What a file (or standard input, for "-") holds. Throws Failure, also for more than no symbol ever holds,
/// or Interrupted.
std::string read_file(const std::string& path);

/// Whether reading the file would take away what standard input has, as it would for "-" and /dev/stdin.
bool is_standard_input(const std::string& path);

struct OutputFile {
  std::string path;  ///< "-" is standard output
  std::string bytes;
};

/// Writes all of them or none: a file appears under its name only when every one of them is written whole
/// (what is no regular file, such as a pipe, gets its bytes as they come). Throws Failure, and StorageFailure
/// when the disk is full or fails.
void write_files(const std::vector<OutputFile>& files);

/// A file that is written piece by piece under another name, beside its own so that the file system is the
/// same, and appears under its own when it is whole. Without rename() it goes away with the object. It is
/// locked until then, so that one that a killed program left behind can be told from it.
class Draft {
 public:
  /// Throws Failure, as all that follow do.
  explicit Draft(const std::string& path);
  ~Draft();
  Draft(Draft&& other) noexcept;
  Draft& operator=(Draft&&) = delete;

  void append(std::string_view bytes);
  /// All of it is written.
  void close();
  void rename();
  [[nodiscard]] const std::filesystem::path& target() const { return target_; }

 private:
  [[noreturn]] void give_up();

  std::string shown_path_;
  std::filesystem::path target_;  ///< where links lead, so that they stay links
  std::filesystem::path path_;
  int descriptor_ = -1;
  int lock_ = -1;  // the same file, once the descriptor is closed
  bool exists_ = false;
};

/// Removes the drafts that killed programs left in a folder, and below it when `in_all_below`.
void remove_left_drafts(const std::string& folder, bool in_all_below);

/// A file that grows at its end and is kept when the program dies: what it had at some point is known by its
/// size then. "-" is standard output, and what is no regular file, such as a pipe, is written as it comes.
class GrowingFile {
 public:
  /// A new file, or the first `bytes` of the one that is there. Never follows a link. Throws Failure, as all
  /// that follow do.
  GrowingFile(const std::string& path, std::uintmax_t bytes);
  ~GrowingFile();
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;

  void add(std::string_view text);
  /// Everything is written.
  void flush();
  /// Of all that was added.
  [[nodiscard]] std::uintmax_t bytes() const { return bytes_; }

 private:
  std::string path_;
  std::uintmax_t bytes_;
  std::string waiting_;
  int descriptor_ = -1;
  bool is_stream_ = false;
};

/// The files of one run, written by several threads, each name once: a second file of a name is refused,
/// while files of earlier runs are replaced.
class RunFiles {
 public:
  /// Of files below `folder`, which exists; `written` names those that an interrupted part of the run wrote.
  RunFiles(const std::string& folder, std::unordered_set<std::string> written);

  /// As write_files() does, and makes the folders that are missing. Returns the files' names, as the
  /// constructor takes them.
  std::vector<std::string> write(const std::vector<OutputFile>& files);

 private:
  std::string name_of(const std::filesystem::path& path);

  std::filesystem::path folder_;
  std::filesystem::path real_folder_;  // without links
  std::mutex renaming_;
  std::unordered_set<std::string> written_;
  std::filesystem::path last_parent_;  // whose real path is
  std::filesystem::path last_real_parent_;
};

}  // namespace korvex::cli
