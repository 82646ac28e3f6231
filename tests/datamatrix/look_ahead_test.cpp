#include "datamatrix/look_ahead.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace korvex::datamatrix {
namespace {

using Characters = std::vector<Character>;

/// The test written out: every character counted anew from `position`, until a rule holds.
Scheme direct_scheme(const Characters& message, std::size_t position, Scheme current) {
  enum { A, C, T, X, E, B };
  std::array<int, 6> n =
      current == Scheme::ascii ? std::array{0, 12, 12, 12, 12, 15} : std::array{12, 24, 24, 24, 24, 27};
  if (current != Scheme::ascii) n[static_cast<std::size_t>(current)] = 0;
  const auto below = [&](int scheme, std::initializer_list<int> others) {
    return std::ranges::all_of(others, [&](int other) { return n[scheme] + 12 < n[other]; });
  };
  const auto is_x12 = [](int c) {
    return c == 13 || c == '*' || c == '>' || c == ' ' || (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z');
  };
  for (std::size_t at = position; at < message.size(); ++at) {
    const int c = message[at];
    const int refused = 24 * static_cast<int>(message.size() - at + 1);
    if (c >= '0' && c <= '9') {
      n[A] += 6;
    } else {
      n[A] = (n[A] + 11) / 12 * 12 + (c >= 128 && c < 256 ? 24 : 12);
    }
    n[C] += 8 * kC40Values[static_cast<std::size_t>(c)].count;
    n[T] += 8 * kTextValues[static_cast<std::size_t>(c)].count;
    n[X] += is_x12(c) ? 8 : refused;
    n[E] += c >= 32 && c <= 94 ? 9 : refused;
    n[B] += c == 256 ? refused : 12;
    if (at < position + 3) continue;
    if (n[A] + 12 <= *std::min_element(n.begin() + 1, n.end())) return Scheme::ascii;
    if (n[B] + 12 <= n[A] || below(B, {C, T, X, E})) return Scheme::base256;
    if (below(E, {A, C, T, X, B})) return Scheme::edifact;
    if (below(T, {A, C, X, E, B})) return Scheme::text;
    if (below(X, {A, C, T, E, B})) return Scheme::x12;
    if (below(C, {A, T, E, B}) && n[C] <= n[X]) {
      if (n[C] < n[X]) return Scheme::c40;
      for (++at; at < message.size() && is_x12(message[at]); ++at) {
        if (message[at] == 13 || message[at] == '*' || message[at] == '>') return Scheme::x12;
      }
      return Scheme::c40;
    }
  }
  for (int& count : n) count = (count + 11) / 12 * 12;
  const auto is_least = [&](int scheme) {
    return std::ranges::count_if(n, [&](int count) { return count <= n[scheme]; }) == 1;
  };
  if (n[A] == *std::ranges::min_element(n)) {
    return n[static_cast<std::size_t>(current)] == n[A] ? current : Scheme::ascii;
  }
  for (const int scheme : {B, E, T, X}) {
    if (is_least(scheme)) return static_cast<Scheme>(scheme);
  }
  return Scheme::c40;
}

void expect_same(const Characters& message) {
  const auto look_ahead = std::make_unique<LookAhead>(message);
  for (std::size_t position = 0; position < message.size(); ++position) {
    for (const Scheme current :
         {Scheme::ascii, Scheme::c40, Scheme::text, Scheme::x12, Scheme::edifact, Scheme::base256}) {
      ASSERT_EQ(look_ahead->best_scheme(static_cast<int>(position), current),
                direct_scheme(message, position, current))
          << "position " << position << " of " << testing::PrintToString(message) << ", now in scheme "
          << static_cast<int>(current);
    }
  }
}

/// One or two characters of every kind that the schemes tell apart.
const Characters kKinds = {'0', '9', ' ', 'A',  'a',  '*',  '\r', '>',
                           '.', '_', 1,   0xB0, 0xC1, 0xE1, 0x80, kFnc1};

TEST(DataMatrixLookAhead, DecidesAsTheDirectFormOnRandomCharacters) {
  std::mt19937 random(16022);
  for (int round = 0; round < 400; ++round) {
    Characters message(random() % 60);
    const std::size_t kinds = 1 + random() % kKinds.size();
    const std::size_t first = random() % kKinds.size();
    for (auto& c : message) c = kKinds[(first + random() % kinds) % kKinds.size()];
    expect_same(message);
  }
}

// Level for about as long as the near test reads, then every kind: the far test must take over in time.
TEST(DataMatrixLookAhead, DecidesAsTheDirectFormWhereTheNearTestEnds) {
  for (const Characters& level : {Characters{1, '1'}, {' ', '0'}, {'A', 'a'}}) {
    for (std::size_t length = kNear - 4; length < kNear + 8; ++length) {
      for (const Character kind : kKinds) {
        Characters message;
        while (message.size() < length) message.push_back(level[message.size() % level.size()]);
        message.resize(length + 12, kind);
        expect_same(message);
      }
    }
  }
}

// Repeated patterns keep schemes level for long: here the far test and its proofs are at work.
TEST(DataMatrixLookAhead, DecidesAsTheDirectFormWherePatternsRepeat) {
  std::mt19937 random(7);
  for (int round = 0; round < 40; ++round) {
    Characters message;
    while (message.size() < 400) {
      Characters pattern(1 + random() % 6);
      for (auto& c : pattern) c = kKinds[random() % kKinds.size()];
      for (auto times = random() % (random() % 3 == 0 ? 100 : 10); times > 0; --times) {
        message.insert(message.end(), pattern.begin(), pattern.end());
      }
    }
    message.resize(400);
    expect_same(message);
  }
}

TEST(DataMatrixLookAhead, DecidesAsTheDirectFormOnTheSlowestMessages) {
  const std::vector<std::vector<std::pair<std::string, int>>> slow = {
      {{" ", 150}, {"10", 220}},
      {{"\x01"
        "1",
        250},
       {" ", 3}},
      {{"Z9", 24},
       {"010\xB0", 60},
       {"1\xE1"
        "0Z10",
        40}},
      {{"9*", 8}, {"A0\r9a9", 30}, {" ", 20}, {"\x01 0 ", 40}, {"9", 120}},
      {{"0 z1 A", 40}, {"0", 11}, {">", 200}},
      {{"AA  aaAAaaAA", 3}, {"aaAA", 90}, {"1", 60}},
  };
  for (const auto& parts : slow) {
    Characters message;
    for (const auto& [pattern, times] : parts) {
      for (int i = 0; i < times; ++i) {
        for (const char c : pattern) message.push_back(static_cast<std::uint8_t>(c));
      }
    }
    expect_same(message);
  }
}

}  // namespace
}  // namespace korvex::datamatrix
