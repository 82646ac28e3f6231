// From the bits of a 2D component to its element string.
#include <cstddef>
#include <stdexcept>

#include "composite/reader.hpp"

namespace korvex::composite::test {
namespace {

enum class Scheme { numeric, alphanumeric, iso646, letters };

class BitReader {
 public:
  explicit BitReader(const std::string& bits) : bits_(bits) {}

  [[nodiscard]] std::size_t left() const { return bits_.size() - place_; }
  [[nodiscard]] bool comes(const std::string& bits) const {
    return bits_.compare(place_, bits.size(), bits) == 0;
  }
  bool skip(const std::string& bits) {
    if (!comes(bits)) return false;
    place_ += bits.size();
    return true;
  }
  int number(std::size_t count) {
    if (left() < count) throw std::runtime_error("the bits end inside a field");
    int value = 0;
    for (; count > 0; --count) value = 2 * value + bits_[place_++] - '0';
    return value;
  }
  [[nodiscard]] int peek(std::size_t count) const { return BitReader(*this).number(count); }

 private:
  std::string bits_;
  std::size_t place_ = 0;
};

/// Reads schemes until the bits end.
class SchemeReader {
 public:
  SchemeReader(BitReader& bits, Scheme scheme) : bits_(bits), scheme_(scheme) {}

  std::string read_all() {
    std::string text;
    while (step(text)) {
    }
    return text;
  }
  /// One codeword or latch. False at the end.
  bool step(std::string& text) {
    switch (scheme_) {
      case Scheme::numeric:
        return numeric(text);
      case Scheme::alphanumeric:
        return common(text) || (bits_.left() >= 6 && alphanumeric(text));
      case Scheme::iso646:
        return common(text) || (bits_.left() >= 7 && iso646(text));
      case Scheme::letters:
        return letters(text);
    }
    return false;
  }

 private:
  static char digit(int value) { return value == 10 ? '#' : static_cast<char>('0' + value); }

  bool numeric(std::string& text) {
    if (bits_.left() < 4) return false;
    if (bits_.skip("0000")) {
      scheme_ = Scheme::alphanumeric;
      return true;
    }
    if (bits_.left() < 7) {
      text += digit(bits_.number(4) - 1);
      return false;
    }
    const int pair = bits_.number(7) - 8;
    if (pair < 0) throw std::runtime_error("a numeric codeword below 8");
    text += digit(pair / 11);
    text += digit(pair % 11);
    return true;
  }
  /// What the alphanumeric and the ISO/IEC 646 scheme have in common.
  bool common(std::string& text) {
    if (bits_.left() >= 3 && bits_.skip("000")) {
      scheme_ = Scheme::numeric;
      return true;
    }
    if (bits_.left() < 5) return false;
    if (bits_.skip("00100")) {
      scheme_ = scheme_ == Scheme::iso646 ? Scheme::alphanumeric : Scheme::iso646;
      return true;
    }
    const int five = bits_.peek(5);
    if (five < 5 || five > 15) return false;
    bits_.number(5);
    text += digit(five - 5);
    if (five == 15) scheme_ = Scheme::numeric;
    return true;
  }
  bool alphanumeric(std::string& text) {
    const int six = bits_.number(6);
    if (six < 32) throw std::runtime_error("an alphanumeric codeword below 32");
    text += six < 58 ? static_cast<char>('A' + six - 32) : "*,-./^"[six - 58];
    if (six == 63) scheme_ = Scheme::numeric;
    return true;
  }
  bool iso646(std::string& text) {
    const int seven = bits_.peek(7);
    if (seven >= 64 && seven < 116) {
      bits_.number(7);
      text += static_cast<char>(seven < 90 ? 'A' + seven - 64 : 'a' + seven - 90);
      return true;
    }
    if (bits_.left() < 8) return false;
    const int eight = bits_.number(8);
    if (eight < 232 || eight > 253) throw std::runtime_error("an ISO/IEC 646 codeword out of range");
    text += "!\"%&'()*+,-./:;<=>?_ ^"[eight - 232];
    if (eight == 253) scheme_ = Scheme::numeric;
    return true;
  }
  bool letters(std::string& text) {
    if (bits_.left() < 5) return false;
    if (bits_.skip("11111")) {
      text += '#';
      scheme_ = Scheme::numeric;
      return true;
    }
    const int five = bits_.peek(5);
    if (five < 26) {
      bits_.number(5);
      text += static_cast<char>('A' + five);
    } else {
      text += digit(bits_.number(6) - 52);
    }
    return true;
  }

  BitReader& bits_;
  Scheme scheme_;
};

/// FNC1 at the very end is half of a pair that had no second digit, or ends a field that nothing follows.
std::string trimmed(std::string text) {
  while (!text.empty() && text.back() == '#') text.pop_back();
  return text;
}

std::string two_digits(int value) {
  return {static_cast<char>('0' + value / 10), static_cast<char>('0' + value % 10)};
}

std::string read_date(BitReader& bits) {
  const int date = bits.number(16);
  const std::string ai = bits.number(1) == 1 ? "17" : "11";
  const std::string field =
      ai + two_digits(date / 384) + two_digits(date / 32 % 12 + 1) + two_digits(date % 32);
  const std::string rest = SchemeReader(bits, Scheme::numeric).read_all();
  if (rest.empty()) return field;  // nothing after the date, or FNC1 that says so
  return rest[0] == '#' ? field + rest.substr(1) : field + "10" + rest;
}

std::string read_ai_90(BitReader& bits) {
  Scheme scheme = Scheme::alphanumeric;
  if (!bits.skip("0")) scheme = bits.skip("11") ? Scheme::letters : (bits.number(2), Scheme::numeric);
  std::string implied;
  if (!bits.skip("0")) implied = bits.skip("10") ? "21" : (bits.number(2), "8004");
  int number = bits.number(5);
  char letter = '?';
  if (number == 31) {
    number = bits.number(10);
    letter = static_cast<char>('A' + bits.number(5));
  } else {
    letter = "BDHIJKLNPQRSTVWZ"[bits.number(4)];
  }
  std::string text = SchemeReader(bits, scheme).read_all();
  if (!implied.empty()) {
    const std::size_t end = text.find('#');
    if (end == std::string::npos)
      throw std::runtime_error("an AI is implied behind an FNC1 that is not there");
    text.insert(end + 1, implied);
  }
  return "90" + (number > 0 ? std::to_string(number) : "") + letter + text;
}

}  // namespace

std::string read_general_purpose(const std::string& bits) {
  BitReader reader(bits);
  return trimmed(SchemeReader(reader, Scheme::numeric).read_all());
}

std::string read_element_string(const std::string& bits) {
  BitReader reader(bits);
  if (reader.skip("0")) return trimmed(SchemeReader(reader, Scheme::numeric).read_all());
  if (reader.skip("1011")) return "10" + trimmed(SchemeReader(reader, Scheme::numeric).read_all());
  if (reader.skip("10")) return trimmed(read_date(reader));
  reader.number(2);
  return trimmed(read_ai_90(reader));
}

}  // namespace korvex::composite::test
