// The korvex command on Windows: `call`, in front of KORVEX32.dll.
#include <windows.h>

#include <cstddef>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "commands.hpp"
#include "failure.hpp"
#include "korvex/korvex32.h"

namespace korvex::cli {
namespace {

int run(std::vector<std::string> arguments) {
  const std::string first = arguments.empty() ? "--help" : arguments.front();
  if (first == "--version") {
    std::printf("korvex %d.%d.%d\n", KORVEX_VERSION_MAJOR, KORVEX_VERSION_MINOR, KORVEX_VERSION_PATCH);
    return 0;
  }
  if (first == "--help" || first == "-h" || first == "help") {
    std::printf("Usage: korvex call [FILE]...\n\nkorvex call --help tells more.\n");
    return arguments.empty() ? kExitUsage : 0;
  }
  if (first != "call") throw UsageError("There is only the command \"call\" on Windows.");
  arguments.erase(arguments.begin());
  return call_command(std::move(arguments));
}

int complain(const char* sentence, int status) {
  std::fprintf(stderr, "korvex: %s\n", sentence);
  return status;
}

std::string utf8(const std::wstring& text) {
  const auto convert = [&](char* to, int size) {
    return WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), to, size, nullptr,
                               nullptr);
  };
  std::string bytes(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
  convert(bytes.data(), static_cast<int>(bytes.size()));
  return bytes;
}

/// A console window shows what is written as UTF-8, while this lives.
class Utf8Console {
 public:
  Utf8Console() { SetConsoleOutputCP(CP_UTF8); }
  ~Utf8Console() { SetConsoleOutputCP(before_); }
  Utf8Console(const Utf8Console&) = delete;
  Utf8Console& operator=(const Utf8Console&) = delete;

 private:
  UINT before_ = GetConsoleOutputCP();
};

}  // namespace
}  // namespace korvex::cli

// Its arguments are UTF-16; inside all text is UTF-8.
extern "C" int wmain(int argc, wchar_t** argv) {
  using namespace korvex::cli;
  const Utf8Console console;
  try {
    std::vector<std::string> arguments;
    for (int index = 1; index < argc; ++index) arguments.push_back(utf8(argv[index]));
    return run(std::move(arguments));
  } catch (const UsageError& error) {
    return complain(error.what(), kExitUsage);
  } catch (const std::bad_alloc&) {
    return complain("There is not enough memory.", kExitFailure);
  } catch (const std::exception& error) {
    return complain(error.what(), kExitFailure);
  }
}
