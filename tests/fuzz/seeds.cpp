// seeds FOLDER <requests: writes every request line that `korvex call` would take as an input of the fuzz
// target of its export, FOLDER/EXPORT/NUMBER.
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "call/request.hpp"
#include "fuzz/input.hpp"

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
    std::filesystem::create_directories(folder / name);
    const auto bytes = korvex::fuzz::write_call(request);
    std::ofstream file(folder / name / std::to_string(number), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    if (!file) return 1;
  }
  return 0;
}
