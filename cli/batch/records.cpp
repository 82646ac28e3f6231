#include "batch/records.hpp"

#include <csv.h>

#include <algorithm>
#include <cstdlib>
#include <deque>
#include <nlohmann/json.hpp>
#include <set>
#include <string_view>
#include <utility>

#include "failure.hpp"
#include "files.hpp"
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

constexpr std::size_t kLongest = std::size_t{1} << 22;  // bytes of one record
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r\n";

std::string too_long(const std::string& what) {
  return what + " has more than the " + std::to_string(kLongest) + " bytes that are read";
}

/// Underscores are as good as dashes.
std::string name_of(std::string name) {
  std::ranges::replace(name, '_', '-');
  return name;
}

bool is_blank(std::string_view line) {
  return line.find_first_not_of(kBlanks) == std::string_view::npos;
}

std::string without_blanks_around(std::string name) {
  name.erase(name.find_last_not_of(kBlanks) + 1);
  name.erase(0, std::min(name.find_first_not_of(kBlanks), name.size()));
  return name;
}

/// What takes the list's bytes apart.
class Splitter {
 public:
  /// `line`: the number of the line that its first byte stands in.
  explicit Splitter(std::size_t line) : line_(line) {}
  virtual ~Splitter() = default;
  Splitter(const Splitter&) = delete;
  Splitter& operator=(const Splitter&) = delete;

  virtual void take(std::string_view bytes) = 0;
  virtual void end() = 0;

  std::deque<Record> records;
  std::vector<std::string> header;

 protected:
  std::size_t line_;
};

class JsonLines : public Splitter {
 public:
  using Splitter::Splitter;

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
    if (current_.json.size() + part.size() > kLongest) current_.fault = too_long("The line") + ".";
    if (current_.fault.empty()) current_.json += part;
  }
  void end_line() {
    current_.line = line_++;
    if (!current_.fault.empty()) current_.json.clear();
    if (!current_.fault.empty() || !is_blank(current_.json)) records.push_back(std::move(current_));
    current_ = {};
  }

  Record current_;
};

/// Finds what parts the cells of CSV: the first comma, semicolon or tab of its header, for spreadsheets write
/// what their country has.
class SeparatorSearch {
 public:
  /// Nothing while the header may go on. `csv` is what there is of the list, more each time.
  std::optional<char> in(std::string_view csv) {
    for (; at_ < csv.size(); ++at_) {
      const char c = csv[at_];
      if (c == '"') is_quoted_ = !is_quoted_;
      if (is_quoted_) continue;
      if (c == ',' || c == ';' || c == '\t') return c;
      if (c == '\r' || c == '\n') return ',';
    }
    return std::nullopt;
  }

 private:
  std::size_t at_ = 0;
  bool is_quoted_ = false;
};

/// RFC 4180, with any of the separators, and quotes within unquoted cells as they stand. A record that breaks
/// the rules fails alone: the list goes on behind its first line, so that a quote that nobody closes takes no
/// other record with it.
class Csv : public Splitter {
 public:
  explicit Csv(std::size_t line) : Splitter(line) {
    if (csv_init(&parser_, kStrict) != 0) throw std::bad_alloc();
    csv_set_blk_size(&parser_, std::size_t{1} << 16);               // long cells do not grow in tiny steps
    csv_set_space_func(&parser_, [](unsigned char) { return 0; });  // blanks belong to their cell
  }
  ~Csv() override { csv_free(&parser_); }
  Csv(const Csv&) = delete;
  Csv& operator=(const Csv&) = delete;

  void take(std::string_view bytes) override {
    waiting_ += bytes;
    if (!is_separator_known_) {
      const std::optional<char> separator = search_.in(waiting_);
      if (!separator && waiting_.size() <= kLongest) return;
      know_separator(separator.value_or(','));
    }
    while (take_line(false)) {
    }
    const std::size_t done = begin_ - std::min<std::size_t>(begin_, 1);  // a CR may be followed by its LF
    waiting_.erase(0, done);
    begin_ -= done;
    parsed_ -= done;
    looked_at_ -= done;
    second_line_ -= std::min(second_line_, done);
  }
  void end() override {
    know_separator(is_separator_known_ ? csv_get_delim(&parser_) : ',');
    while (take_line(true)) {
    }
  }

