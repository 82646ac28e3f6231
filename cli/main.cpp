#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>

#include "call/call.hpp"

int main(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);  // a reader that went away is an error to report, not a reason to die unheard
  CLI::App app("x");
  std::vector<std::string> files;
  CLI::App* const call = app.add_subcommand("call", "Call");
  call->add_option("FILE", files);
  app.require_subcommand(1);
  CLI11_PARSE(app, argc, argv);
  return korvex::cli::call::run(files);
}
