// Code 128 with the code sets chosen in the data: by escapes among the characters or headers before them.
#include <cstddef>
#include <cstdint>
#include <span>

#include "linear/code128_tables.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

using namespace code128;

constexpr int kNoByte = -1;

bool is_digit(int byte) {
  return byte >= '0' && byte <= '9';
}

/// Set A holds space to "_" and set B space to DEL; the control characters of set A come only as escapes.
bool in_set(Set set, int byte) {
  return set != Set::c && byte >= ' ' && byte <= (set == Set::a ? '_' : 0x7F);
}

/// Symbol character values as they come, the digits of set C joined in pairs. A digit without a partner
/// becomes the pair of that digit and 0.
class ValueWriter {
 public:
  explicit ValueWriter(Values& values) : values_(values) {}

  void put(int value) {
    end_pair();
    values_.push(value);
  }
  /// `position`: where the digit stands in the data, from 1.
  void put_digit_of_c(int byte, int position) {
    const int digit = byte - '0';
    if (half_pair_ != 0) {
      values_.add_to_last(digit);
      half_pair_ = 0;
    } else {
      values_.push(10 * digit);
      half_pair_ = position;
    }
  }
  /// Position of the first digit that found no partner; 0 when there is none.
  int finish() {
    end_pair();
    return lone_digit_;
  }

 private:
  void end_pair() {
    if (half_pair_ != 0 && lone_digit_ == 0) lone_digit_ = half_pair_;
    half_pair_ = 0;
  }

  Values& values_;
  int half_pair_ = 0;  // position of the digit that waits for its partner; 0: none does
  int lone_digit_ = 0;
};

/// Readers get "123" in set C as 1230: drawn by the korvex32 dialect alone.
Fault lone_digit_fault(const Request& request, int position) {
  if (position == 0 || request.dialect == Dialect::korvex32) return {};
  return {Reason::odd_digits, position, request.data[static_cast<std::size_t>(position - 1)]};
}

// ---- in-band syntax ----

/// The byte after ">" gives one value and may change the set. False: no such escape in this set.
bool put_escape(int byte, Set& set, ValueWriter& writer) {
  const bool in_a_or_b = set != Set::c;
  switch (byte) {
    case 'D':
      writer.put(kCodeB);
      set = Set::b;
      return true;
    case 'E':
      writer.put(kCodeA);
      set = Set::a;
      return true;
    case 'F':
      writer.put(kFnc1);
      return true;
    case 'C':
      if (!in_a_or_b) return false;
      writer.put(kCodeC);
      set = Set::c;
      return true;
    case 'J':
      if (!in_a_or_b) return false;
      writer.put('>' - ' ');
      return true;
    default:  // values 64 to 98: what set A or B has past "_", then FNC3, FNC2 and Shift
      if (!in_a_or_b || byte < ' ' || byte > 'B') return false;
      writer.put(64 + byte - ' ');
      return true;
  }
}

// ---- segments ----

constexpr std::size_t kHeaderBytes = 3;
constexpr int kMaxSegmentTotal = 30;

Fault check_headers(const Request& request) {
  const std::span<const std::uint8_t> data = request.data;
  const auto count = static_cast<std::size_t>(request.segments);
  if (count == 0) return {Reason::no_segments};
  if (count * kHeaderBytes > data.size())
    return {Reason::bad_segment_header, static_cast<int>(data.size()) + 1};

  int total = 0;
  for (std::size_t at = 0; at < count * kHeaderBytes; at += kHeaderBytes) {
    const int position = static_cast<int>(at) + 1;
    if (data[at] < 'A' || data[at] > 'C' || !is_digit(data[at + 1]) || !is_digit(data[at + 2])) {
      return {Reason::bad_segment_header, position};
    }
    if (at > 0 && data[at] == data[at - kHeaderBytes]) return {Reason::same_set_twice, position, data[at]};
    total += 10 * (data[at + 1] - '0') + data[at + 2] - '0';
  }
  if (total > kMaxSegmentTotal) return {Reason::segments_too_long, 0, total};
  return {};
}

/// Reads one segment's symbol characters from `at` on, and moves `at` behind them.
class SegmentReader {
 public:
  SegmentReader(std::span<const std::uint8_t> data, std::size_t at, ValueWriter& writer)
      : data_(data), at_(at), writer_(writer) {}

