// `korvex call`: one call of an export a line, JSON Lines in, JSON Lines out. The exact, scriptable face of
// the thirteen functions.
#pragma once

#include <string>
#include <vector>

namespace korvex::cli::call {

/// Answers every request line of `files` (of standard input when there are none) on standard output, in
/// order. Blank lines are passed over. Returns 0, or 1 when a line was no request or a file could not be read
/// or the answers not written (the last two also with a sentence on standard error).
int run(const std::vector<std::string>& files);

}  // namespace korvex::cli::call
