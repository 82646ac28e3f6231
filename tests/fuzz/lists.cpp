// The fuzz target of lists of jobs: any bytes as a list, read in chunks of two sizes. The records must be the
// same, and each becomes fields or a sentence.
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "batch/records.hpp"
#include "failure.hpp"

namespace {

using namespace korvex::cli::batch;
using korvex::cli::Failure;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "lists: %s\n", what);
  std::abort();
}

/// What a list says, or the sentence that it cannot be read.
struct List {
  std::vector<std::string> header;
  std::vector<Record> records;
  std::string error;

  List(const std::string& path, std::size_t chunk_bytes) {
    try {
      RecordReader reader(path, chunk_bytes);
      header = reader.header();
      while (std::optional<Record> record = reader.next()) records.push_back(*std::move(record));
    } catch (const Failure& failure) {
      error = failure.what();
    }
  }
};

bool same(const Record& a, const Record& b) {
  return a.line == b.line && a.json == b.json && a.cells == b.cells && a.fault == b.fault;
}

std::string written(const std::uint8_t* bytes, std::size_t size) {
  static const int file = memfd_create("list", 0);
  require(ftruncate(file, 0) == 0 && pwrite(file, bytes, size, 0) == static_cast<ssize_t>(size),
          "no file to read");
  return "/proc/self/fd/" + std::to_string(file);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  constexpr std::size_t kWhole = std::size_t{1} << 16;
  constexpr std::size_t kMostLittle = 5;
  const std::string path = written(bytes, size);
  const List whole(path, kWhole);
  const List pieces(path, 1 + size % kMostLittle);
  require(whole.error == pieces.error, "another end when read in pieces");
  require(whole.header == pieces.header && std::ranges::equal(whole.records, pieces.records, same),
          "other records when read in pieces");
  std::size_t line = 0;
  for (const Record& record : whole.records) {
    require(record.line > line || (record.line == line && record.json.empty()), "lines that go back");
    line = record.line;
    require(line <= 1 + size, "more lines than there are");
    try {
      (void)fields_of(record, whole.header);
    } catch (const Failure& failure) {
      require(failure.what()[0] != '\0', "a failure without a sentence");
    }
  }
  return 0;
}
