// Lists of jobs: JSON Lines, or CSV with a header, read record by record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace korvex::cli::batch {

/// One job as it stands in the list.
struct Record {
  std::size_t line = 0;            ///< where it begins, from 1
  std::string json;                ///< the line, unless the list is CSV
  std::vector<std::string> cells;  ///< of CSV
  std::string fault;               ///< a sentence when it is no record, such as one that is too long
};

/// Values by name, with dashes where names have underscores. A value that is not there was not given.
using Fields = std::map<std::string, std::string, std::less<>>;

/// Reads a file, or standard input for "-", without holding more than a few records.
class RecordReader {
 public:
  /// Reads so many bytes at a time. Throws Failure when the file cannot be read or its CSV header makes no
  /// sense, and Interrupted while it waits.
  explicit RecordReader(const std::string& path, std::size_t chunk_bytes = std::size_t{1} << 16);
  ~RecordReader();
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  /// The next record; blank lines are passed over. Throws Failure or Interrupted.
  std::optional<Record> next();
  /// Whether next() would wait for whoever writes the list.
  [[nodiscard]] bool must_wait() const;

  /// The names in the first line of CSV; empty for JSON Lines.
  [[nodiscard]] const std::vector<std::string>& header() const;
  [[nodiscard]] std::uintmax_t bytes_read() const;
  /// Of the whole list; 0 when nobody knows, as for a pipe.
  [[nodiscard]] std::uintmax_t bytes_in_all() const;

 private:
  class Source;
  std::unique_ptr<Source> source_;
};

/// The fields of a record; numbers stand as they are written. Throws Failure when it is no JSON object of
/// plain values, or has another number of cells than the header has names.
Fields fields_of(const Record& record, const std::vector<std::string>& header);

}  // namespace korvex::cli::batch
