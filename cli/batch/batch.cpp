#include "batch/batch.hpp"

#include <zlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <deque>
#include <exception>
#include <filesystem>
#include <future>
#include <memory>
#include <utility>

#include "batch/journal.hpp"
#include "batch/progress.hpp"
#include "batch/records.hpp"
#include "batch/workers.hpp"
#include "call/request.hpp"
#include "failure.hpp"
#include "files.hpp"
#include "interruption.hpp"
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

constexpr std::size_t kRecordsPerTask = 16;
constexpr std::size_t kTasksPerThread = 4;  // in the air; more would only take memory
constexpr std::chrono::milliseconds kBetweenJournals{200};
constexpr std::size_t kShownFailures = 5;
constexpr int kExitInterrupted = 130;

/// What became of a record.
struct Outcome {
  std::size_t line = 0;
  std::string id;
  std::size_t symbols = 0;
  std::vector<std::string> files;  // by the names that the run knows them by
  std::optional<DrawnJob> drawn;   // for the sheet
  std::string caption;
  std::vector<std::string> warnings;  // sentences on what was drawn all the same
  std::string error;                  // a sentence; empty when all is well
};

using Outcomes = std::vector<Outcome>;

std::uint32_t checksum_of(const Record& record, std::uint32_t so_far) {
  const auto add = [&](const std::string& text) {
    // The zero at the end counts too: it parts cells.
    so_far = static_cast<std::uint32_t>(
        crc32_z(so_far, reinterpret_cast<const Bytef*>(text.c_str()), text.size() + 1));
  };
  add(record.json);
  for (const std::string& cell : record.cells) add(cell);
  add(record.fault);
  return so_far;
}

/// A line of the report. `kind` is "error" or "warning".
std::string report_line(const Outcome& outcome, std::string_view kind, const std::string& sentence) {
  return "{\"line\": " + std::to_string(outcome.line) + ", \"id\": " + call::json_string(outcome.id) +
         ", \"" + std::string(kind) + "\": " + call::json_string(sentence) + "}\n";
}

class Run {
 public:
  explicit Run(const Batch& batch);
  int all();

 private:
  void pass_over_what_is_done();
  std::vector<Record> next_records();
  Outcomes draw(const std::vector<Record>& records) const;
  void draw(const Record& record, Outcome& outcome) const;
  void draw_all();
  void take(Outcomes outcomes);
  void keep_journal(bool now);
  int finish();
  void say_what_failed() const;
  [[nodiscard]] std::string summary() const;
  void say_where_it_stopped(const std::string& how);

  const Batch& batch_;
  RecordReader reader_;
  std::string journal_path_;  // empty: there is none
  std::string names_path_;
  Journal journal_;
  std::size_t kept_records_ = 0;  // that the journal on the disk knows of
  std::unique_ptr<RunFiles> files_;
  std::unique_ptr<Sheet> sheet_;
  std::unique_ptr<GrowingFile> report_;
  std::unique_ptr<GrowingFile> names_;
  std::vector<std::string> shown_failures_;
  std::chrono::steady_clock::time_point journal_time_ = std::chrono::steady_clock::now();
  std::size_t warned_ = 0;  // records of this run that were drawn with warnings
  std::size_t resumed_symbols_ = 0;
  std::uintmax_t resumed_bytes_ = 0;  // of the list, that were passed over
  Progress progress_;
};

Run::Run(const Batch& batch) : batch_(batch), reader_(batch.jobs) {
  check_names(batch.defaults, reader_.header());
  journal_.arguments = batch.arguments;
  std::error_code error;
  if (std::filesystem::equivalent(batch.report, batch.jobs, error)) {
    throw UsageError("The report would overwrite the list, " + printable(batch.jobs) + ".");
  }
  if (!batch.folder.empty()) {
    std::filesystem::create_directories(batch.folder, error);
    if (error)
      throw Failure("Cannot make the folder " + printable(batch.folder) + ": " + error.message() + ".");
    journal_path_ = batch.folder + "/.korvex-batch.json";
    names_path_ = batch.folder + "/.korvex-batch.names";
    // Runs that end by themselves leave neither a journal nor drafts.
    remove_left_drafts(batch.folder, std::filesystem::exists(journal_path_, error));
  }
  if (batch.resume) pass_over_what_is_done();
  if (!batch.folder.empty()) {
    files_ = std::make_unique<RunFiles>(batch.folder, read_names(names_path_, journal_.names_bytes));
    names_ = std::make_unique<GrowingFile>(names_path_, journal_.names_bytes);
  }
  if (batch.sheet) {
    const std::string folder = std::filesystem::path(batch.sheet->path).parent_path().string();
    remove_left_drafts(folder.empty() ? "." : folder, false);
    sheet_ = std::make_unique<Sheet>(batch.sheet->path, batch.sheet->layout);
  }
  report_ = std::make_unique<GrowingFile>(batch.report, journal_.report_bytes);
  keep_journal(true);
}

