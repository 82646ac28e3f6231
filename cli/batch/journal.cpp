#include "batch/journal.hpp"

#include <filesystem>
#include <nlohmann/json.hpp>

#include "failure.hpp"
#include "files.hpp"
#include "words.hpp"

namespace korvex::cli::batch {

std::optional<Journal> read_journal(const std::string& path) {
  if (!std::filesystem::exists(path)) return std::nullopt;
  try {
    const auto object = nlohmann::json::parse(read_file(path));
    Journal journal;
    object.at("arguments").get_to(journal.arguments);
    object.at("records").get_to(journal.records);
    object.at("checksum").get_to(journal.checksum);
    object.at("symbols").get_to(journal.symbols);
    object.at("failed").get_to(journal.failed);
    object.at("report_bytes").get_to(journal.report_bytes);
    return journal;
  } catch (const nlohmann::json::exception&) {
    throw Failure("The file " + printable(path) +
                  ", which says how far the run came, makes no sense; without "
                  "--resume all of the list is drawn again.");
  }
}

void write_journal(const std::string& path, const Journal& journal) {
  const nlohmann::ordered_json object = {
      {"arguments", journal.arguments}, {"records", journal.records}, {"checksum", journal.checksum},
      {"symbols", journal.symbols},     {"failed", journal.failed},   {"report_bytes", journal.report_bytes}};
  write_files({{path, object.dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n"}});
}

}  // namespace korvex::cli::batch
