// The fuzz target of jobs: any JSON object as a job of a list, its options as they may be. What cannot be
// drawn gets a sentence; what is drawn is drawn again alike, in every format that is not too large to look
// at.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "batch/job_fields.hpp"
#include "batch/records.hpp"
#include "batch/template.hpp"
#include "failure.hpp"
#include "formats/terminal.hpp"

namespace {

using namespace korvex::cli;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "options: %s\n", what);
  std::abort();
}

/// The pictures in all formats, one after the other; a sentence when there are none.
std::string drawn(const batch::Fields& fields) try {
  constexpr double kMostModules = 1 << 20;
  constexpr int kMostPixels = 4;  // of a module
  const Job job = batch::job_of(fields, {});
  const DrawnJob drawn = draw_job(job);
  std::string all;
  for (const Picture& picture : drawn.drawing.pictures) {
    const Box whole = bounds(picture);
    require(std::isfinite(whole.width) && std::isfinite(whole.height) && whole.width > 0 && whole.height > 0,
            "a picture without a size");
    const bool is_large =
        whole.width * whole.height > kMostModules || drawn.style.module.pixels > kMostPixels;
    if (!is_large) all += terminal_lines(picture, drawn.style, {});
    for (const Format& format : all_formats()) {
      const bool takes_time =
          format.name == "pdf" || format.name == "eps";  // which also tell when they were made
      if (!is_large && !takes_time) all += format.render(picture, drawn.style);
    }
  }
  require(!drawn.drawing.pictures.empty(), "a drawing without pictures");
  return all + batch::Template("--name", "{id}{data}.png").file_name(fields);
} catch (const Failure& failure) {
  return failure.what();
} catch (const UsageError& error) {
  return error.what();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  batch::Record record;
  record.json.assign(reinterpret_cast<const char*>(bytes), size);
  batch::Fields fields;
  try {
    fields = batch::fields_of(record, {});
  } catch (const Failure&) {
    return 0;
  }
  fields.erase("data-file");  // no file of this computer is meant
  const std::string first = drawn(fields);
  require(!first.empty(), "neither a picture nor a sentence");
  require(first == drawn(fields), "the same job gives another picture");
  return 0;
}
