#include "datamatrix/plan.hpp"

#include <algorithm>

#include "datamatrix/characters.hpp"
#include "datamatrix/look_ahead.hpp"

namespace korvex::datamatrix {
namespace {

constexpr int kCodeword = 12;  // the twelfths of a codeword, in which the planner counts

/// Characters that a Base 256 segment with a one-codeword length field holds.
constexpr int kMaxShortBase256 = 249;

constexpr int digits_of(int number) {
  int digits = 0;
  for (; number > 0; number /= 10) ++digits;
  return digits;
}

/// Walks the message once and chooses the schemes for a symbol of `capacity` data codewords.
class Planner {
 public:
  Planner(std::span<const Character> message, LookAhead& look_ahead, int capacity, Plan& plan)
      : message_(message), look_ahead_(look_ahead), capacity_(capacity * kCodeword), plan_(plan) {
    plan.segment_count = 0;
  }

  /// Codes the first character in ASCII, whatever follows.
  void keep_first_in_ascii() { take(kCodeword); }

  /// Plans the whole message. Returns false when it does not fit.
  bool run();

  /// The data codewords that the finished plan takes.
  [[nodiscard]] int codewords() const;

  /// True when a symbol with `data_codewords` holds the finished plan. A long Base 256 segment at the end
  /// takes one codeword less where it fills the symbol: its length field needs not say how long it is.
  [[nodiscard]] bool fits(int data_codewords) const {
    const bool long_base256 = last_.scheme == Scheme::base256 && last_.characters > kMaxShortBase256;
    return codewords() <= data_codewords || (long_base256 && codewords() - 1 == data_codewords);
  }

 private:
  void ascii_step();
  void c40_or_text_step();
  void x12_step();
  void edifact_step();
  void base256_step();

  [[nodiscard]] int left() const { return static_cast<int>(message_.size()) - position_; }
  [[nodiscard]] Character next(int ahead = 0) const {
    return message_[static_cast<std::size_t>(position_ + ahead)];
  }
  /// True when `codewords` more fit behind what is used so far.
  [[nodiscard]] bool room_for(int codewords) const { return used_ + codewords * kCodeword <= capacity_; }
  [[nodiscard]] bool at_codeword() const { return used_ % kCodeword == 0; }
  [[nodiscard]] Scheme best_scheme() { return look_ahead_.best_scheme(position_, current_.scheme); }

  /// Takes the next character into the current segment.
  void take(int twelfths) {
    used_ += twelfths;
    ++current_.characters;
    ++position_;
  }
  /// Ends the current segment and begins one of `scheme`.
  void change_to(Scheme scheme) {
    record(current_);
    current_ = {scheme, 0};
  }
  void record(Segment segment);

