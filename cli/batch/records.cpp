#include "batch/records.hpp"

#include <csv.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <deque>
#include <nlohmann/json.hpp>
#include <string_view>
#include <system_error>
#include <utility>

#include "failure.hpp"
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

constexpr std::size_t kLongest = std::size_t{1} << 22;  // bytes of one record
constexpr std::size_t kChunk = std::size_t{1} << 16;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Underscores are as good as dashes.
std::string name_of(std::string name) {
  std::ranges::replace(name, '_', '-');
  return name;
}

bool is_blank(std::string_view line) {
  return line.find_first_not_of(" \t\r") == std::string_view::npos;
}

/// What takes the list's bytes apart.
class Splitter {
 public:
  Splitter() = default;
  virtual ~Splitter() = default;
  Splitter(const Splitter&) = delete;
  Splitter& operator=(const Splitter&) = delete;

  virtual void take(std::string_view bytes) = 0;
  virtual void end() = 0;

  std::deque<Record> records;
  std::vector<std::string> header;
};

class JsonLines : public Splitter {
 public:
  void take(std::string_view bytes) override {
    for (std::size_t end = 0; (end = bytes.find('\n')) != std::string_view::npos;) {
      append(bytes.substr(0, end));
      end_line();
      bytes.remove_prefix(end + 1);
    }
    append(bytes);
  }
  void end() override { end_line(); }

 private:
  void append(std::string_view part) {
    if (current_.json.size() + part.size() > kLongest) {
      current_.is_too_long = true;
      return;
    }
    current_.json += part;
  }
  void end_line() {
    current_.line = ++line_;
    if (current_.is_too_long || !is_blank(current_.json)) records.push_back(std::move(current_));
    current_ = {};
  }

  Record current_;
  std::size_t line_ = 0;
};

/// What parts the cells of CSV: the first comma, semicolon or tab of its header, for spreadsheets write what
/// their country has. Nothing while the header may go on.
std::optional<char> separator_of(std::string_view csv) {
  bool is_quoted = false;
  for (const char c : csv.substr(std::min(csv.find_first_not_of(" \t\r\n"), csv.size()))) {
    if (c == '"') is_quoted = !is_quoted;
    if (is_quoted) continue;
    if (c == ',' || c == ';' || c == '\t') return c;
    if (c == '\r' || c == '\n') return ',';
  }
  return std::nullopt;
}

/// RFC 4180, with any of the separators, and quotes within unquoted cells as they stand.
class Csv : public Splitter {
 public:
  Csv() {
    if (csv_init(&parser_, CSV_REPALL_NL) != 0) throw std::bad_alloc();
    csv_set_blk_size(&parser_, kChunk);  // long cells do not grow in tiny steps
    // A quote that nobody closes must not swallow a list of any size.
    csv_set_realloc_func(&parser_, [](void* old, std::size_t size) -> void* {
      return size > kLongest ? nullptr : std::realloc(old, size);
    });
  }
  ~Csv() override { csv_free(&parser_); }
  Csv(const Csv&) = delete;
  Csv& operator=(const Csv&) = delete;

  void take(std::string_view bytes) override {
    if (is_separator_known_) return parse(bytes);
    start_ += bytes;
    if (const auto separator = separator_of(start_)) {
      csv_set_delim(&parser_, static_cast<unsigned char>(*separator));
    } else if (start_.size() < kLongest) {
      return;
    }
    is_separator_known_ = true;
    parse(std::exchange(start_, {}));
  }
  void end() override {
    parse(start_);
    csv_fini(&parser_, on_cell, on_row, this);
  }

 private:
  void parse(std::string_view bytes) {
    if (csv_parse(&parser_, bytes.data(), bytes.size(), on_cell, on_row, this) != bytes.size()) {
      throw Failure("The record that begins in line " + std::to_string(line_) +
                    " of the list has more than " + std::to_string(kLongest) +
                    " bytes; is a quote left open?");
    }
  }
  static void on_cell(void* bytes, std::size_t size, void* self) {
    auto& csv = *static_cast<Csv*>(self);
    csv.cells_.emplace_back(static_cast<const char*>(bytes), size);
  }
  static void on_row(int end, void* self) { static_cast<Csv*>(self)->end_row(end); }

  void end_row(int end) {
    Record record{line_, {}, std::exchange(cells_, {}), false};
    for (const std::string& cell : record.cells) line_ += std::ranges::count(cell, '\n');
    if (end == '\n') ++line_;  // of a carriage return and a line feed, the second ends the line
    if (record.cells.empty()) return;
    if (!header.empty()) {
      records.push_back(std::move(record));
      return;
    }
    for (std::string& name : record.cells) header.push_back(name_of(std::move(name)));
  }

  csv_parser parser_{};
  bool is_separator_known_ = false;
  std::string start_;  // what is read before it is known
  std::vector<std::string> cells_;
  std::size_t line_ = 1;
};

void check_header(const std::vector<std::string>& header) {
  for (const std::string& name : header) {
    if (name.empty())
      throw Failure("A column of the list has no name; the first line of CSV names them all.");
    if (std::ranges::count(header, name) > 1) {
      throw Failure("Two columns of the list are called \"" + printable(name) + "\".");
    }
  }
}