void Run::pass_over_what_is_done() {
  const std::optional<Journal> journal = read_journal(journal_path_);
  if (!journal) {
    std::fprintf(stderr, "korvex: No interrupted run is known in %s; beginning with the first record.\n",
                 printable(batch_.folder).c_str());
    return;
  }
  const std::string again = " Without --resume all of the list is drawn again.";
  if (journal->arguments != batch_.arguments) {
    throw UsageError("The interrupted run in " + printable(batch_.folder) + " had other arguments." + again);
  }
  std::uint32_t checksum = 0;
  for (std::size_t record = 0; record < journal->records; ++record) {
    const std::optional<Record> done = reader_.next();
    if (!done) break;
    checksum = checksum_of(*done, checksum);
  }
  if (checksum != journal->checksum) {
    throw UsageError("The first " + with_commas(journal->records) +
                     " records of the list are not those of the interrupted run." + again);
  }
  journal_ = *journal;
  resumed_symbols_ = journal->symbols;
  resumed_bytes_ = reader_.bytes_read();
  std::fprintf(stderr, "korvex: Going on behind record %s.\n", with_commas(journal->records).c_str());
}

std::vector<Record> Run::next_records() {
  std::vector<Record> records;
  while (records.size() < kRecordsPerTask && (records.empty() || !reader_.must_wait())) {
    std::optional<Record> record = reader_.next();
    if (!record) break;
    records.push_back(std::move(*record));
  }
  return records;
}

void Run::draw(const Record& record, Outcome& outcome) const {
  Fields fields = fields_of(record, reader_.header());
  fields.insert_or_assign("line", std::to_string(record.line));
  const auto id = fields.try_emplace("id", std::to_string(record.line)).first;
  outcome.id = id->second;
  const Job job = job_of(fields, batch_.defaults);
  fields.insert_or_assign("symbology", std::string(job.symbology->name));
  DrawnJob drawn = draw_job(job);
  outcome.symbols = drawn.drawing.pictures.size();
  outcome.warnings = drawn.drawing.warnings;
  if (files_) {
    std::vector<Output> outputs;
    for (const Template& name : batch_.names) {
      outputs.push_back(output_of(batch_.folder + "/" + name.file_name(fields), batch_.format));
    }
    outcome.files = files_->write(render(drawn, outputs, job.settings));
  }
  if (batch_.sheet) {
    if (batch_.sheet->caption) outcome.caption = printable(batch_.sheet->caption->text(fields));
    outcome.drawn = std::move(drawn);
  }
}

Outcomes Run::draw(const std::vector<Record>& records) const {
  Outcomes outcomes;
  for (const Record& record : records) {
    Outcome& outcome = outcomes.emplace_back();
    outcome.line = record.line;
    try {
      draw(record, outcome);
    } catch (const std::bad_alloc&) {
      throw;  // the end of the whole run, as the next one is
    } catch (const StorageFailure&) {
      throw;
    } catch (const std::exception& error) {
      outcome.error = error.what();
    }
  }
  return outcomes;
}

void Run::take(Outcomes outcomes) {
  for (Outcome& outcome : outcomes) {
    if (sheet_ && outcome.error.empty()) {
      try {
        sheet_->add(*outcome.drawn, outcome.caption);
      } catch (const StorageFailure&) {
        throw;
      } catch (const Failure& failure) {
        outcome.error = failure.what();
      }
    }
    for (const std::string& name : outcome.files) names_->add(name + '\0');
    if (outcome.error.empty()) {
      journal_.symbols += outcome.symbols;
      for (const std::string& warning : outcome.warnings)
        report_->add(report_line(outcome, "warning", warning));
      if (!outcome.warnings.empty()) ++warned_;
    } else {
      ++journal_.failed;
      report_->add(report_line(outcome, "error", outcome.error));
      if (shown_failures_.size() < kShownFailures) {
        shown_failures_.push_back("line " + std::to_string(outcome.line) + ": " + outcome.error);
      }
    }
  }
}

void Run::keep_journal(bool now) {
  const auto time = std::chrono::steady_clock::now();
  if (journal_path_.empty() || (!now && time - journal_time_ < kBetweenJournals)) return;
  journal_time_ = time;
  report_->flush();
  names_->flush();
  journal_.report_bytes = report_->bytes();
  journal_.names_bytes = names_->bytes();
  write_journal(journal_path_, journal_);
  kept_records_ = journal_.records;
}

