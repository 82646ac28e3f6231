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

// What a reader is in: a code set, and whether two FNC4 have turned sets A and B to the upper half of
// ISO/IEC 8859-1. Set C is entered from the lower half only: nothing says what FNC4 means to its digits.
enum State { kB, kC, kA, kUpperA, kUpperB };
constexpr int kPrintableStates = 2;  // text without control characters gains nothing in set A
constexpr int kAsciiStates = 3;
constexpr int kAllStates = 5;

constexpr Set set_of(int state) {
  return state == kC ? Set::c : state == kA || state == kUpperA ? Set::a : Set::b;
}
constexpr bool upper(int state) {
  return state >= kUpperA;
}

/// Symbol characters from one state to another: a code set character, two FNC4, or both.
constexpr auto kChangeCosts = [] {
  std::array<std::array<int, kAllStates>, kAllStates> costs{};
  for (int from = 0; from < kAllStates; ++from) {
    for (int to = 0; to < kAllStates; ++to) {
      costs[static_cast<std::size_t>(from)][static_cast<std::size_t>(to)] =
          (set_of(from) != set_of(to) ? 1 : 0) + (upper(from) != upper(to) ? 2 : 0);
    }
  }
  return costs;
}();

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

/// Finds the cheapest way by dynamic programming from the end of the data. Fewer states are faster.
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
      if (next != state) write_change(state, next, values);
      state = next;
      at += write_character(at, state, values);
    }
  }

 private:
  using Costs = std::array<int, States>;

  [[nodiscard]] bool is_fnc1(int byte) const { return gs1_ && byte == kGroupSeparator; }

  void plan() {
    Costs next{};        // with a change before it, from the byte behind `at` on
    Costs after_next{};  // and from the one behind that
    bool next_is_digit = false;
    for (std::size_t at = data_.size(); at-- > 0;) {
      const int byte = data_[at];
      const bool pair = next_is_digit && is_digit(byte);
      next_is_digit = is_digit(byte);

      Costs& costs = encoded_[at];
      if (is_fnc1(byte)) {
        for (int state = 0; state < States; ++state) costs[index(state)] = 1 + next[index(state)];
      } else {
        const int in_a = in_set_a(byte) ? 1 : 2;  // the character, and a Shift before it
        const int in_b = in_set_b(byte) ? 1 : 2;
        const int fnc4 = byte >= 0x80 ? 1 : 0;
        costs[kB] = in_b + fnc4 + next[kB];
        costs[kC] = pair ? 1 + after_next[kC] : kNever;
        if constexpr (States >= kAsciiStates) costs[kA] = in_a + fnc4 + next[kA];
        if constexpr (States == kAllStates) {
          costs[kUpperA] = in_a + 1 - fnc4 + next[kUpperA];
          costs[kUpperB] = in_b + 1 - fnc4 + next[kUpperB];
        }
      }
      after_next = next;
      next = with_change(costs);
    }
    from_start_ = next;
  }

  static Costs with_change(const Costs& costs) {
    Costs best = costs;
    for (int from = 0; from < States; ++from) {
      for (int to = 0; to < States; ++to) {
        best[index(from)] =
            std::min(best[index(from)], costs[index(to)] + kChangeCosts[index(from)][index(to)]);
      }
    }
    return best;
  }

  /// The state in which to draw the byte at `at`: the present one unless another is cheaper.
  [[nodiscard]] int best_state(std::size_t at, int present) const {
    const Costs& costs = encoded_[at];
    const auto& change_costs = kChangeCosts[index(present)];
    int best = present;
    int best_cost = costs[index(present)];
    for (int to = 0; to < States; ++to) {
      const int cost = costs[index(to)] + change_costs[index(to)];
      if (cost < best_cost) {
        best = to;
        best_cost = cost;
      }
    }
    return best;
  }

  /// Set B when it is as good as any, and set A rather than C.
  [[nodiscard]] int best_start() const {
    int best = kB;
    if constexpr (States >= kAsciiStates) {
      if (from_start_[kA] < from_start_[best]) best = kA;
    }
    return from_start_[kC] < from_start_[best] ? kC : best;
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
  Costs from_start_{};
  // Symbol characters for the data from each byte on when that byte is drawn in each state. Not cleared:
  // written from the back before it is read.
  std::array<Costs, kMaxDataBytes> encoded_;
};

}  // namespace

Fault read_code128_automatic(const Request& request, Values& values) {
  const std::span<const std::uint8_t> data = request.data;
  if (data.empty()) return {Reason::nothing_to_encode};
  const auto is_upper = [](std::uint8_t byte) { return byte >= 0x80; };
  const auto is_control = [gs1 = request.gs1](std::uint8_t byte) {
    return byte < ' ' && !(gs1 && byte == kGroupSeparator);
  };
  const auto first_upper = std::find_if(data.begin(), data.end(), is_upper);
  if (first_upper != data.end()) {
    // GS1 element strings have no FNC4.
    const int position = static_cast<int>(first_upper - data.begin()) + 1;
    if (request.gs1) return {Reason::bad_character, position, *first_upper};
    Planner<kAllStates>(data, false).write(values);
  } else if (std::any_of(data.begin(), data.end(), is_control)) {
    Planner<kAsciiStates>(data, request.gs1).write(values);
  } else {
    Planner<kPrintableStates>(data, request.gs1).write(values);
  }
  return {};
}

}  // namespace korvex::linear
