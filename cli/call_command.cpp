#include "call/call.hpp"
#include "command_line.hpp"
#include "commands.hpp"

namespace korvex::cli {

int call_command(const std::vector<std::string>& arguments) {
  CommandLine line(
      "korvex call",
      "Calls one of the thirteen exports for every line of JSON and answers with a line of JSON.",
      "A request:  {\"id\": 2, \"export\": \"Korvex_Bit\", \"params\": {\"type\": 3, \"data\": "
      "\"400638133393\"}}\n"
      "A line that is no request gets {\"error\": ...}, and the exit status is 1 at the end.");
  std::vector<std::string> files;
  line.positionals("FILE", files, "files of requests, one a line; standard input when there are none");
  if (!line.parse(arguments)) return 0;
  return call::run(files);
}

}  // namespace korvex::cli
