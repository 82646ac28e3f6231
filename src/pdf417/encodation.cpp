#include "pdf417/encodation.hpp"

#include <algorithm>

#include "pdf417/compaction.hpp"
#include "pdf417/run_classifier.hpp"

namespace korvex::pdf417 {
namespace {

// Codewords that tell the decoder of a mode. ISO/IEC 15438.
constexpr unsigned kTextLatch = 900;
constexpr unsigned kByteLatch = 901;
constexpr unsigned kNumericLatch = 902;
constexpr unsigned kByteShift = 913;       // for one byte out of text compaction
constexpr unsigned kByteLatchSixes = 924;  // a number of bytes that six divides

/// Encodes runs one behind the other, with what the decoder knows meanwhile.
class Encodation {
 public:
  Encodation(const Request& request, int room, CodewordBuffer& codewords, RunLog* log)
      : data_(request.data),
        codewords_(codewords),
        capacity_(codewords.count() + room),
        // Decoders of PDF417 begin in text compaction, those of MicroPDF417 in byte compaction.
        mode_(request.kind == Kind::micro ? Mode::byte : Mode::text),
        log_(log) {}

  [[nodiscard]] int room() const { return capacity_ - codewords_.count(); }

  /// Returns the number of bytes that fitted.
  int append_runs() {
    bool cut_short = false;
    while (!cut_short) {
      const NextRun run = next_run(data_, at_, mode_, room());
      if (run.length == 0) break;
      const int taken = append(run);
      cut_short = taken < run.length;
    }
    return at_;
  }

  /// Returns the number of bytes that fitted.
  int append_as_bytes() {
    const int length = std::min(static_cast<int>(data_.size()), byte_limit(room()));
    if (length == 0) return 0;
    mode_ = Mode::byte;  // latched even for a single byte: no shift
    return append({Mode::byte, length});
  }

 private:
  int append(NextRun run) {
    const int first_codeword = codewords_.count();
    const auto bytes = data_.subspan(static_cast<std::size_t>(at_), static_cast<std::size_t>(run.length));
    int taken = run.length;
    switch (run.mode) {
      case Mode::text:
        taken = append_text(run.length);
        break;
      case Mode::byte:
        append_bytes(bytes);
        break;
      case Mode::numeric:
        codewords_.push(kNumericLatch);
        compact_digits(bytes, codewords_);
        mode_ = Mode::numeric;
        break;
    }
    if (log_ != nullptr) {
      log_->push_back({run.mode, at_, taken, first_codeword, codewords_.count() - first_codeword});
    }
    at_ += taken;
    return taken;
  }

  int append_text(int length) {
    if (mode_ != Mode::text) {
      codewords_.push(kTextLatch);
      sub_mode_ = SubMode::alpha;
    }
    mode_ = Mode::text;
    return compact_text(data_, at_, at_ + length, room(), sub_mode_, codewords_);
  }

  void append_bytes(std::span<const std::uint8_t> bytes) {
    if (bytes.size() == 1 && mode_ == Mode::text) {
      codewords_.push(kByteShift);
    } else {
      codewords_.push(bytes.size() % 6 == 0 ? kByteLatchSixes : kByteLatch);
      mode_ = Mode::byte;
    }
    compact_bytes(bytes, codewords_);
  }

  std::span<const std::uint8_t> data_;
  int at_ = 0;
  CodewordBuffer& codewords_;
  int capacity_;
  Mode mode_;
  SubMode sub_mode_ = SubMode::alpha;
  RunLog* log_;
};

}  // namespace

int encode_data(const Request& request, int room, CodewordBuffer& codewords, RunLog* log) {
  const int size = static_cast<int>(request.data.size());
  if (request.byte_only) return Encodation(request, room, codewords, log).append_as_bytes();

  const int before = codewords.count();
  const int taken = Encodation(request, room, codewords, log).append_runs();
  if (taken == size || size > byte_limit(room)) return taken;
  codewords.truncate(before);
  if (log != nullptr) log->clear();
  return Encodation(request, room, codewords, log).append_as_bytes();
}

}  // namespace korvex::pdf417
