// `korvex batch`: what the command line says of a list of jobs.
#include <algorithm>
#include <thread>

#include "batch/batch.hpp"
#include "command_line.hpp"
#include "commands.hpp"
#include "draw_settings.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "formats/formats.hpp"
#include "options.hpp"
#include "words.hpp"

namespace korvex::cli {
namespace {

constexpr std::string_view kUsualName = "{id}-{symbology}.png";
constexpr int kMostThreads = 256;

/// As typed; empty texts were not given.
struct BatchArguments {
  std::optional<std::string> jobs;
  std::string folder;
  std::vector<std::string> names;
  std::string format;
  std::string report;
  bool resume = false;
  std::string threads;
  std::string symbology;
  std::vector<std::string> options;
  std::vector<std::string> ignored;
  DrawSettings settings;
  std::string sheet;
  std::string page = "A4";
  std::string grid = "8x3";
  std::string margins = "10mm";
  std::string gap = "0mm";
  std::string caption;
};

void add_options(CommandLine& line, BatchArguments& arguments) {
  line.positional("JOBS", arguments.jobs, "the list: JSON Lines, or CSV with a header; - is standard input");
  line.option("-o,--output", arguments.folder, {"Output", "write the files into this folder", "DIR"});
  line.repeated("--name", arguments.names,
                {"Output",
                 "names of the files, with fields of the job in braces; the ending says what they are: " +
                     format_names() + "; may be given again ({id}-{symbology}.png)",
                 "TEMPLATE"});
  line.option("--format", arguments.format, {"Output", "what files are whose names do not say", "FORMAT"});
  line.option(
      "--report", arguments.report,
      {"Output",
       "a line of JSON for every job that failed, and for every warning (DIR/failed.jsonl); - is standard "
       "output",
       "FILE"});
  line.flag("--resume", arguments.resume, {"Output", "go on where an interrupted run into the folder ended"});
  line.option("--threads", arguments.threads, {"Output", "work on so many cores (all)", "N"});

  line.option("--symbology", arguments.symbology, {"Jobs", "of jobs that do not say it", "NAME"});
  line.repeated("--set", arguments.options,
                {"Jobs", "an option for every job whose symbology has it, as in level=H", "NAME=VALUE"});
  line.repeated("--ignore", arguments.ignored, {"Jobs", "a field of the list that is no option", "NAME"});
  for (const Setting& setting : all_settings()) add_setting(line, setting, arguments.settings, "Jobs");

  line.option("--sheet", arguments.sheet, {"Sheet", "lay all symbols on pages of this PDF", "FILE"});
  line.option("--page", arguments.page,
              {"Sheet", "A3, A4, A5, A6, letter, legal, or as in 100x150mm (A4)", "SIZE"});
  line.option("--grid", arguments.grid, {"Sheet", "labels on a page: rows x columns (8x3)", "RxC"});
  line.option("--margins", arguments.margins,
              {"Sheet", "of the page, or top, right, bottom and left as in 15,5,15,5mm (10mm)", "LENGTH"});
  line.option("--gap", arguments.gap,
              {"Sheet", "between labels, or between columns and rows as in 2.5,0mm (0mm)", "LENGTH"});
  line.option("--caption", arguments.caption,
              {"Sheet", "a line below every symbol, with fields of the job in braces", "TEMPLATE"});
}

batch::Defaults defaults_of(const BatchArguments& arguments) {
  batch::Defaults defaults{arguments.symbology, arguments.settings, {}, {}};
  for (const std::string& option : arguments.options) {
    const std::size_t equals = option.find('=');
    const std::size_t start = option.starts_with("--") ? 2 : 0;
    defaults.options.emplace_back(option.substr(start, equals - start),
                                  equals == std::string::npos ? "" : option.substr(equals + 1));
  }
  for (std::string name : arguments.ignored) {
    std::ranges::replace(name, '_', '-');
    defaults.passed_over.insert(std::move(name));
  }
  return defaults;
}

/// A sheet is a PDF, whatever its name; one that says something else is a mistake.
void check_sheet_name(const std::string& name) {
  const std::size_t dot = name.find_last_of("./");
  if (dot == std::string::npos || name[dot] != '.') return;
  const Format* const format = find_format(name.substr(dot + 1));
  if (format == nullptr || format->name == "pdf") return;
  throw UsageError("A sheet is a PDF; " + printable(name) + " is not written.");
}

batch::Batch batch_of(const BatchArguments& arguments) {
  if (!arguments.jobs) throw UsageError("No list of jobs is given; korvex batch --help tells more.");
  if (arguments.folder.empty() && arguments.sheet.empty()) {
    throw UsageError("Nothing says where the symbols go; give a folder with -o, or --sheet.");
  }
  batch::Batch batch;
  batch.jobs = *arguments.jobs;
  batch.folder = arguments.folder;
  batch.format = arguments.format;
  batch.defaults = defaults_of(arguments);
  batch.defaults.list_is_standard_input = is_standard_input(batch.jobs);
  batch.resume = arguments.resume;
  const auto use = [&](const batch::Template& names) {
    for (std::string& name : names.names()) batch.defaults.passed_over.insert(std::move(name));
  };
  const std::vector<std::string> usual = {std::string(kUsualName)};
  for (const std::string& name : arguments.names.empty() ? usual : arguments.names) {
    output_of(name, arguments.format);  // whether it says what the file is
    use(batch.names.emplace_back("--name", name));
  }
  if (!arguments.sheet.empty()) {
    check_sheet_name(arguments.sheet);
    if (arguments.resume) {
      throw UsageError("A sheet is written in one go; --resume does not go with --sheet.");
    }
    batch.sheet = {arguments.sheet,
                   batch::sheet_layout(arguments.page, arguments.grid, arguments.margins, arguments.gap),
                   std::nullopt};
    if (!arguments.caption.empty()) use(batch.sheet->caption.emplace("--caption", arguments.caption));
  }
  batch.report = !arguments.report.empty() ? arguments.report
                 : !batch.folder.empty()   ? batch.folder + "/failed.jsonl"
                                           : arguments.sheet + ".failed.jsonl";
  const auto cores = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  batch.threads = static_cast<unsigned>(
      arguments.threads.empty() ? cores : whole_number("--threads", arguments.threads, 1, kMostThreads));
  return batch;
}

}  // namespace

int batch_command(const std::vector<std::string>& arguments) {
  CommandLine line(
      "korvex batch",
      "Draws one symbol for every job of a list.\nA job is a JSON object, or a line of CSV under a header, "
      "with the fields id, symbology, data\nor data-file, and options as in korvex draw without their "
      "dashes.",
      "A job:    {\"id\": \"A-1\", \"symbology\": \"qr\", \"data\": \"https://example.com\", \"level\": "
      "\"H\"}\n"
      "In CSV:   id,symbology,data,level\n"
      "          A-1,qr,https://example.com,H\n"
      "          with commas, semicolons or tabs\n"
      "A job that fails stops nothing; the exit status is 1 then, and the report says why.");
  BatchArguments parsed;
  add_options(line, parsed);
  if (!line.parse(arguments)) return 0;
  batch::Batch batch = batch_of(parsed);
  for (const std::string& argument : arguments) {
    if (argument != "--resume") batch.arguments += " " + printable(argument);
  }
  return batch::run(batch);
}

}  // namespace korvex::cli
