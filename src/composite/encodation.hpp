// General-purpose data compaction of GS1 DataBar Expanded and of the 2D components (ISO/IEC 24724, clause 7;
// ISO/IEC 24723).
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "composite/request.hpp"
#include "core/bit_writer.hpp"

namespace korvex::composite {

/// Most bits that a CC-B, and with it any DataBar Expanded symbol, and a CC-C hold.
inline constexpr int kMostBits = 1184;
inline constexpr int kMostCcCBits = 8264;

inline constexpr std::uint8_t kFnc1 = '#';
/// Separates like FNC1 but is data: a character of its own.
inline constexpr std::uint8_t kCaret = '^';

/// Chooses the size of the symbol that the bits are for.
class Sizing {
 public:
  /// Bits that are left in the smallest size that holds `bits`; negative when none does.
  virtual int remaining_bits(int bits) = 0;

 protected:
  ~Sizing() = default;
};

/// An element string with FNC1 as `#`, followed by zero bytes, which the compaction looks ahead to and may
/// rewrite.
class ElementText {
 public:
  /// Requires at most kMaxTextBytes.
  explicit ElementText(Bytes text) : size_(static_cast<int>(text.size())) {
    std::ranges::copy(text, bytes_.begin());
    std::fill_n(bytes_.begin() + size_, kZeros, std::uint8_t{0});
  }
  [[nodiscard]] int size() const { return size_; }
  /// Zero at the end, and up to 7 places behind it.
  [[nodiscard]] std::uint8_t operator[](int index) const { return bytes_[static_cast<std::size_t>(index)]; }
  std::uint8_t& operator[](int index) { return bytes_[static_cast<std::size_t>(index)]; }
  [[nodiscard]] Bytes bytes() const { return {bytes_.data(), static_cast<std::size_t>(size_)}; }

 private:
  static constexpr int kZeros = 8;
  int size_;
  std::array<std::uint8_t, kMaxTextBytes + kZeros> bytes_;
};

/// 0, or the position from 1 of the first byte that element strings cannot have.
int find_bad_character(Bytes text);
/// Whether there are digits alone.
bool all_digits(Bytes text);

/// Whether the symbol's next data begin with `count` digits at `first`.
bool digits_at(const ElementText& text, int first, int count);

enum class Mode : std::uint8_t {
  numeric,
  alphanumeric,
  iso646,
  upper_case,  ///< of the data of AI 90 in a 2D component
  finished,
};

/// Turns an element string into bits, step by step: each step is one codeword of a mode, or a latch.
/// The text's bytes are those that find_bad_character() lets through.
class Compaction {
 public:
  Compaction(ElementText& text, Sizing& sizing, int most_bits)
      : text_(text), sizing_(sizing), most_bits_(most_bits) {}
  Compaction(const Compaction&) = delete;
  Compaction& operator=(const Compaction&) = delete;

  /// Appends bits of a method field. Requires count <= 16.
  void put(unsigned value, int count) { bits_.put(value, count); }
  /// Appends the `count` digits at `first`, which are at most 3, as one number of 10 bits, or one of 4 bits
  /// for one digit.
  void put_digits(int first, int count);

  /// Place of the next character to encode.
  [[nodiscard]] int index() const { return index_; }
  void move_to(int index) { index_ = index; }
  [[nodiscard]] Mode mode() const { return mode_; }
  void set_mode(Mode mode) { mode_ = mode; }

  void step();
  /// There are more bits than any size holds: there is no use in going on, nor room.
  [[nodiscard]] bool overfull() const { return size_bits() > most_bits_; }
  /// Steps to the end of the text and pads to the chosen size. False when no size holds the bits.
  bool finish();

  [[nodiscard]] int size_bits() const { return bits_.size_bits(); }
  /// Bits before padding, after finish().
  [[nodiscard]] int data_bits() const { return data_bits_; }
  /// The bits, from the most significant on; after finish().
  [[nodiscard]] std::span<std::uint8_t> bytes() {
    return std::span(bytes_).first(static_cast<std::size_t>((size_bits() + 7) / 8));
  }

 private:
  /// Runs of characters of one class. Places are asked for from left to right, so each is looked at once.
  class Run {
   public:
    explicit Run(int least_class) : least_class_(least_class) {}
    int length_at(const ElementText& text, int index);

   private:
    int least_class_;
    int end_ = 0;
  };

  void step_numeric();
  void step_alphanumeric();
  void step_iso646();
  void step_upper_case();
  void latch(unsigned value, int count, Mode mode) {
    put(value, count);
    mode_ = mode;
  }
  int remaining_bits() { return sizing_.remaining_bits(size_bits()); }

  // A step, the longest method field and the padding after the last step that fits.
  static constexpr int kSlackBytes = 32;

  ElementText& text_;
  Sizing& sizing_;
  int most_bits_;
  int index_ = 0;
  int data_bits_ = 0;
  Mode mode_ = Mode::numeric;
  Run numeric_run_{2};
  Run alphanumeric_run_{1};
  std::array<std::uint8_t, kMostCcCBits / 8 + kSlackBytes> bytes_;  // not cleared: bits are appended
  BitWriter bits_{bytes_};
};

}  // namespace korvex::composite
