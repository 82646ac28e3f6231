// The commands: each takes what stands behind its name and returns the exit status, or throws Failure or
// UsageError.
#pragma once

#include <string>
#include <vector>

namespace korvex::cli {

int draw_command(const std::vector<std::string>& arguments);
int batch_command(const std::vector<std::string>& arguments);
int list_command(const std::vector<std::string>& arguments);
int call_command(const std::vector<std::string>& arguments);
int completion_command(const std::vector<std::string>& arguments);

}  // namespace korvex::cli