 private:
  static constexpr unsigned char kTolerant = CSV_REPALL_NL;  // blank lines are rows too
  static constexpr unsigned char kStrict = CSV_REPALL_NL | CSV_STRICT;

  void know_separator(int separator) {
    csv_set_delim(&parser_, static_cast<unsigned char>(separator));
    is_separator_known_ = true;
  }

  /// Takes the next line; at the end what is left is one. False: there is none.
  bool take_line(bool at_end) {
    const std::size_t found = waiting_.find_first_of("\r\n", looked_at_);
    const bool has_end = found != std::string::npos;
    const std::size_t end = has_end ? found + 1 : waiting_.size();
    looked_at_ = end;
    if (is_passing_over_ || end - begin_ > kLongest) return pass_over(end, has_end);
    if (end == begin_ || (!has_end && !at_end)) return false;
    // The list's last line may lack its end; within quotes an end too many changes nothing.
    const bool is_sound = parse(parsed_, end) && (has_end || parse_bytes("\n"));
    const bool is_new_line = waiting_[end - 1] != '\n' || end < 2 || waiting_[end - 2] != '\r';
    lines_ += is_new_line ? 1 : 0;
    if (second_line_ <= begin_) second_line_ = end;
    parsed_ = end;
    if (!is_sound) {
      refuse("A quote of the record closes within a cell, or is left open.");
    } else if (is_row_done_) {
      end_row();
    } else if (at_end && end == waiting_.size()) {
      refuse("A quote of the record is left open.");
    }
    return true;
  }

  /// Of a record that is too long.
  bool pass_over(std::size_t end, bool has_end) {
    if (!is_passing_over_ && parsed_ > begin_) {
      refuse(too_long("The record") + "; is a quote left open?");
      return true;
    }
    if (!is_passing_over_) {
      second_line_ = end;
      refuse(too_long("The record") + ".");
    }
    is_passing_over_ = !has_end;
    begin_ = parsed_ = looked_at_ = end;
    return has_end;
  }

  /// False when a quote stands where none may.
  bool parse(std::size_t begin, std::size_t end) {
    is_row_done_ = false;
    return parse_bytes(std::string_view(waiting_).substr(begin, end - begin));
  }
  bool parse_bytes(std::string_view bytes) {
    while (!bytes.empty()) {
      bytes.remove_prefix(csv_parse(&parser_, bytes.data(), bytes.size(), on_cell, on_row, this));
      if (csv_error(&parser_) == CSV_ENOMEM) throw std::bad_alloc();
      if (bytes.empty()) break;
      if (bytes.front() != '"') return false;  // it stands behind a quote that closed its cell
      csv_set_opts(&parser_, kTolerant);       // a quote within an unquoted cell
      csv_parse(&parser_, bytes.data(), 1, on_cell, on_row, this);
      csv_set_opts(&parser_, kStrict);
      bytes.remove_prefix(1);
    }
    return true;
  }
  static void on_cell(void* bytes, std::size_t size, void* self) {
    static_cast<Csv*>(self)->cells_.emplace_back(static_cast<const char*>(bytes), size);
  }
  static void on_row(int, void* self) { static_cast<Csv*>(self)->is_row_done_ = true; }

  /// The list goes on behind the record's first line.
  void refuse(const std::string& sentence) {
    if (header.empty()) throw Failure("The list begins with no header: " + sentence);
    records.push_back({line_, {}, {}, sentence});
    csv_fini(&parser_, nullptr, nullptr, nullptr);
    cells_.clear();
    begin_ = parsed_ = looked_at_ = second_line_;
    lines_ = 0;
    ++line_;
  }

