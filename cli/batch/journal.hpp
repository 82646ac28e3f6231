// How far a batch is, kept beside its files, so that an interrupted one can go on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

namespace korvex::cli::batch {

struct Journal {
  std::string arguments;            ///< of the command, without --resume
  std::size_t records = 0;          ///< done, from the first on
  std::uint32_t checksum = 0;       ///< of those records
  std::size_t symbols = 0;          ///< drawn
  std::size_t failed = 0;           ///< records
  std::uintmax_t report_bytes = 0;  ///< written on those records
};

/// Nothing when there is none. Throws Failure when it cannot be read or makes no sense.
std::optional<Journal> read_journal(const std::string& path);
/// Throws Failure.
void write_journal(const std::string& path, const Journal& journal);

}  // namespace korvex::cli::batch