std::string text_of(const std::string& name, const nlohmann::json& value) {
  if (value.is_string()) return value.get<std::string>();
  if (value.is_boolean() || value.is_number()) return value.dump();
  throw Failure("The field \"" + printable(name) + "\" is a text, a number, true or false, not " +
                value.type_name() + ".");
}

}  // namespace

class RecordReader::Source {
 public:
  explicit Source(const std::string& path) : name_(path == "-" ? "standard input" : path) {
    descriptor_ = path == "-" ? dup(STDIN_FILENO) : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor_ < 0) fail();
    struct stat status {};
    if (fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) {
      bytes_in_all = static_cast<std::uintmax_t>(status.st_size);
    }
    while (!knows_header() && !at_end_) read_on();
  }
  ~Source() {
    if (descriptor_ >= 0) close(descriptor_);
  }
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;

  std::optional<Record> next() {
    while (splitter_ && splitter_->records.empty() && !at_end_) read_on();
    if (!splitter_ || splitter_->records.empty()) return std::nullopt;
    Record record = std::move(splitter_->records.front());
    splitter_->records.pop_front();
    return record;
  }
  [[nodiscard]] const std::vector<std::string>& header() const {
    return splitter_ ? splitter_->header : none_;
  }

  std::uintmax_t bytes_read = 0;
  std::uintmax_t bytes_in_all = 0;

 private:
  [[noreturn]] void fail() const {
    throw Failure("Cannot read " + printable(name_) + ": " + std::generic_category().message(errno) + ".");
  }

  [[nodiscard]] bool knows_header() const { return splitter_ && (!is_csv_ || !splitter_->header.empty()); }

  /// Reads a chunk; the first one tells which kind of list it is.
  void read_on() {
    std::string chunk(kChunk, '\0');
    ssize_t count = 0;
    do {
      count = read(descriptor_, chunk.data(), chunk.size());
    } while (count < 0 && errno == EINTR);
    if (count < 0) fail();
    chunk.resize(static_cast<std::size_t>(count));
    bytes_read += chunk.size();
    at_end_ = chunk.empty();
    std::string_view bytes = chunk;
    if (!splitter_) {
      start_ += bytes;
      if (start_.size() < kByteOrderMark.size() && !at_end_) return read_on();
      bytes = start_;
      if (bytes.starts_with("\xFF\xFE") || bytes.starts_with("\xFE\xFF")) {
        throw Failure("The list is text in UTF-16; save it as UTF-8.");
      }
      if (bytes.starts_with(kByteOrderMark)) bytes.remove_prefix(kByteOrderMark.size());
      const std::size_t first = bytes.find_first_not_of(" \t\r\n");
      if (first == std::string_view::npos) {
        if (at_end_) return;  // an empty list
        return read_on();
      }
      is_csv_ = bytes[first] != '{';
      if (is_csv_) {
        splitter_ = std::make_unique<Csv>();
      } else {
        splitter_ = std::make_unique<JsonLines>();
      }
    }
    splitter_->take(bytes);
    if (at_end_) splitter_->end();
    if (!header_checked_ && (!header().empty() || at_end_)) {
      check_header(header());
      header_checked_ = true;
    }
  }

  std::string name_;
  int descriptor_ = -1;
  bool at_end_ = false;
  bool is_csv_ = false;
  bool header_checked_ = false;
  std::string start_;  // what is read before the kind of list is known
  std::unique_ptr<Splitter> splitter_;
  std::vector<std::string> none_;
};

RecordReader::RecordReader(const std::string& path) : source_(new Source(path)) {}
RecordReader::~RecordReader() = default;

std::optional<Record> RecordReader::next() {
  return source_->next();
}
const std::vector<std::string>& RecordReader::header() const {
  return source_->header();
}
std::uintmax_t RecordReader::bytes_read() const {
  return source_->bytes_read;
}
std::uintmax_t RecordReader::bytes_in_all() const {
  return source_->bytes_in_all;
}

Fields fields_of(const Record& record, const std::vector<std::string>& header) {
  if (record.is_too_long) {
    throw Failure("The line has more than the " + std::to_string(kLongest) + " bytes that are read.");
  }
  Fields fields;
  if (!header.empty()) {
    if (record.cells.size() != header.size()) {
      throw Failure("There are " + std::to_string(record.cells.size()) + " cells where the header names " +
                    std::to_string(header.size()) + ".");
    }
    for (std::size_t column = 0; column < header.size(); ++column) {
      if (!record.cells[column].empty()) fields.emplace(header[column], record.cells[column]);
    }
    return fields;
  }
  const auto object = nlohmann::json::parse(record.json, nullptr, false);
  if (!object.is_object()) throw Failure("The line is no JSON object.");
  for (const auto& [name, value] : object.items()) {
    if (!value.is_null()) fields.insert_or_assign(name_of(name), text_of(name, value));
  }
  return fields;
}

}  // namespace korvex::cli::batch
