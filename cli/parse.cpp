#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>

#include "commands.hpp"
#include "failure.hpp"

namespace korvex::cli {

bool parse(CLI::App& app, std::vector<std::string> arguments) {
  app.get_formatter()->column_width(34);
  std::ranges::reverse(arguments);  // the parser takes them from the end
  try {
    app.parse(std::move(arguments));
    return true;
  } catch (const CLI::CallForHelp&) {
    std::fputs(app.help().c_str(), stdout);
    return false;
  } catch (const CLI::ParseError& error) {
    throw UsageError(std::string(error.what()) + "; " + app.get_name() + " --help shows what is allowed.");
  }
}

}  // namespace korvex::cli
