#include "pdf417/run_classifier.hpp"

#include <algorithm>
#include <optional>

#include "pdf417/characters.hpp"

namespace korvex::pdf417 {
namespace {

// So many digits in a row end a text run: as digits they take fewer codewords, the latches counted in.
constexpr int kDigitsThatEndText = 14;
// So many text characters in a row end a byte run, and fewer do not make a text run.
constexpr int kCharactersOfText = 5;

/// The most digits that a latch to numeric compaction and its codewords bring into `room` codewords: 44 in
/// every 15, and behind the last full group 2 in the first codeword and 3 in each further one.
int digit_limit(int room) {
  const int groups = (room - 1) / 15;
  const int codewords = (room - 1) % 15;
  return groups * 44 + (codewords == 0 ? 0 : 3 * codewords - 1);
}

/// Digits from `at` when they are worth a latch, else 0.
int digit_run(std::span<const std::uint8_t> data, int at, Mode current, int room) {
  const int size = static_cast<int>(data.size());
  const int limit = digit_limit(room);
  int end = at;
  while (end < size && end - at < limit && is(data[static_cast<std::size_t>(end)], kDigit)) ++end;

  int worth_more_than = current == Mode::text ? 7 : 0;
  if (end < size && end - at < limit && is(data[static_cast<std::size_t>(end)], kText)) {
    worth_more_than = kDigitsThatEndText - 1;
  }
  return end - at > worth_more_than ? end - at : 0;
}

/// Text characters from `at` when they are worth a latch, else 0.
int text_run(std::span<const std::uint8_t> data, int at, int room) {
  const int size = static_cast<int>(data.size());
  const int limit = 2 * room;
  int end = at;
  int digits = 0;
  bool digits_end_it = false;
  while (end < size && end - at < limit && !digits_end_it) {
    const unsigned classes = kClasses[data[static_cast<std::size_t>(end)]];
    if ((classes & kText) == 0) break;
    ++end;
    digits = (classes & kDigit) != 0 ? digits + 1 : 0;
    digits_end_it = digits == kDigitsThatEndText;
  }
  const bool message_ends_it = end == size;
  const int length = end - at - (digits_end_it ? kDigitsThatEndText : 0);
  const bool worth_it = length >= std::min(limit, kCharactersOfText) || message_ends_it || digits_end_it;
  return worth_it ? length : 0;
}

/// Bytes from `at` that come before the next text.
int byte_run(std::span<const std::uint8_t> data, int at, int room) {
  const int size = static_cast<int>(data.size());
  const int end = at + std::min(size - at, byte_limit(room));
  int characters = 0;
  for (int i = at; i < end; ++i) {
    characters = is(data[static_cast<std::size_t>(i)], kText) ? characters + 1 : 0;
    if (characters == kCharactersOfText) return i + 1 - kCharactersOfText - at;
  }
  return end - at;
}

}  // namespace

int byte_limit(int room) {
  return (room - 1) / 5 * 6 + (room - 1) % 5;
}

NextRun next_run(std::span<const std::uint8_t> data, int at, Mode current, int room) {
  if (room == 0 || at == static_cast<int>(data.size())) return {};
  if (room >= 2 && is(data[static_cast<std::size_t>(at)], kDigit)) {
    if (const int length = digit_run(data, at, current, room); length > 0) return {Mode::numeric, length};
  }
  if (const int length = text_run(data, at, room); length > 0) return {Mode::text, length};
  if (room < 2) return {};
  return {Mode::byte, byte_run(data, at, room)};
}

}  // namespace korvex::pdf417