  Fault read(Set set, int length, int number) {
    for (int count = 0; count < length;) {
      if (at_ >= data_.size()) return {Reason::data_ends_in_segment, 0, number};
      const int taken = set == Set::c ? read_in_c() : read_in(set);
      if (taken == 0) return fault_;
      count += taken;
    }
    return {};
  }
  [[nodiscard]] std::size_t at() const { return at_; }

 private:
  /// Each returns how many characters of the segment it has taken, 0 for a fault.
  int read_in(Set set) {
    const int byte = data_[at_];
    if (byte == '`') {
      const int function = byte_at(at_ + 1);
      switch (function) {
        case 'a':
          writer_.put(kFnc1);
          break;
        case 'b':
          writer_.put(kFnc2);
          break;
        case 'c':
          writer_.put(kFnc3);
          break;
        case 'd':
          writer_.put(fnc4_value(set));
          break;
        default:
          return fail(Reason::bad_escape, function);
      }
      at_ += 2;
      return 1;
    }
    if (!in_set(set, byte)) return fail(Reason::bad_character, byte);
    writer_.put(byte - ' ');
    ++at_;
    return 1;
  }
  int read_in_c() {
    const int byte = data_[at_];
    if (byte == '?') {
      if (byte_at(at_ + 1) != '1') return fail(Reason::bad_escape, byte_at(at_ + 1));
      writer_.put(kFnc1);
      at_ += 2;
      return 2;  // as many as the digits whose place it takes
    }
    if (!is_digit(byte)) return fail(Reason::bad_character, byte);
    writer_.put_digit_of_c(byte, static_cast<int>(at_) + 1);
    ++at_;
    return 1;
  }

  [[nodiscard]] int byte_at(std::size_t index) const { return index < data_.size() ? data_[index] : kNoByte; }
  int fail(Reason reason, int given) {
    fault_ = {reason, static_cast<int>(at_) + 1, given};
    return 0;
  }

  std::span<const std::uint8_t> data_;
  std::size_t at_;
  ValueWriter& writer_;
  Fault fault_;
};

}  // namespace

Fault read_code128_inband(const Request& request, Values& values) {
  const std::span<const std::uint8_t> data = request.data;
  if (data.empty() && request.dialect == Dialect::standard) return {Reason::nothing_to_encode};

  const bool starts = data.size() >= 2 && data[0] == '>' && data[1] >= 'G' && data[1] <= 'I';
  Set set = starts ? static_cast<Set>(data[1] - 'G') : Set::b;
  ValueWriter writer(values);
  writer.put(start_value(set));
  for (std::size_t i = starts ? 2 : 0; i < data.size(); ++i) {
    const int byte = data[i];
    const int position = static_cast<int>(i) + 1;
    if (byte == '>') {
      ++i;
      const int escaped = i < data.size() ? data[i] : kNoByte;
      if (!put_escape(escaped, set, writer)) return {Reason::bad_escape, position, escaped};
    } else if (set == Set::c && is_digit(byte)) {
      writer.put_digit_of_c(byte, position);
    } else if (in_set(set, byte)) {
      writer.put(byte - ' ');
    } else {
      return {Reason::bad_character, position, byte};
    }
  }
  return lone_digit_fault(request, writer.finish());
}

Fault read_code128_segments(const Request& request, Values& values) {
  if (const Fault fault = check_headers(request)) return fault;
  const std::span<const std::uint8_t> data = request.data;

  ValueWriter writer(values);
  SegmentReader reader(data, static_cast<std::size_t>(request.segments) * kHeaderBytes, writer);
  for (int segment = 0; segment < request.segments; ++segment) {
    const auto header = data.subspan(static_cast<std::size_t>(segment) * kHeaderBytes, kHeaderBytes);
    const auto set = static_cast<Set>(header[0] - 'A');
    const int length = 10 * (header[1] - '0') + header[2] - '0';
    writer.put(segment == 0 ? start_value(set) : latch_value(set));
    if (const Fault fault = reader.read(set, length, segment + 1)) return fault;
  }
  // The published form leaves nothing out that the caller gave.
  if (request.dialect == Dialect::standard && reader.at() < data.size()) {
    return {Reason::data_after_segments, static_cast<int>(reader.at()) + 1};
  }
  return lone_digit_fault(request, writer.finish());
}

}  // namespace korvex::linear
