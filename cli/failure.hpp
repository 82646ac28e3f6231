// What ends a command: a sentence for standard error and the exit status that goes with it.
#pragma once

#include <stdexcept>

namespace korvex::cli {

/// Data that cannot be encoded, or a file that cannot be read or written: exit status 1.
struct Failure : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// What nobody can write to any more, such as a full disk: the end of a whole list, not of one job.
struct StorageFailure : Failure {
  using Failure::Failure;
};

/// A command line (or the options of a job) that asks for something that does not exist: exit status 2.
struct UsageError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

inline constexpr int kExitFailure = 1;
inline constexpr int kExitUsage = 2;

}  // namespace korvex::cli
