// How far a batch is, kept beside its files, so that an interrupted one can go on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>

namespace korvex::cli::batch {

struct Journal {
  std::string arguments;            ///< of the command, without --resume
  std::size_t records = 0;          ///< done, from the first on
  std::uint32_t checksum = 0;       ///< of those records
  std::size_t symbols = 0;          ///< drawn
  std::size_t failed = 0;           ///< records
  std::uintmax_t report_bytes = 0;  ///< written on those records
  std::uintmax_t names_bytes = 0;   ///< of the file that names what was written for those records
};

/// Nothing when there is none. Throws Failure when it cannot be read or makes no sense.
std::optional<Journal> read_journal(const std::string& path);
/// Throws Failure, and StorageFailure when the disk is full or fails.
void write_journal(const std::string& path, const Journal& journal);

/// The names in the first `bytes` of that file, which end with a NUL each. Throws Failure.
std::unordered_set<std::string> read_names(const std::string& path, std::uintmax_t bytes);

}  // namespace korvex::cli::batch
