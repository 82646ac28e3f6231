// seeds FOLDER <requests: writes every request line that `korvex call` would take as an input of the fuzz
// target of its export, FOLDER/EXPORT/NUMBER, and the example of every symbology as a job and as a list.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "call/request.hpp"
#include "fuzz/input.hpp"
#include "symbologies.hpp"

namespace {

/// False when it cannot be written.
bool write(const std::filesystem::path& folder, const std::string& name, std::string_view bytes) {
  std::filesystem::create_directories(folder);
  std::ofstream file(folder / name, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return file.good();
}

/// With its options and a second value for each.
std::string job_of(const korvex::cli::Symbology& symbology) {
  using korvex::cli::call::json_string;
  std::string job = "{\"symbology\": \"" + std::string(symbology.name) + "\"";
  std::string data(symbology.example.data);
  for (const korvex::cli::Option& option : symbology.options) {
    const auto given = std::ranges::find(symbology.example.options, option.name);
    const bool is_given = given != symbology.example.options.end();
    if (!is_given && option.choices.empty()) continue;
    const std::string value(is_given ? *std::next(given) : option.choices.back());
    job += ", " + json_string(option.name.substr(2)) + ": " + json_string(value);
  }
  return job + ", \"data\": " + json_string(data) + ", \"module\": \"0.33mm\", \"dpi\": 300}";
}

bool write_jobs(const std::filesystem::path& folder) {
  std::string list;
  for (const korvex::cli::Symbology& symbology : korvex::cli::symbologies()) {
    const std::string job = job_of(symbology);
    if (!write(folder / "options", std::string(symbology.name), job)) return false;
    list = job + "\n" + list.substr(0, 500);
  }
  return write(folder / "lists", "json", list) &&
         write(folder / "lists", "csv",
               "id,symbology,data,level\r\n1,qr,\"a \"\"b\"\"\nc\",H\r\n\r\n2,qr, x ,\n\"3") &&
         write(folder / "lists", "tsv",
               "\xEF\xBB\xBF"
               "\n id\tdata\r1\t5\" x\n\"\"\t\"y\" z\n");
}

}  // namespace

int main(int count, char** arguments) {
  if (count != 2) return 2;
  const std::filesystem::path folder = arguments[1];
  int number = 0;
  for (std::string line; std::getline(std::cin, line); ++number) {
    korvex::cli::call::Request request;
    try {
      read_request(line, request);
    } catch (const korvex::cli::call::BadLine&) {
      continue;
    }
    std::string name(request.target->name);  // the fuzz target calls the twin too
    if (name.ends_with("_x64")) name.resize(name.size() - 4);
    const auto bytes = korvex::fuzz::write_call(request);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    if (!write(folder / name, std::to_string(number), text)) return 1;
  }
  return write_jobs(folder) ? 0 : 1;
}
