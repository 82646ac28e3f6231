// Files in and out.
#pragma once

#include <ctime>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace korvex::cli {

/// What a file (or standard input, for "-") holds. Throws Failure, also for more than no symbol ever holds.
std::string read_file(const std::string& path);

struct OutputFile {
  std::string path;  ///< "-" is standard output
  std::string bytes;
};

/// Writes all of them or none: a file appears under its name only when every one of them is written whole
/// (what is no regular file, such as a pipe, gets its bytes as they come). Throws Failure.
void write_files(const std::vector<OutputFile>& files);

/// A file that is written piece by piece under another name, beside its own so that the file system is the
/// same, and appears under its own when it is whole. Without rename() it goes away with the object.
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
  bool exists_ = false;
};

/// The files of one run, written by several threads, each name once: a second file of a name is refused,
/// while files of earlier runs are replaced.
class RunFiles {
 public:
  /// Of files below `folder`, which exists. Throws Failure when nothing can be written there.
  explicit RunFiles(const std::string& folder);

  /// As write_files() does, and makes the folders that are missing.
  void write(const std::vector<OutputFile>& files);

 private:
  [[nodiscard]] bool is_of_this_run(const std::filesystem::path& path) const;

  std::filesystem::path folder_;
  timespec began_{};  // by the clock of the file system
  std::mutex renaming_;
};

}  // namespace korvex::cli
