#include <CLI/CLI.hpp>

#include "call/call.hpp"
#include "commands.hpp"

namespace korvex::cli {

int call_command(const std::vector<std::string>& arguments) {
  CLI::App app("Calls one of the thirteen exports for every line of JSON and answers with a line of JSON.",
               "korvex call");
  std::vector<std::string> files;
  app.add_option("FILE", files, "files of requests, one a line; standard input when there are none");
  app.footer(
      "A request:  {\"id\": 2, \"export\": \"Korvex_Bit\", \"params\": {\"type\": 3, \"data\": "
      "\"400638133393\"}}\n"
      "A line that is no request gets {\"error\": ...}, and the exit status is 1 at the end.");
  if (!parse(app, arguments)) return 0;
  return call::run(files);
}

}  // namespace korvex::cli
