#include "call/call.hpp"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <new>
#include <string>
#include <string_view>
#include <system_error>

#include "call/answer.hpp"
#include "call/console.hpp"
#include "call/streams.hpp"

namespace korvex::cli::call {
namespace {

void complain(const std::string& sentence, int error) {
  std::fprintf(stderr, "korvex: %s: %s.\n", sentence.c_str(), std::generic_category().message(error).c_str());
}

/// Everything that stays the same from line to line, and whether all went well so far.
class Session {
 public:
  /// `several_files`: errors name the file too.
  explicit Session(bool several_files) : several_files_(several_files) {}

  void answer_lines(int descriptor, const std::string& name) {
    LineReader lines(descriptor, output_);
    std::string line;
    for (std::int64_t number = 1; output_.error() == 0 && lines.next(line); ++number) {
      if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
      output_.write(answer_line(line, place(number, name)) + "\n");
    }
    if (lines.error() != 0) fail("Cannot read " + name, lines.error());
  }

  void fail(const std::string& sentence, int error) {
    complain(sentence, error);
    ok_ = false;
  }

  /// Writes what is left to write. Returns the exit status.
  int finish() {
    output_.flush();
    if (output_.error() != 0) fail("Cannot write standard output", output_.error());
    return ok_ ? 0 : 1;
  }

 private:
  [[nodiscard]] std::string place(std::int64_t number, const std::string& name) const {
    const std::string line = "line " + std::to_string(number);
    return several_files_ ? line + " of " + name : line;
  }

  std::string answer_line(std::string_view line, const std::string& place) {
    Request request;
    try {
      if (line.size() > LineReader::kLongest) {
        throw BadLine("it has more than the " + std::to_string(LineReader::kLongest) +
                      " bytes that are read");
      }
      read_request(line, request);
      return answer(exports_, request, console_);
    } catch (const BadLine& bad) {
      ok_ = false;
      return refusal(request, place + ": " + bad.what());
    } catch (const std::bad_alloc&) {
      ok_ = false;
      return refusal(request, place + ": there is not enough memory for this call");
    }
  }

  Exports exports_ = load_exports();
  Console console_;
  Output output_{console_.duplicate()};
  bool several_files_;
  bool ok_ = true;
};

}  // namespace

int run(const std::vector<std::string>& files) try {
  Session session(files.size() > 1);
  if (files.empty()) session.answer_lines(standard_input(), "standard input");
  for (const std::string& file : files) {
    const int descriptor = file == "-" ? standard_input() : open_for_reading(file);
    if (descriptor < 0) {
      session.fail("Cannot read " + file, errno);
      continue;
    }
    session.answer_lines(descriptor, file);
    if (file != "-") close_descriptor(descriptor);
  }
  return session.finish();
} catch (const std::exception& error) {
  std::fprintf(stderr, "korvex: %s\n", error.what());
  return 1;
}

}  // namespace korvex::cli::call
