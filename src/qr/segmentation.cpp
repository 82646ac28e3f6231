#include "qr/segmentation.hpp"

#include <algorithm>
#include <optional>

namespace korvex::qr {
namespace {

/// Characters of one class that follow each other.
struct Run {
  Mode mode;
  std::int16_t length;   // bytes
  std::int16_t doubled;  // of these, characters that an alphanumeric segment writes twice
};

enum class ByteClass : std::uint8_t { numeric, alphanumeric, byte, kanji_lead, last_kanji_lead };

constexpr std::array<ByteClass, 256> make_byte_classes() {
  std::array<ByteClass, 256> classes{};
  classes.fill(ByteClass::byte);
  for (unsigned b = '0'; b <= '9'; ++b) classes[b] = ByteClass::numeric;
  for (unsigned b = 'A'; b <= 'Z'; ++b) classes[b] = ByteClass::alphanumeric;
  for (const unsigned char b : std::string_view(" $%*+-./:")) classes[b] = ByteClass::alphanumeric;
  for (unsigned b = 0x81; b <= 0x9F; ++b) classes[b] = ByteClass::kanji_lead;
  for (unsigned b = 0xE0; b <= 0xEA; ++b) classes[b] = ByteClass::kanji_lead;
  classes[0xEB] = ByteClass::last_kanji_lead;  // the 13 bits end at 0xEBBF
  return classes;
}
constexpr std::array<ByteClass, 256> kByteClasses = make_byte_classes();
// Where "%" separates element strings.
constexpr std::array<ByteClass, 256> kGs1ByteClasses = [] {
  std::array<ByteClass, 256> classes = kByteClasses;
  classes[kSeparator] = ByteClass::alphanumeric;
  return classes;
}();

Mode character_mode(const std::array<ByteClass, 256>& classes, std::span<const std::uint8_t> bytes) {
  const ByteClass lead = classes[bytes[0]];
  if (lead <= ByteClass::byte) return static_cast<Mode>(lead);
  if (bytes.size() < 2) return Mode::byte;
  const std::uint8_t trail = bytes[1];
  const int last_trail = lead == ByteClass::last_kanji_lead ? 0xBF : 0xFC;
  return trail >= 0x40 && trail <= last_trail && trail != 0x7F ? Mode::kanji : Mode::byte;
}

/// The runs of a stream, at most one a character.
struct RunList {
  std::array<Run, kMostCharacters> runs;  // the first `count` of them
  int count = 0;
};

/// False when there are more characters than a stream may have.
bool find_runs(const Options& options, std::span<const std::uint8_t> data, RunList& list) {
  const auto& classes = percent_separates(options) ? kGs1ByteClasses : kByteClasses;
  int characters = 0;
  for (std::size_t at = 0; at < data.size();) {
    const Mode mode = character_mode(classes, data.subspan(at));
    const std::size_t begin = at;
    const std::size_t step = mode == Mode::kanji ? 2 : 1;
    do {
      if (++characters > kMostCharacters) return false;
      at += step;
    } while (at < data.size() && character_mode(classes, data.subspan(at)) == mode);
    const int doubled =
        mode == Mode::alphanumeric ? doubled_characters(options, data.subspan(begin, at - begin)) : 0;
    list.runs[static_cast<std::size_t>(list.count++)] = {mode, static_cast<std::int16_t>(at - begin),
                                                         static_cast<std::int16_t>(doubled)};
  }
  return true;
}

/// The mode that can pack both.
constexpr Mode merged(Mode a, Mode b) {
  const Mode later = std::max(a, b);
  return later == Mode::kanji && a != b ? Mode::byte : later;
}

/// Takes the runs of a stream one after the other and merges neighbours where that saves bits. Never more
/// than three runs wait for their decision; each decision leaves two.
class RunMerger {
 public:
  RunMerger(const PerMode& header_bits, SegmentList& segments)
      : header_bits_(header_bits), segments_(segments) {}

  /// Takes a run; `next` is the mode of the run after it, empty at the end of the data.
  void take(const Run& run, std::optional<Mode> next) {
    waiting_[static_cast<std::size_t>(count_++)] = make(run.mode, run.length, run.doubled);
    if (count_ == 3) decide_on_three(next);
    if (!next) decide_on_rest();
  }

 private:
  struct Waiting {
    Mode mode = Mode::byte;
    int length = 0;   // bytes
    int doubled = 0;  // characters that an alphanumeric segment writes twice
    int bits = 0;     // as a segment of its own
  };

  [[nodiscard]] Waiting make(Mode mode, int length, int doubled) const {
    const int written = mode == Mode::alphanumeric ? length + doubled : length;
    return {mode, length, doubled,
            header_bits_[static_cast<std::size_t>(mode)] + payload_bits(mode, written)};
  }
  [[nodiscard]] Waiting merge(const Waiting& a, const Waiting& b) const {
    return make(merged(a.mode, b.mode), a.length + b.length, a.doubled + b.doubled);
  }

