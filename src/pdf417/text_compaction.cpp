#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "pdf417/compaction.hpp"

namespace korvex::pdf417 {
namespace {

// Values that change the sub-mode, to stay (latch) or for one character (shift), by where they are written.
constexpr int kLowerLatch = 27;        // in alpha and mixed
constexpr int kMixedLatch = 28;        // in alpha and lower
constexpr int kAlphaLatch = 28;        // in mixed
constexpr int kAlphaShift = 27;        // in lower
constexpr int kPunctuationLatch = 25;  // in mixed
constexpr int kPunctuationShift = 29;  // in alpha, lower and mixed
constexpr int kPunctuationToAlpha = 29;
constexpr std::uint8_t kPad = 29;  // in punctuation a latch, elsewhere a shift that nothing follows

/// How a character of `set` is coded in the sub-mode `from`: at most two values, then its own.
struct Way {
  struct Prefix {
    template <class... Values>
    constexpr Prefix(Values... prefix)
        : values{static_cast<std::uint8_t>(prefix)...}, count(static_cast<std::uint8_t>(sizeof...(prefix))) {}
    std::array<std::uint8_t, 2> values;
    std::uint8_t count;
  };
  SubMode from;
  SubMode set;
  Prefix prefix;
  SubMode next;        // the sub-mode behind the character
  std::uint8_t ahead;  // the way is open only when so many characters behind it are of `set` too
};

// A character of several sets takes the first way that is open.
constexpr auto kWays = [] {
  using enum SubMode;
  return std::to_array<Way>({
      {alpha, alpha, {}, alpha, 0},
      {alpha, lower, {kLowerLatch}, lower, 0},
      {alpha, punctuation, {kMixedLatch, kPunctuationLatch}, punctuation, 3},
      {alpha, punctuation, {kPunctuationShift}, alpha, 0},
      {alpha, mixed, {kMixedLatch}, mixed, 0},

      {lower, lower, {}, lower, 0},
      {lower, alpha, {kMixedLatch, kAlphaLatch}, alpha, 4},
      {lower, alpha, {kAlphaShift}, lower, 0},
      {lower, punctuation, {kMixedLatch, kPunctuationLatch}, punctuation, 3},
      {lower, punctuation, {kPunctuationShift}, lower, 0},
      {lower, mixed, {kMixedLatch}, mixed, 0},

      {mixed, mixed, {}, mixed, 0},
      {mixed, alpha, {kAlphaLatch}, alpha, 0},
      {mixed, lower, {kLowerLatch}, lower, 0},
      {mixed, punctuation, {kPunctuationLatch}, punctuation, 3},
      {mixed, punctuation, {kPunctuationShift}, mixed, 0},

      {punctuation, punctuation, {}, punctuation, 0},
      {punctuation, alpha, {kPunctuationToAlpha}, alpha, 0},
      {punctuation, mixed, {kPunctuationToAlpha, kMixedLatch}, mixed, 0},
      {punctuation, lower, {kPunctuationToAlpha, kLowerLatch}, lower, 0},
  });
}();

/// What one character is coded as in one sub-mode.
struct Step {
  std::array<std::uint8_t, 4> values{};  // four, to be copied as a word: the first `count` matter
  std::uint8_t count = 0;
  SubMode next = SubMode::alpha;
  std::uint8_t ahead = 0;
  std::uint8_t ahead_class = 0;
};

using Steps = std::array<std::array<Step, 128>, kSubModes>;
struct StepTables {
  Steps always{};
  Steps latches{};  // to be taken instead where `ahead`, which both then have, is met
};

constexpr Step step_of(const Way& way, std::size_t value) {
  Step step;
  for (std::uint8_t i = 0; i < way.prefix.count; ++i) step.values[i] = way.prefix.values[i];
  step.values[way.prefix.count] = static_cast<std::uint8_t>(value);
  step.count = static_cast<std::uint8_t>(way.prefix.count + 1);
  step.next = way.next;
  return step;
}

constexpr StepTables kSteps = [] {
  StepTables tables;
  for (const Way& way : kWays) {
    const auto from = static_cast<std::size_t>(way.from);
    const auto characters = kCharacterSets[static_cast<std::size_t>(way.set)];
    for (std::size_t value = 0; value < characters.size(); ++value) {
      if (characters[value] == kNoCharacter) continue;
      const std::size_t character = static_cast<std::uint8_t>(characters[value]);
      Step& always = tables.always[from][character];
      Step& latch = tables.latches[from][character];
      if (always.count != 0) continue;
      (way.ahead != 0 ? latch : always) = step_of(way, value);
      if (way.ahead != 0) latch.ahead = way.ahead;
      always.ahead = latch.ahead;
      always.ahead_class = static_cast<std::uint8_t>(class_of(way.set));
    }
  }
  return tables;
}();

constexpr bool every_text_character_has_a_step() {
  for (const auto& steps : kSteps.always) {
    for (std::size_t byte = 0; byte < steps.size(); ++byte) {
      if ((steps[byte].count != 0) != is(static_cast<std::uint8_t>(byte), kText)) return false;
    }
  }
  return true;
}
static_assert(every_text_character_has_a_step());

bool all_of_class(std::span<const std::uint8_t> data, int begin, int count, unsigned classes) {
  if (static_cast<int>(data.size()) - begin < count) return false;
  const auto bytes = data.subspan(static_cast<std::size_t>(begin), static_cast<std::size_t>(count));
  return std::ranges::all_of(bytes, [&](std::uint8_t byte) { return is(byte, classes); });
}

}  // namespace

int compact_text(std::span<const std::uint8_t> data, int begin, int end, int room, SubMode& sub_mode,
                 CodewordBuffer& codewords) {
  std::array<std::uint8_t, 2 * kMaxCodewords + sizeof(Step::values)> values;
  const int limit = 2 * room;
  int count = 0;
  int at = begin;
  SubMode current = sub_mode;
  for (; at < end; ++at) {
    const auto character = static_cast<std::size_t>(data[static_cast<std::size_t>(at)]);
    const auto from = static_cast<std::size_t>(current);
    const Step* step = &kSteps.always[from][character];
    // The characters that decide are those of the whole message: they may lie behind `end`.
    if (step->ahead != 0 && all_of_class(data, at + 1, step->ahead, step->ahead_class)) {
      step = &kSteps.latches[from][character];
    }
    if (count + step->count > limit) break;
    std::memcpy(values.data() + count, step->values.data(), sizeof(step->values));
    count += step->count;
    current = step->next;
  }

  if (count % 2 != 0) {
    values[static_cast<std::size_t>(count++)] = kPad;
    if (current == SubMode::punctuation) current = SubMode::alpha;
  }
  const auto pairs = codewords.extend(count / 2);
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    pairs[i] = static_cast<std::uint16_t>(30 * values[2 * i] + values[2 * i + 1]);
  }
  sub_mode = current;
  return at - begin;
}

}  // namespace korvex::pdf417
