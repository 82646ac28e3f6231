#include "batch/batch.hpp"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <deque>
#include <exception>
#include <filesystem>
#include <fstream>
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
#include "words.hpp"

namespace korvex::cli::batch {
namespace {

constexpr std::size_t kRecordsPerTask = 16;
constexpr std::size_t kTasksPerThread = 4;  // in the air; more would only take memory
constexpr std::chrono::milliseconds kBetweenJournals{200};
constexpr std::size_t kShownFailures = 5;
constexpr int kExitInterrupted = 130;

std::atomic<bool> interrupted = false;
static_assert(std::atomic<bool>::is_always_lock_free);

/// While it lives, Ctrl-C asks for an end instead of making one.
class Interruptible {
 public:
  Interruptible() {
    interrupted = false;
    const auto ask = [](int) { interrupted = true; };
    for (std::size_t i = 0; i < kSignals.size(); ++i) old_[i] = std::signal(kSignals[i], ask);
  }
  ~Interruptible() {
    for (std::size_t i = 0; i < kSignals.size(); ++i) std::signal(kSignals[i], old_[i]);
  }
  Interruptible(const Interruptible&) = delete;
  Interruptible& operator=(const Interruptible&) = delete;

 private:
  static constexpr std::array kSignals = {SIGINT, SIGTERM};
  std::array<void (*)(int), kSignals.size()> old_{};
};

/// What became of a record.
struct Outcome {
  std::size_t line = 0;
  std::string id;
  std::size_t symbols = 0;
  std::optional<DrawnJob> drawn;  // for the sheet
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
  return so_far;
}

/// The report: a line of JSON for every record that failed, and for every warning.
class Report {
 public:
  /// Goes on behind the first `bytes`. Throws Failure.
  Report(const std::string& path, std::uintmax_t bytes) : path_(path), bytes_(bytes) {
    std::error_code error;
    if (bytes > 0) std::filesystem::resize_file(path, bytes, error);
    if (!error) file_.open(path, std::ios::binary | (bytes > 0 ? std::ios::app : std::ios::trunc));
    check();
  }
  /// `kind` is "error" or "warning".
  void add(const Outcome& outcome, std::string_view kind, const std::string& sentence) {
    const std::string text = "{\"line\": " + std::to_string(outcome.line) +
                             ", \"id\": " + call::json_string(outcome.id) + ", \"" + std::string(kind) +
                             "\": " + call::json_string(sentence) + "}\n";
    file_ << text;
    bytes_ += text.size();
  }
  /// Everything is written. Throws Failure.
  void flush() {
    file_.flush();
    check();
  }
  [[nodiscard]] std::uintmax_t bytes() const { return bytes_; }

 private:
  void check() const {
    if (!file_) throw Failure("Cannot write the report " + printable(path_) + ".");
  }

  std::string path_;
  std::uintmax_t bytes_;
  std::ofstream file_;
};

class Run {
 public:
  explicit Run(const Batch& batch);
  int all();

 private:
  void pass_over_what_is_done();
  std::vector<Record> next_records();
  Outcomes draw(const std::vector<Record>& records) const;
  void draw(const Record& record, Outcome& outcome) const;
  void take(Outcomes outcomes);
  void keep_journal(bool now);
  int finish();
  void say_what_failed() const;