  std::span<const Character> message_;
  LookAhead& look_ahead_;
  int capacity_;  // twelfths
  Plan& plan_;
  int position_ = 0;
  int used_ = 0;  // twelfths
  int text_length_ = 0;
  Segment current_{Scheme::ascii, 0};
  Segment last_{Scheme::ascii, 0};  // the last one recorded
};

void Planner::record(Segment segment) {
  text_length_ += 1 + digits_of(segment.characters);
  if (text_length_ <= kMaxPlanText) plan_.storage[static_cast<std::size_t>(plan_.segment_count++)] = segment;
  last_ = segment;
}

bool Planner::run() {
  while (left() > 0) {
    if (used_ >= capacity_ + kCodeword) return false;
    switch (current_.scheme) {
      case Scheme::ascii:
        ascii_step();
        break;
      case Scheme::c40:
      case Scheme::text:
        c40_or_text_step();
        break;
      case Scheme::x12:
        x12_step();
        break;
      case Scheme::edifact:
        edifact_step();
        break;
      case Scheme::base256:
        base256_step();
        break;
    }
  }
  if (current_.characters > 0) {
    record(current_);
  } else if (plan_.segment_count > 0) {
    used_ -= kCodeword;  // nothing comes behind the last segment, so no latch either
  }
  return text_length_ <= kMaxPlanText;
}

void Planner::ascii_step() {
  if (left() >= 2 && is_digit(next()) && is_digit(next(1))) {
    used_ += kCodeword;
    current_.characters += 2;
    position_ += 2;
    return;
  }
  constexpr int kLeastRoom = 3;  // latch and first codewords of C40, Text and X12; others need more
  if (room_for(kLeastRoom)) {
    const Scheme best = best_scheme();
    const int room = best == Scheme::base256 ? 5 : best == Scheme::edifact ? 4 : kLeastRoom;
    if (best != Scheme::ascii && room_for(room)) {
      used_ += best == Scheme::base256 ? 2 * kCodeword : kCodeword;  // Base 256: the length field too
      change_to(best);
      return;
    }
  }
  take(is_extended(next()) ? 2 * kCodeword : kCodeword);
}

void Planner::c40_or_text_step() {
  if (at_codeword() && room_for(3) && best_scheme() != current_.scheme) {
    used_ += kCodeword;  // unlatch
    change_to(Scheme::ascii);
    return;
  }
  const auto& table = current_.scheme == Scheme::text ? kTextValues : kC40Values;
  do {
    take(8 * table[next()].count);
  } while (left() > 0 && !at_codeword());
}

// Where the symbol ends, X12 and EDIFACT go over to ASCII without an unlatch. The segment then takes the
// characters that remain, at 12 more than they cost: the empty ASCII segment at the end gives that back.

void Planner::x12_step() {
  if (!at_codeword() || best_scheme() == Scheme::x12) {
    take(8);
    return;
  }
  if (!room_for(2) && next() < 128) {
    take(2 * kCodeword);
  } else {
    used_ += kCodeword;
  }
  change_to(Scheme::ascii);
}

void Planner::edifact_step() {
  if (!at_codeword() || best_scheme() == Scheme::edifact) {
    take(9);
    return;
  }
  const bool short_character = next() < 128;
  if (room_for(3) || (!room_for(2) && !short_character)) {
    used_ += kCodeword;  // unlatch
  } else if (!short_character) {
    take(3 * kCodeword);
  } else {
    if (room_for(2) && left() >= 2 && next(1) < 128) take(kCodeword);
    take(2 * kCodeword);
  }
  change_to(Scheme::ascii);
}

void Planner::base256_step() {
  if (best_scheme() != Scheme::base256) {
    change_to(Scheme::ascii);
    return;
  }
  take(kCodeword);
  if (current_.characters == kMaxShortBase256 + 1) used_ += kCodeword;  // the length field grows
}

int Planner::codewords() const {
  const int whole = used_ / kCodeword;
  const int twelfths_over = used_ % kCodeword;
  const int rounded_up = twelfths_over == 0 ? whole : whole + 1;
  if (last_.scheme == Scheme::c40 || last_.scheme == Scheme::text) {
    // Values that make no triple: 8 twelfths are one, 16 are two. One that stands alone, and two that are a
    // shifted character, leave the segment for ASCII, behind an unlatch if there is room. An extended
    // character, which ASCII shifts, has that room or, with two values over, fills the symbol with them.
    const Character character = message_.back();
    const int values = (last_.scheme == Scheme::text ? kTextValues : kC40Values)[character].count;
    if (is_extended(character)) return twelfths_over == 8 ? whole + 3 : rounded_up;
    return values > 1 && twelfths_over == 4 ? whole : rounded_up;
  }
  if (last_.scheme == Scheme::x12 && last_.characters % 3 == 2) {
    // Two characters over stand in ASCII behind an unlatch.
    const bool pair = is_digit(message_.back()) && is_digit(message_[message_.size() - 2]);
    return pair ? rounded_up : rounded_up + 1;
  }
  return rounded_up;
}

}  // namespace

bool make_plan(std::span<const Character> message, std::span<const SymbolSize> sizes, bool gs1, Plan& plan) {
  LookAhead look_ahead(message);
  const auto try_sizes = [&](std::span<const SymbolSize> tried) {
    const int capacity = tried.back().data_codewords;
    // No scheme takes more than two characters in a codeword: the planner would find out too, later.
    if (message.size() > 2 * static_cast<std::size_t>(capacity)) return false;
    Planner planner(message, look_ahead, capacity, plan);
    if (gs1) planner.keep_first_in_ascii();
    if (!planner.run()) return false;
    const auto size = std::ranges::find_if(
        tried, [&](const SymbolSize& candidate) { return planner.fits(candidate.data_codewords); });
    if (size == tried.end()) return false;
    plan.size = &*size;
    return true;
  };
  // Squares are planned for the largest, rectangles one by one: what stands at the end of a symbol differs.
  if (sizes.front().rows == sizes.front().columns) return try_sizes(sizes);
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    if (try_sizes(sizes.subspan(i, 1))) return true;
  }
  return false;
}

}  // namespace korvex::datamatrix
