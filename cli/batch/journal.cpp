#include "batch/journal.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <span>
#include <string_view>
#include <utility>

#include "batch/records.hpp"
#include "call/request.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

template <class Number>
void read_number(const Fields& fields, std::string_view name, Number& number) {
  const auto field = fields.find(name);
  if (field == fields.end()) throw Failure("no number");
  const char* const end = field->second.data() + field->second.size();
  const auto [stop, error] = std::from_chars(field->second.data(), end, number);
  if (error != std::errc() || stop != end) throw Failure("no number");
}

Journal journal_of(const std::string& text) {
  const Fields fields = fields_of({.line = 1, .json = text, .cells = {}, .fault = {}}, {});
  Journal journal;
  if (const auto arguments = fields.find("arguments"); arguments != fields.end()) {
    journal.arguments = arguments->second;
  }
  read_number(fields, "records", journal.records);
  read_number(fields, "checksum", journal.checksum);
  read_number(fields, "symbols", journal.symbols);
  read_number(fields, "failed", journal.failed);
  read_number(fields, "report-bytes", journal.report_bytes);
  read_number(fields, "names-bytes", journal.names_bytes);
  return journal;
}

}  // namespace

std::optional<Journal> read_journal(const std::string& path) {
  if (!std::filesystem::exists(path)) return std::nullopt;
  const std::string text = read_file(path);
  try {
    return journal_of(text);
  } catch (const Failure&) {
    throw Failure("The file " + printable(path) +
                  ", which says how far the run came, makes no sense; without --resume all of the list is "
                  "drawn again.");
  }
}

void write_journal(const std::string& path, const Journal& journal) {
  const auto number = [](std::string_view name, auto value) {
    return ", \"" + std::string(name) + "\": " + std::to_string(value);
  };
  write_files(
      {{path, "{\"arguments\": " + call::json_string(journal.arguments) + number("records", journal.records) +
                  number("checksum", journal.checksum) + number("symbols", journal.symbols) +
                  number("failed", journal.failed) + number("report_bytes", journal.report_bytes) +
                  number("names_bytes", journal.names_bytes) + "}\n"}});
}

std::unordered_set<std::string> read_names(const std::string& path, std::uintmax_t bytes) {
  std::unordered_set<std::string> names;
  if (bytes == 0) return names;
  Input input(path);
  std::string name;
  std::array<char, 1 << 16> chunk;
  while (bytes > 0) {
    const std::size_t count = input.read(
        std::span(chunk).first(static_cast<std::size_t>(std::min<std::uintmax_t>(bytes, chunk.size()))));
    if (count == 0)
      throw Failure("The file " + printable(path) + " is shorter than the interrupted run left it.");
    bytes -= count;
    for (const char c : std::span(chunk).first(count)) {
      if (c != '\0') {
        name += c;
      } else {
        names.insert(std::exchange(name, {}));
      }
    }
  }
  return names;
}

}  // namespace korvex::cli::batch