void Run::draw_all() {
  struct Task {
    std::future<Outcomes> outcomes;
    std::size_t records = 0;
    std::uint32_t checksum = 0;  // of all records up to its last
  };
  Workers workers(batch_.threads);
  std::deque<Task> tasks;
  std::uint32_t checksum = journal_.checksum;
  bool at_end = false;
  for (;;) {
    while (!at_end && !is_interrupted() && tasks.size() < kTasksPerThread * batch_.threads) {
      if (reader_.must_wait()) {
        if (!tasks.empty()) break;  // what is under way first
        keep_journal(true);
      }
      std::vector<Record> records = next_records();
      at_end = records.empty();
      if (at_end) break;
      for (const Record& record : records) checksum = checksum_of(record, checksum);
      const std::size_t count = records.size();
      tasks.push_back(
          {workers.run([this, records = std::move(records)] { return draw(records); }), count, checksum});
    }
    if (tasks.empty()) return;
    Task task = std::move(tasks.front());
    tasks.pop_front();
    take(task.outcomes.get());
    journal_.records += task.records;
    journal_.checksum = task.checksum;
    keep_journal(false);
    const std::uintmax_t all = reader_.bytes_in_all();
    progress_.show(journal_.symbols - resumed_symbols_, reader_.bytes_read() - resumed_bytes_,
                   all == 0 ? 0 : all - resumed_bytes_);
  }
}

int Run::all() try {
  try {
    draw_all();
  } catch (const Interrupted&) {  // somebody waited for a pipe; what was not taken is drawn again
  }
  return finish();
} catch (const std::exception&) {  // such as a full disk
  try {
    keep_journal(true);
  } catch (const std::exception&) {  // then the last one that could be kept stays
  }
  say_where_it_stopped("Stopped");
  throw;
}

void Run::say_what_failed() const {
  for (const std::string& failure : shown_failures_) std::fprintf(stderr, "korvex: %s\n", failure.c_str());
  const std::size_t shown = shown_failures_.size();
  if (journal_.failed > shown) {
    std::fprintf(stderr, "korvex: and %s more, in %s.\n", with_commas(journal_.failed - shown).c_str(),
                 batch_.report == "-" ? "the report" : printable(batch_.report).c_str());
  }
}

std::string Run::summary() const {
  const double seconds = progress_.seconds();
  const auto rate = static_cast<double>(journal_.symbols - resumed_symbols_) / std::max(seconds, 1e-3);
  std::string text =
      with_commas(journal_.symbols) + (journal_.symbols == 1 ? " symbol" : " symbols") + " drawn";
  const auto add_lines = [&text](std::size_t count, std::string_view what) {
    if (count > 0)
      text += ", " + with_commas(count) + (count == 1 ? " line " : " lines ") + std::string(what);
  };
  add_lines(warned_, "with warnings");
  add_lines(journal_.failed, "failed");
  if (warned_ + journal_.failed > 0 && batch_.report != "-") text += " (" + printable(batch_.report) + ")";
  return text + ", in " + decimal(seconds, 2) + " s (" + with_commas(static_cast<std::uintmax_t>(rate)) +
         " a second)";
}

void Run::say_where_it_stopped(const std::string& how) {
  progress_.clear();
  const std::size_t records = journal_path_.empty() ? journal_.records : kept_records_;
  std::fprintf(stderr, "korvex: %s behind record %s; %s.%s\n", how.c_str(), with_commas(records).c_str(),
               summary().c_str(), journal_path_.empty() ? "" : " --resume goes on there.");
}

int Run::finish() {
  progress_.clear();
  report_->flush();
  say_what_failed();
  if (is_interrupted()) {
    keep_journal(true);
    say_where_it_stopped("Interrupted");
    return kExitInterrupted;
  }
  std::string pages;
  if (sheet_) {
    sheet_->finish();
    pages = ", on " + with_commas(static_cast<std::uintmax_t>(sheet_->pages())) +
            (sheet_->pages() == 1 ? " page" : " pages");
  }
  std::error_code error;
  for (const std::string& path : {journal_path_, names_path_}) {
    if (!path.empty()) std::filesystem::remove(path, error);
  }
  std::fprintf(stderr, "korvex: %s%s.\n", summary().c_str(), pages.c_str());
  return journal_.failed > 0 ? kExitFailure : 0;
}

}  // namespace

int run(const Batch& batch) try {
  const Interruptible interruptible;
  return Run(batch).all();
} catch (const Interrupted&) {
  std::fputs("korvex: Interrupted before the first record.\n", stderr);
  return kExitInterrupted;
}

}  // namespace korvex::cli::batch