  void end_row() {
    Record record{line_, {}, std::exchange(cells_, {}), {}};
    line_ += std::exchange(lines_, 0);
    begin_ = parsed_;
    const bool is_one_blank =
        record.cells.size() == 1 && header.size() != 1 && is_blank(record.cells.front());
    if (record.cells.empty() || is_one_blank) return;
    if (!header.empty()) {
      records.push_back(std::move(record));
      return;
    }
    for (std::string& name : record.cells) header.push_back(name_of(without_blanks_around(std::move(name))));
  }

  csv_parser parser_{};
  SeparatorSearch search_;
  bool is_separator_known_ = false;
  bool is_row_done_ = false;
  bool is_passing_over_ = false;  // the rest of a line that is too long
  std::vector<std::string> cells_;
  std::string waiting_;          // what is read and not done with; places in it:
  std::size_t begin_ = 0;        // of the record
  std::size_t second_line_ = 0;  // of the record; before it when that is not known
  std::size_t parsed_ = 0;
  std::size_t looked_at_ = 0;  // for ends of lines
  std::size_t lines_ = 0;      // of the record, so far
};

void check_header(const std::vector<std::string>& header) {
  std::set<std::string_view> names;
  for (const std::string& name : header) {
    if (name.empty())
      throw Failure("A column of the list has no name; the first line of CSV names them all.");
    if (!names.insert(name).second) {
      throw Failure("Two columns of the list are called \"" + printable(name) + "\".");
    }
  }
}

/// The fields of a line of JSON. Numbers are kept as they are written, for an article number may have more
/// digits than any number type, and zeros at its end.
class FieldReader : public nlohmann::json_sax<nlohmann::json> {
 public:
  Fields fields;

  bool null() override { return check_inside(), true; }
  bool boolean(bool value) override { return put(value ? "true" : "false"); }
  // Of the signed whole numbers 0 is written -0 alone.
  bool number_integer(number_integer_t value) override {
    return put(value == 0 ? "-0" : std::to_string(value));
  }
  bool number_unsigned(number_unsigned_t value) override { return put(std::to_string(value)); }
  bool number_float(number_float_t, const string_t& written) override { return put(written); }
  bool string(string_t& value) override { return put(std::move(value)); }
  bool binary(binary_t&) override { return false; }

  bool start_object(std::size_t) override {
    if (is_inside_) refuse_value("object");
    return is_inside_ = true;
  }
  bool key(string_t& name) override {
    name_ = name_of(std::move(name));
    if (!names_.insert(name_).second) throw Failure("The field \"" + printable(name_) + "\" is there twice.");
    return true;
  }
  bool end_object() override { return true; }
  bool start_array(std::size_t) override {
    check_inside();
    refuse_value("array");
  }
  bool end_array() override { return true; }

  bool parse_error(std::size_t byte, const std::string&, const nlohmann::json::exception& error) override {
    constexpr int kNumberTooLarge = 406;
    if (error.id == kNumberTooLarge) throw Failure("The line has a number that is too large for anybody.");
    throw Failure("The line is not JSON at byte " + std::to_string(byte) + ": " + json_reason(error.what()) +
                  ".");
  }

 private:
  void check_inside() const {
    if (!is_inside_) throw Failure("The line is no JSON object.");
  }
  bool put(std::string value) {
    check_inside();
    fields.insert_or_assign(name_, std::move(value));
    return true;
  }
  [[noreturn]] void refuse_value(const std::string& type) const {
    throw Failure("The field \"" + printable(name_) + "\" is a text, a number, true or false, not " + type +
                  ".");
  }

  bool is_inside_ = false;
  std::string name_;
  std::set<std::string> names_;
};

}  // namespace

class RecordReader::Source {
 public:
  Source(const std::string& path, std::size_t chunk_bytes) : input_(path), chunk_(chunk_bytes) {
    while (!knows_header() && !at_end_) read_on();
  }

