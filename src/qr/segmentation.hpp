// Splits data into segments of one mode each.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "qr/sizing.hpp"

namespace korvex::qr {

/// The segments of one stream, in order and without gaps.
class SegmentList {
 public:
  [[nodiscard]] std::span<const Segment> all() const {
    return std::span(segments_).first(static_cast<std::size_t>(count_));
  }
  [[nodiscard]] bool overflowed() const { return overflowed_; }

  /// Appends a segment of the next `length` bytes. Beyond kMostSegments it is lost and the list has
  /// overflowed.
  void append(Mode mode, int length) {
    if (count_ == kMostSegments) {
      overflowed_ = true;
      return;
    }
    segments_[static_cast<std::size_t>(count_++)] = {mode, end_, length};
    end_ += length;
  }
  void clear() {
    count_ = 0;
    end_ = 0;
    overflowed_ = false;
  }

 private:
  std::array<Segment, kMostSegments> segments_;  // the first count_ of them
  int count_ = 0;
  int end_ = 0;  // bytes so far
  bool overflowed_ = false;
};

enum class Analysis : std::uint8_t { done, too_many_characters, too_many_segments };

/// Fills `segments`: one segment in the fixed mode if `options` name one, else split so that the bits are few
/// at the size that the data will need. The rule looks three runs of equal characters ahead and no further;
/// which segments come out decides the modules, so a shorter split than the rule's would be a different
/// symbol.
Analysis analyse(const Options& options, std::span<const std::uint8_t> data, SegmentList& segments);

/// Length in bytes, 1 or 2, of the character that starts at `bytes[0]`. Requires a byte.
int character_bytes(std::span<const std::uint8_t> bytes);

}  // namespace korvex::qr
