// Code 128 from plain text, with the fewest symbol characters that there can be.
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "linear/code128_tables.hpp"
#include "linear/symbologies.hpp"

namespace korvex::linear {
namespace {

using namespace code128;

// What a reader is in: a code set, and whether two FNC4 have turned plain sets A and B into the upper half of
// ISO/IEC 8859-1. Set C is entered in the lower half only, since what FNC4 means to its digits is nowhere
// said.
enum State { kA, kB, kC, kUpperA, kUpperB };
constexpr int kLowerStates = 3;
constexpr int kAllStates = 5;

constexpr Set set_of(int state) {
  return state == kC ? Set::c : state == kA || state == kUpperA ? Set::a : Set::b;
}
constexpr bool upper(int state) {
  return state >= kUpperA;
}

/// Symbol characters from one state to another: a code set character, two FNC4, or both.
constexpr int change_cost(int from, int to) {
  return (set_of(from) != set_of(to) ? 1 : 0) + (upper(from) != upper(to) ? 2 : 0);
}

constexpr std::uint8_t kGroupSeparator = 0x1D;  // FNC1 in GS1 data
constexpr int kNever = 0x3FFF;

bool is_digit(int byte) {
  return byte >= '0' && byte <= '9';
}

/// The half of a byte that the sets A and B share out: A has 0 to 95, B 32 to 127.
constexpr int low_half(int byte) {
  return byte & 0x7F;
}
constexpr bool in_set_a(int byte) {
  return low_half(byte) < 0x60;
}
constexpr bool in_set_b(int byte) {
  return low_half(byte) >= 0x20;
}

/// Value of a byte in set A or B, or in the other of them after a Shift.
constexpr int value_of(int byte) {
  const int low = low_half(byte);
  return low < 0x20 ? low + 64 : low - 0x20;
}

/// Finds the cheapest way by dynamic programming from the end of the data. States is kLowerStates when every
/// byte is below 128.
template <int States>
class Planner {
 public:
  Planner(std::span<const std::uint8_t> data, bool gs1) : data_(data), gs1_(gs1) { plan(); }

  void write(Values& values) const {
    int state = best_start();
    values.push(start_value(set_of(state)));
    if (gs1_) values.push(kFnc1);
    for (std::size_t at = 0; at < data_.size();) {
      const int next = best_state(at, state);
      write_change(state, next, values);
      state = next;
      at += write_character(at, state, values);
    }
  }

 private:
  using Costs = std::array<std::uint16_t, States>;

  [[nodiscard]] bool is_fnc1(int byte) const { return gs1_ && byte == kGroupSeparator; }
  [[nodiscard]] bool pair_at(std::size_t at) const {
    return at + 1 < data_.size() && is_digit(data_[at]) && is_digit(data_[at + 1]);
  }

  /// encoded_[at][s]: characters for the data from `at` on when its first byte is drawn in state s.
  void plan() {
    std::array<Costs, 2>
        reached{};  // the same with a change before it: behind the next byte, and the one after
    for (std::size_t at = data_.size(); at-- > 0;) {
      Costs& costs = encoded_[at];
      const int byte = data_[at];
      if (is_fnc1(byte)) {
        for (int s = 0; s < States; ++s)
          costs[index(s)] = static_cast<std::uint16_t>(1 + reached[0][index(s)]);
      } else {
        const int shift_in_a = in_set_a(byte) ? 0 : 1;
        const int shift_in_b = in_set_b(byte) ? 0 : 1;
        const int fnc4 = byte >= 0x80 ? 1 : 0;
        costs[kA] = static_cast<std::uint16_t>(1 + shift_in_a + fnc4 + reached[0][kA]);
        costs[kB] = static_cast<std::uint16_t>(1 + shift_in_b + fnc4 + reached[0][kB]);
        costs[kC] = static_cast<std::uint16_t>(pair_at(at) ? 1 + reached[1][kC] : kNever);
        if constexpr (States == kAllStates) {
          costs[kUpperA] = static_cast<std::uint16_t>(2 + shift_in_a - fnc4 + reached[0][kUpperA]);
          costs[kUpperB] = static_cast<std::uint16_t>(2 + shift_in_b - fnc4 + reached[0][kUpperB]);
        }
      }
      reached[1] = reached[0];
      reached[0] = with_change(costs);
    }
  }

  static Costs with_change(const Costs& costs) {
    Costs best = costs;
    for (int from = 0; from < States; ++from) {
      for (int to = 0; to < States; ++to) {
        const int cost = costs[index(to)] + change_cost(from, to);
        best[index(from)] = static_cast<std::uint16_t>(std::min<int>(best[index(from)], cost));
      }
    }
    return best;
  }

  /// The state in which to draw the byte at `at`: the present one unless another is cheaper.
  [[nodiscard]] int best_state(std::size_t at, int present) const {
    int best = present;
    int best_cost = encoded_[at][index(present)];
    for (int to = 0; to < States; ++to) {
      const int cost = encoded_[at][index(to)] + change_cost(present, to);
      if (cost < best_cost) {
        best = to;
        best_cost = cost;
      }
    }
    return best;
  }

  /// Set B when it is as good as any.
  [[nodiscard]] int best_start() const {
    if (data_.empty()) return kB;
    const Costs reached = with_change(encoded_[0]);
    if (reached[kB] <= reached[kA] && reached[kB] <= reached[kC]) return kB;
    return reached[kA] <= reached[kC] ? kA : kC;
  }

  static void write_change(int from, int to, Values& values) {
    // FNC4 exists in sets A and B: leave the upper half before the set, enter it after.
    if (upper(from) && !upper(to)) write_two_fnc4(set_of(from), values);
    if (set_of(from) != set_of(to)) values.push(latch_value(set_of(to)));
    if (!upper(from) && upper(to)) write_two_fnc4(set_of(to), values);
  }
  static void write_two_fnc4(Set set, Values& values) {
    values.push(fnc4_value(set));
    values.push(fnc4_value(set));
  }

  /// Returns how many bytes it has drawn.
  std::size_t write_character(std::size_t at, int state, Values& values) const {
    const int byte = data_[at];
    if (is_fnc1(byte)) {
      values.push(kFnc1);
      return 1;
    }
    if (state == kC) {
      values.push(10 * (byte - '0') + data_[at + 1] - '0');
      return 2;
    }
    const Set set = set_of(state);
    if ((byte >= 0x80) != upper(state)) values.push(fnc4_value(set));
    if (!(set == Set::a ? in_set_a(byte) : in_set_b(byte))) values.push(kShift);
    values.push(value_of(byte));
    return 1;
  }

  static constexpr std::size_t index(int state) { return static_cast<std::size_t>(state); }

  std::span<const std::uint8_t> data_;
  bool gs1_;
  std::array<Costs, kMaxDataBytes> encoded_;  // not cleared: written from the back before it is read
};

}  // namespace

Fault read_code128_automatic(const Request& request, Values& values) {
  const std::span<const std::uint8_t> data = request.data;
  if (data.empty()) return {Reason::nothing_to_encode};
  const auto high = std::find_if(data.begin(), data.end(), [](std::uint8_t byte) { return byte >= 0x80; });
  if (high == data.end()) {
    Planner<kLowerStates>(data, request.gs1).write(values);
    return {};
  }
  // GS1 element strings have no FNC4.
  if (request.gs1) return {Reason::bad_character, static_cast<int>(high - data.begin()) + 1, *high};
  Planner<kAllStates>(data, false).write(values);
  return {};
}

}  // namespace korvex::linear
