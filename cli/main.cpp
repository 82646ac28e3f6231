// The korvex command: which of its commands is meant, and what an error looks like.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <exception>
#include <iterator>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include "commands.hpp"
#include "failure.hpp"
#include "korvex/korvex32.h"
#include "words.hpp"

namespace korvex::cli {
namespace {

struct Command {
  std::string_view name;
  std::string_view usage;
  std::string_view help;
  int (*run)(const std::vector<std::string>& arguments);
};

constexpr std::array kCommands = {
    Command{"draw", "draw SYMBOLOGY [DATA] [-o FILE]...", "draw a symbol into files or in the terminal",
            draw_command},
    Command{"batch", "batch JOBS -o DIR", "draw a symbol for every line of a list", batch_command},
    Command{"list", "list [--json]", "show every symbology, what it takes and its options", list_command},
    Command{"call", "call [FILE]...", "call the library's exports, JSON Lines in and out", call_command},
    Command{"completion", "completion SHELL", "print what makes bash or zsh complete these words",
            completion_command},
};

void print_help() {
  std::printf("Korvex draws barcode symbols.\n\nUsage: korvex COMMAND ...\n\nCommands:\n");
  for (const Command& command : kCommands) {
    std::printf("  %-36s %s\n", command.usage.data(), command.help.data());
  }
  std::printf(
      "\nOptions:\n  %-36s %s\n  %-36s %s\n\nkorvex COMMAND --help tells more, and so does korvex draw "
      "SYMBOLOGY "
      "--help.\n",
      "-h, --help", "print this help", "--version", "print the version");
}

const Command& find_command(std::string_view name) {
  const auto found = std::ranges::find(kCommands, name, &Command::name);
  if (found != kCommands.end()) return *found;
  std::vector<std::string_view> names;
  std::ranges::transform(kCommands, std::back_inserter(names), &Command::name);
  const std::string_view meant = nearest(name, names);
  throw UsageError("There is no command \"" + printable(name) + "\"; " +
                   (meant.empty() ? "there are " + joined(names, "and") + "."
                                  : "did you mean " + std::string(meant) + "?"));
}

int run(const std::vector<std::string>& arguments) {
  if (arguments.empty()) throw UsageError("No command is given; korvex --help shows them.");
  const std::string& first = arguments.front();
  if (first == "--help" || first == "-h" || first == "help") {
    print_help();
    return 0;
  }
  if (first == "--version") {
    std::printf("korvex %d.%d.%d\n", KORVEX_VERSION_MAJOR, KORVEX_VERSION_MINOR, KORVEX_VERSION_PATCH);
    return 0;
  }
  return find_command(first).run({arguments.begin() + 1, arguments.end()});
}

/// What the command printed may still wait to be written. Returns the exit status.
int finish(int status) {
  if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return status;
  throw Failure("Cannot write standard output: " + std::generic_category().message(errno) + ".");
}

/// Where a standard stream is closed, the next file that is opened would become it. What is put in its place
/// can neither be read nor written, so that whoever needs the stream is told.
void keep_places_of_standard_streams() {
  for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(stream, F_GETFD) >= 0 || errno != EBADF) continue;
    (void)!open("/dev/null",
                stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);  // takes the lowest free place, this one
  }
}

int complain(const char* sentence, int status) {
  std::fprintf(stderr, "korvex: %s\n", sentence);
  return status;
}

}  // namespace
}  // namespace korvex::cli

int main(int argc, char** argv) {
  using namespace korvex::cli;
  keep_places_of_standard_streams();
  // A reader that went away, and a file that is too large, are errors to report, not reasons to die unheard.
  for (const int signal : {SIGPIPE, SIGXFSZ}) std::signal(signal, SIG_IGN);
  try {
    return finish(run(std::vector<std::string>(argv + std::min(argc, 1), argv + argc)));
  } catch (const UsageError& error) {
    return complain(error.what(), kExitUsage);
  } catch (const std::bad_alloc&) {
    return complain("There is not enough memory.", kExitFailure);
  } catch (const std::exception& error) {
    return complain(error.what(), kExitFailure);
  }
}