  std::optional<Record> next() {
    while (!has_record() && !at_end_) read_on();
    if (!has_record()) return std::nullopt;
    Record record = std::move(splitter_->records.front());
    splitter_->records.pop_front();
    return record;
  }
  [[nodiscard]] bool must_wait() const { return !has_record() && !at_end_ && input_.must_wait(); }
  [[nodiscard]] const std::vector<std::string>& header() const {
    return splitter_ ? splitter_->header : none_;
  }
  [[nodiscard]] std::uintmax_t bytes_read() const { return bytes_read_; }
  [[nodiscard]] std::uintmax_t bytes_in_all() const { return input_.size(); }

 private:
  [[nodiscard]] bool has_record() const { return splitter_ && !splitter_->records.empty(); }
  [[nodiscard]] bool knows_header() const { return splitter_ && (!is_csv_ || !splitter_->header.empty()); }

  void read_on() {
    const std::size_t count = input_.read(chunk_);
    bytes_read_ += count;
    at_end_ = count == 0;
    const std::string_view bytes(chunk_.data(), count);
    if (splitter_) {
      splitter_->take(bytes);
    } else {
      begin(bytes);
    }
    if (at_end_ && splitter_) splitter_->end();
    if (!header_checked_ && (!header().empty() || at_end_)) {
      check_header(header());
      header_checked_ = true;
    }
  }

  /// The first character that is no blank tells which kind of list it is.
  void begin(std::string_view bytes) {
    start_ += bytes;
    if (!is_begun_) {
      if (start_.size() < kByteOrderMark.size() && !at_end_) return;
      if (start_.starts_with("\xFF\xFE") || start_.starts_with("\xFE\xFF")) {
        throw Failure("The list is text in UTF-16; save it as UTF-8.");
      }
      if (start_.starts_with(kByteOrderMark)) start_.erase(0, kByteOrderMark.size());
      is_begun_ = true;
    }
    const std::size_t first = std::min(start_.find_first_not_of(kBlanks), start_.size());
    line_ += static_cast<std::size_t>(
        std::count(start_.begin(), start_.begin() + static_cast<std::ptrdiff_t>(first), '\n'));
    start_.erase(0, first);
    if (start_.empty()) return;
    is_csv_ = start_.front() != '{';
    if (is_csv_) {
      splitter_ = std::make_unique<Csv>(line_);
    } else {
      splitter_ = std::make_unique<JsonLines>(line_);
    }
    splitter_->take(std::exchange(start_, {}));
  }

  Input input_;
  std::vector<char> chunk_;
  std::uintmax_t bytes_read_ = 0;
  bool at_end_ = false;
  bool is_begun_ = false;
  bool is_csv_ = false;
  bool header_checked_ = false;
  std::string start_;  // what is read before the kind of list is known
  std::size_t line_ = 1;
  std::unique_ptr<Splitter> splitter_;
  std::vector<std::string> none_;
};

RecordReader::RecordReader(const std::string& path, std::size_t chunk_bytes)
    : source_(new Source(path, chunk_bytes)) {}
RecordReader::~RecordReader() = default;

std::optional<Record> RecordReader::next() {
  return source_->next();
}
bool RecordReader::must_wait() const {
  return source_->must_wait();
}
const std::vector<std::string>& RecordReader::header() const {
  return source_->header();
}
std::uintmax_t RecordReader::bytes_read() const {
  return source_->bytes_read();
}
std::uintmax_t RecordReader::bytes_in_all() const {
  return source_->bytes_in_all();
}

Fields fields_of(const Record& record, const std::vector<std::string>& header) {
  if (!record.fault.empty()) throw Failure(record.fault);
  if (header.empty()) {
    FieldReader reader;
    nlohmann::json::sax_parse(record.json, &reader);
    return std::move(reader.fields);
  }
  if (record.cells.size() != header.size()) {
    throw Failure("There are " + std::to_string(record.cells.size()) + " cells where the header names " +
                  std::to_string(header.size()) + ".");
  }
  Fields fields;
  for (std::size_t column = 0; column < header.size(); ++column) {
    if (!record.cells[column].empty()) fields.emplace(header[column], record.cells[column]);
  }
  return fields;
}

}  // namespace korvex::cli::batch
