#include "composite/method_field.hpp"

#include <string_view>

#include "composite/text.hpp"

namespace korvex::composite {
namespace {

int two_digits(const ElementText& text, int first) {
  return (text[first] - '0') * 10 + text[first + 1] - '0';
}

bool is_capital(std::uint8_t byte) {
  return byte >= 'A' && byte <= 'Z';
}

bool begins_with_date(const ElementText& text) {
  return text.size() >= 8 && text[0] == '1' && (text[1] == '1' || text[1] == '7');
}

Fault put_date(Dialect dialect, ElementText& text, Compaction& compaction) {
  constexpr int kDate = 2;
  constexpr int kAfterDate = 8;
  for (int i = kDate; i < kAfterDate; ++i) {
    if (!is_digit(text[i])) return {Reason::date_not_digits, i + 1, text[i]};
  }
  if (dialect == Dialect::standard && !date_survives(text, kDate))
    return {Reason::impossible_date, kDate + 1};
  compaction.put(0b10, 2);
  compaction.put(date_value(text, kDate), 16);
  compaction.put(text[1] == '7' ? 1 : 0, 1);
  if (text[kAfterDate] == '1' && text[kAfterDate + 1] == '0' && text[kAfterDate + 2] != kFnc1) {
    compaction.move_to(kAfterDate + 2);  // readers put the 10 back
  } else {
    text[kAfterDate - 1] = kFnc1;  // tells them that there is no AI 10
    compaction.move_to(kAfterDate - 1);
  }
  return {};
}

/// AI 10 in front is told by a method field of its own, without a date (ISO/IEC 24723, encodation method 10).
bool begins_with_batch(const ElementText& text) {
  return text.size() >= 3 && text[0] == '1' && text[1] == '0';
}

/// The place of the letter in 90, a number below 1000, a capital letter; 0 when `text` does not begin so.
int letter_of_ai_90(Dialect dialect, const ElementText& text) {
  if (text[0] != '9' || text[1] != '0') return 0;
  int index = 2;
  while (index < 5 && is_digit(text[index])) ++index;
  if (!is_capital(text[index])) return 0;
  // Readers print the number without zeros in front.
  if (dialect == Dialect::standard && index > 2 && text[2] == '0') return 0;
  return index;
}

/// The data of AI 90 up to FNC1, a caret or the end of the text, as the scheme and AI after them are chosen
/// by.
struct DataOf90 {
  Mode mode = Mode::numeric;
  int implied_digits = 0;  ///< of the AI 21 or 8004 that follows and is not encoded
};

DataOf90 look_at_data(const ElementText& text, int first) {
  constexpr int kNever = 10000;  // more than all the letters of a text
  int balance = 0;
  int end = first;
  int first_other = -1;
  for (; text[end] != 0 && text[end] != kFnc1 && text[end] != kCaret; ++end) {
    const bool digit = is_digit(text[end]);
    if (!digit && first_other < 0) first_other = end;
    if (digit) {
      --balance;
    } else {
      balance = is_capital(text[end]) ? balance + 1 : -kNever;
    }
  }
  DataOf90 data;
  if (balance >= 1) {
    data.mode = Mode::upper_case;
  } else if (first_other >= 0 && first_other - first < 4) {
    data.mode = Mode::alphanumeric;
  }
  if (text[end] == kFnc1 && digits_at(text, end + 1, 2)) {
    const int ai = two_digits(text, end + 1);
    if (ai == 21) data.implied_digits = 2;
    if (ai == 80 && digits_at(text, end + 3, 2) && two_digits(text, end + 3) == 4) data.implied_digits = 4;
  }
  return data;
}

void put_number_and_letter(unsigned number, std::uint8_t letter, Compaction& compaction) {
  constexpr std::string_view kShortLetters = "BDHIJKLNPQRSTVWZ";
  const std::size_t place = kShortLetters.find(static_cast<char>(letter));
  if (number < 31 && place != std::string_view::npos) {
    compaction.put(number, 5);
    compaction.put(static_cast<unsigned>(place), 4);
  } else {
    compaction.put(0b11111, 5);
    compaction.put(number, 10);
    compaction.put(letter - unsigned{'A'}, 5);
  }
}

/// Encodes up to the separator, or up to the character that shares its codeword.
void put_data_of_90(const DataOf90& data, ElementText& text, Compaction& compaction) {
  compaction.set_mode(data.mode);
  for (;;) {
    const int index = compaction.index();
    if (data.implied_digits > 0 && compaction.mode() == Mode::numeric && text[index] == kFnc1) {
      // In its pair stands what follows the AI, not the AI.
      text[index + 1] = text[index + 1 + data.implied_digits];
    }
    compaction.step();
    if (compaction.mode() == Mode::finished || compaction.overfull()) return;
    const std::uint8_t last = text[compaction.index() - 1];
    if (last == kFnc1 || last == kCaret || text[compaction.index() - 2] == kFnc1) break;
  }
  compaction.move_to(compaction.index() + data.implied_digits);
}

void put_ai_90(int letter, ElementText& text, Compaction& compaction) {
  const auto number = static_cast<unsigned>(
      number_of(text.bytes(), 2, static_cast<std::size_t>(letter - 2)));  // no digits: 0
  const DataOf90 data = look_at_data(text, letter + 1);
  compaction.put(0b11, 2);
  switch (data.mode) {
    case Mode::upper_case:
      compaction.put(0b11, 2);
      break;
    case Mode::alphanumeric:
      compaction.put(0b0, 1);
      break;
    default:
      compaction.put(0b10, 2);
  }
  switch (data.implied_digits) {
    case 2:
      compaction.put(0b10, 2);
      break;
    case 4:
      compaction.put(0b11, 2);
      break;
    default:
      compaction.put(0b0, 1);
  }
  put_number_and_letter(number, text[letter], compaction);
  compaction.move_to(letter + 1);
  put_data_of_90(data, text, compaction);
}

}  // namespace

unsigned date_value(const ElementText& text, int first) {
  const int value =
      two_digits(text, first) * 384 + (two_digits(text, first + 2) - 1) * 32 + two_digits(text, first + 4);
  return static_cast<unsigned>(value) & 0xFFFF;  // month 00 of year 00 is below 0
}

bool date_survives(const ElementText& text, int first) {
  const int month = two_digits(text, first + 2);
  return month >= 1 && month <= 12 && two_digits(text, first + 4) <= 31;
}

Fault put_method_field(Dialect dialect, ElementText& text, Compaction& compaction, Method& method) {
  if (begins_with_date(text)) {
    method = Method::date;
    return put_date(dialect, text, compaction);
  }
  if (dialect == Dialect::standard && begins_with_batch(text)) {
    method = Method::batch;
    compaction.put(0b1011, 4);
    compaction.move_to(2);
    return {};
  }
  if (const int letter = letter_of_ai_90(dialect, text); letter > 0) {
    method = Method::ai_90;
    put_ai_90(letter, text, compaction);
    return {};
  }
  method = Method::general;
  compaction.put(0, 1);
  return {};
}

}  // namespace korvex::composite
