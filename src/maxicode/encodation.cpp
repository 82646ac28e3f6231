// Bytes to codewords, ISO/IEC 16023, 4.4: one way through the message, every choice made on the spot.
#include <algorithm>

#include "maxicode/code_sets.hpp"
#include "maxicode/request.hpp"

namespace korvex::maxicode {
namespace {

// Codewords that change the set. What 58 to 63 mean depends on the set they stand in.
constexpr int kNumeric = 31;         // the next five codewords are nine digits
constexpr int kTwoShiftsToA = 56;    // in B
constexpr int kThreeShiftsToA = 57;  // in B
constexpr int kLatchToA = 58;        // in C, D, E
constexpr int kShiftAB = 59;         // to B in A, to A in B
constexpr int kShiftToC = 60;        // then D, E; twice in a row they latch
constexpr int kLatchAB = 63;         // to A in B, to B elsewhere
constexpr char kSwitch = '>';
constexpr char kDigits = '#';

constexpr int kNumericDigits = 9;
constexpr int kNumericCodewords = 5;

constexpr int shift_codeword(Set set) {
  return kShiftToC + static_cast<int>(set) - static_cast<int>(Set::c);
}

class Encoder {
 public:
  Encoder(std::span<const std::uint8_t> message, Dialect dialect, Codewords& codewords)
      : message_(message),
        sets_(dialect == Dialect::standard ? kStandardSets : kKorvex32Sets),
        codewords_(codewords) {}

  /// Returns what is to follow.
  Pads run() {
    while (at_ < message_.size() && !codewords_.overflowed()) {
      const Place place = look(state_, 0);
      const bool may_be_numeric = place.has_value() ? state_ == Set::a : place.go_to == Set::a;
      if (may_be_numeric && nine_digits_ahead()) {
        put_nine_digits();
      } else if (place.has_value()) {
        put_next(state_);
      } else {
        change_to(place.go_to);
      }
    }
    return pads();
  }

 private:
  [[nodiscard]] Pads pads() const {
    constexpr int kPadOfAB = 33;
    constexpr int kPadOfE = 28;
    // A pad in front of everything else announces a series header: an empty message begins with a latch.
    if (&sets_ == &kKorvex32Sets || codewords_.count() == 0) return {kLatchAB, kPadOfAB};
    switch (state_) {
      case Set::a:
      case Set::b:
        return {kPadOfAB, kPadOfAB};
      case Set::c:
      case Set::d:
        return {kLatchToA, kPadOfAB};
      case Set::e:
        break;
    }
    return {kPadOfE, kPadOfE};
  }

  /// The byte `ahead` of the present one in a set; past the end, a place without value that is nobody's.
  [[nodiscard]] Place look(Set set, std::size_t ahead) const {
    if (at_ + ahead >= message_.size()) return {.value = -1, .go_to = set};
    return sets_[static_cast<std::size_t>(set)][message_[at_ + ahead]];
  }

  void put_switch(int codeword) { codewords_.put(codeword, kSwitch); }
  /// Writes the next `count` bytes by their values in `set`.
  void put_next(Set set, int count = 1) {
    for (; count > 0; --count) {
      codewords_.put(look(set, 0).value, letter(set));
      ++at_;
    }
  }

  [[nodiscard]] bool nine_digits_ahead() const {
    if (message_.size() - at_ < kNumericDigits) return false;
    return std::ranges::all_of(message_.subspan(at_, kNumericDigits),
                               [](std::uint8_t byte) { return byte >= '0' && byte <= '9'; });
  }
  void put_nine_digits() {
    unsigned number = 0;
    for (int i = 0; i < kNumericDigits; ++i) number = number * 10 + message_[at_++] - '0';
    put_switch(kNumeric);
    for (int shift = 6 * (kNumericCodewords - 1); shift >= 0; shift -= 6) {
      codewords_.put(static_cast<int>(number >> shift & 63), kDigits);
    }
  }

  void change_to(Set set) {
    if (set >= Set::c) {
      shift_or_latch(set);
    } else if (state_ == Set::a) {
      from_a_to_b();
    } else if (state_ == Set::b) {
      from_b_to_a();
    } else {
      put_switch(set == Set::a ? kLatchToA : kLatchAB);
      state_ = set;
    }
  }

  void from_a_to_b() {
    if (look(Set::a, 1).has_value() || !look(Set::b, 1).has_value()) {
      put_switch(kShiftAB);
      put_next(Set::b);
      return;
    }
    put_switch(kLatchAB);
    put_next(Set::b, 2);
    state_ = Set::b;
  }

  void from_b_to_a() {
    const auto goes_to_a = [this](std::size_t ahead) {
      const Place place = look(Set::b, ahead);
      return !place.has_value() && place.go_to == Set::a;
    };
    std::size_t count = 1;
    while (count < 4 && goes_to_a(count)) ++count;
    constexpr int kSwitches[] = {kShiftAB, kTwoShiftsToA, kThreeShiftsToA, kLatchAB};
    put_switch(kSwitches[count - 1]);
    put_next(Set::a, static_cast<int>(count));
    if (count == 4) state_ = Set::a;
  }

  void shift_or_latch(Set set) {
    std::size_t count = 1;
    while (count < 4 && look(set, count).has_value()) ++count;
    if (count == 4) {
      put_switch(shift_codeword(set));
      put_switch(shift_codeword(set));
      put_next(set, 4);
      state_ = set;
      return;
    }
    for (; count > 0; --count) {
      put_switch(shift_codeword(set));
      put_next(set);
    }
  }

  std::span<const std::uint8_t> message_;
  const Sets& sets_;
  Codewords& codewords_;
  std::size_t at_ = 0;
  Set state_ = Set::a;
};

}  // namespace

Pads append_message(std::span<const std::uint8_t> message, Dialect dialect, Codewords& codewords) {
  return Encoder(message, dialect, codewords).run();
}

}  // namespace korvex::maxicode