  void decide_on_three(std::optional<Mode> next) {
    const auto& [a, b, c] = waiting_;
    const Waiting ab = merge(a, b);
    const Waiting bc = merge(b, c);
    const Waiting abc =
        make(merged(ab.mode, bc.mode), a.length + b.length + c.length, a.doubled + b.doubled + c.doubled);
    const int b_and_c_bits = b.bits + c.bits;
    const bool merging_bc_saves = bc.bits < b_and_c_bits;

    bool open = false;  // neither merging all three nor merging A and B is clearly best
    if (abc.bits > ab.bits + c.bits) {
      open = (!merging_bc_saves || ab.bits + c.bits > a.bits + bc.bits) &&
             (merging_bc_saves || ab.bits > a.bits + b.bits);
    } else {
      open = (!merging_bc_saves || abc.bits > a.bits + bc.bits) &&
             (merging_bc_saves || abc.bits > a.bits + b_and_c_bits);
      if (!open && abc.mode == Mode::byte && bc.bits <= b_and_c_bits && next &&
          merged(bc.mode, *next) == Mode::alphanumeric) {
        return replace_b_and_c(bc);
      }
    }
    if (!open) return replace_a_and_b(ab);
    if (bc.mode != Mode::byte && bc.bits <= b_and_c_bits) return replace_b_and_c(bc);
    if (next != Mode::byte || 8 * (b.length + c.length) >= b_and_c_bits) return emit_a();
    replace_b_and_c(bc);
  }

  void decide_on_rest() {
    const auto& [a, b, c] = waiting_;
    if (count_ == 2) {
      const Waiting ab = merge(a, b);
      if (ab.bits <= a.bits + b.bits) {
        replace_a_and_b(ab);
      } else {
        emit_a();
      }
    }
    emit_a();
  }

  void replace_a_and_b(const Waiting& ab) {
    waiting_[0] = ab;
    waiting_[1] = waiting_[2];
    --count_;
  }
  void replace_b_and_c(const Waiting& bc) {
    waiting_[1] = bc;
    --count_;
  }
  void emit_a() {
    segments_.append(waiting_[0].mode, waiting_[0].length);
    waiting_[0] = waiting_[1];
    waiting_[1] = waiting_[2];
    --count_;
  }

  const PerMode& header_bits_;
  SegmentList& segments_;
  std::array<Waiting, 3> waiting_;  // A, B, C, in the order of the data
  int count_ = 0;
};

void split(const Options& options, int estimated_version, const RunList& list, SegmentList& segments) {
  PerMode header_bits = count_bits(options.type, estimated_version);
  for (int& bits : header_bits) bits += mode_indicator_bits(options.type, estimated_version);
  segments.clear();
  RunMerger merger(header_bits, segments);
  for (int i = 0; i < list.count; ++i) {
    const auto* run = &list.runs[static_cast<std::size_t>(i)];
    merger.take(*run, i + 1 < list.count ? std::optional(run[1].mode) : std::nullopt);
  }
}

/// The version to split for after `segments` came out for `estimate`: the same when there is nothing to gain.
int better_estimate(const Options& options, std::span<const std::uint8_t> data, const SegmentList& segments,
                    int estimate) {
  const VersionRange range = automatic_versions(options);
  const int fitting = smallest_version(options, range, stream_size(options, segments.all(), data), nullptr);
  if (options.type == SymbolType::micro || options.type == SymbolType::rmqr) {
    return fitting == 0 ? range.last : fitting;
  }
  // Only the count indicators matter here, and a split for longer ones is kept.
  const bool longer_counts =
      fitting != 0 && count_bits(options.type, fitting)[0] > count_bits(options.type, estimate)[0];
  return longer_counts ? fitting : estimate;
}

}  // namespace

int character_bytes(std::span<const std::uint8_t> bytes) {
  return character_mode(kByteClasses, bytes) == Mode::kanji ? 2 : 1;
}

Analysis analyse(const Options& options, std::span<const std::uint8_t> data, SegmentList& segments) {
  segments.clear();
  if (options.mode) {
    if (data.size() > kMostCharacters) return Analysis::too_many_characters;
    segments.append(*options.mode, static_cast<int>(data.size()));
    return Analysis::done;
  }

  RunList runs;
  if (!find_runs(options, data, runs)) return Analysis::too_many_characters;
  constexpr int kMostScans = 4;  // the estimates of Micro QR and rMQR need not settle
  int estimate = options.type == SymbolType::micro ? 2 : automatic_versions(options).first;
  for (int scan = 0; scan < kMostScans; ++scan) {
    split(options, estimate, runs, segments);
    if (segments.overflowed()) return Analysis::too_many_segments;
    const int better = better_estimate(options, data, segments, estimate);
    if (better == estimate) break;
    estimate = better;
  }
  return Analysis::done;
}

}  // namespace korvex::qr
