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
  bool is_too_long = false;        ///< more than is read of one record; the rest was passed over
};

/// Values by name, with dashes where names have underscores. A value that is not there was not given.
using Fields = std::map<std::string, std::string, std::less<>>;

/// Reads a file, or standard input for "-", without holding more than a few records.
class RecordReader {
 public:
  /// Throws Failure when the file cannot be read or its CSV header makes no sense.
  explicit RecordReader(const std::string& path);
  ~RecordReader();
  RecordReader(const RecordReader&) = delete;
  RecordReader& operator=(const RecordReader&) = delete;

  /// The next record; blank lines are passed over. Throws Failure.
  std::optional<Record> next();

  /// The names in the first line of CSV; empty for JSON Lines.
  [[nodiscard]] const std::vector<std::string>& header() const;
  [[nodiscard]] std::uintmax_t bytes_read() const;
  /// Of the whole list; 0 when nobody knows, as for a pipe.
  [[nodiscard]] std::uintmax_t bytes_in_all() const;

 private:
  class Source;
  std::unique_ptr<Source> source_;
};

/// The fields of a record. Throws Failure when it is no JSON object of plain values, or has another number of
/// cells than the header has names.
Fields fields_of(const Record& record, const std::vector<std::string>& header);

}  // namespace korvex::cli::batch