  const Batch& batch_;
  RecordReader reader_;
  std::string journal_path_;
  Journal journal_;
  std::unique_ptr<RunFiles> files_;
  std::unique_ptr<Sheet> sheet_;
  std::unique_ptr<Report> report_;
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
  if (!batch.folder.empty()) {
    std::error_code error;
    std::filesystem::create_directories(batch.folder, error);
    if (error)
      throw Failure("Cannot make the folder " + printable(batch.folder) + ": " + error.message() + ".");
    files_ = std::make_unique<RunFiles>(batch.folder);
    journal_path_ = batch.folder + "/.korvex-batch.json";
  }
  if (batch.resume) {
    pass_over_what_is_done();
  } else if (!journal_path_.empty()) {
    std::error_code error;
    std::filesystem::remove(journal_path_, error);  // an earlier run that was interrupted is given up
  }
  if (batch.sheet) sheet_ = std::make_unique<Sheet>(batch.sheet->path, batch.sheet->layout);
  report_ = std::make_unique<Report>(batch.report, journal_.report_bytes);
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
  while (records.size() < kRecordsPerTask) {
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
    files_->write(render(drawn, outputs, job.settings));
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
      throw;  // of the whole run
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
      } catch (const Failure& failure) {
        outcome.error = failure.what();
      }
    }
    if (outcome.error.empty()) {
      journal_.symbols += outcome.symbols;
      for (const std::string& warning : outcome.warnings) report_->add(outcome, "warning", warning);
      if (!outcome.warnings.empty()) ++warned_;
    } else {
      ++journal_.failed;
      report_->add(outcome, "error", outcome.error);
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
  journal_.report_bytes = report_->bytes();
  write_journal(journal_path_, journal_);
}

int Run::all() {
  struct Task {
    std::future<Outcomes> outcomes;
    std::size_t records = 0;
    std::uint32_t checksum = 0;  // of all records up to its last
  };
  const Interruptible interruptible;
  Workers workers(batch_.threads);
  std::deque<Task> tasks;
  std::uint32_t checksum = journal_.checksum;
  bool at_end = false;
  for (;;) {
    while (!at_end && !interrupted && tasks.size() < kTasksPerThread * batch_.threads) {
      std::vector<Record> records = next_records();
      at_end = records.empty();
      if (at_end) break;
      for (const Record& record : records) checksum = checksum_of(record, checksum);
      const std::size_t count = records.size();
      tasks.push_back(
          {workers.run([this, records = std::move(records)] { return draw(records); }), count, checksum});
    }
    if (tasks.empty()) break;
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
  return finish();
}

void Run::say_what_failed() const {
  for (const std::string& failure : shown_failures_) std::fprintf(stderr, "korvex: %s\n", failure.c_str());
  const std::size_t shown = shown_failures_.size();
  if (journal_.failed > shown) {
    std::fprintf(stderr, "korvex: and %s more, in %s.\n", with_commas(journal_.failed - shown).c_str(),
                 printable(batch_.report).c_str());
  }
}

int Run::finish() {
  progress_.clear();
  report_->flush();
  say_what_failed();
  const double seconds = progress_.seconds();
  const auto rate = static_cast<double>(journal_.symbols - resumed_symbols_) / std::max(seconds, 1e-3);
  std::string summary =
      with_commas(journal_.symbols) + (journal_.symbols == 1 ? " symbol" : " symbols") + " drawn";
  if (warned_ > 0) {
    summary += ", " + with_commas(warned_) + (warned_ == 1 ? " line" : " lines") + " with warnings";
    if (journal_.failed == 0) summary += " (" + printable(batch_.report) + ")";
  }
  if (journal_.failed > 0) {
    summary += ", " + with_commas(journal_.failed) + (journal_.failed == 1 ? " line" : " lines") +
               " failed (" + printable(batch_.report) + ")";
  }
  summary +=
      ", in " + decimal(seconds, 2) + " s (" + with_commas(static_cast<std::uintmax_t>(rate)) + " a second)";
  if (interrupted) {
    keep_journal(true);
    std::fprintf(stderr, "korvex: Interrupted behind record %s; %s.%s\n",
                 with_commas(journal_.records).c_str(), summary.c_str(),
                 journal_path_.empty() ? "" : " --resume goes on there.");
    return kExitInterrupted;
  }
  if (sheet_) {
    sheet_->finish();
    summary += ", on " + with_commas(static_cast<std::uintmax_t>(sheet_->pages())) +
               (sheet_->pages() == 1 ? " page" : " pages");
  }
  std::error_code error;
  if (!journal_path_.empty()) std::filesystem::remove(journal_path_, error);
  std::fprintf(stderr, "korvex: %s.\n", summary.c_str());
  return journal_.failed > 0 ? kExitFailure : 0;
}

}  // namespace

int run(const Batch& batch) {
  return Run(batch).all();
}

}  // namespace korvex::cli::batch
