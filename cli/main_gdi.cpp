// The korvex command on Windows: `call`, in front of KORVEX32.dll.
#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
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

}  // namespace
}  // namespace korvex::cli

int main(int argc, char** argv) {
  using namespace korvex::cli;
  try {
    return run(std::vector<std::string>(argv + std::min(argc, 1), argv + argc));
  } catch (const UsageError& error) {
    return complain(error.what(), kExitUsage);
  } catch (const std::bad_alloc&) {
    return complain("There is not enough memory.", kExitFailure);
  } catch (const std::exception& error) {
    return complain(error.what(), kExitFailure);
  }
}
