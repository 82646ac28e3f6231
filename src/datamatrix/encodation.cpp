#include "datamatrix/encodation.hpp"

#include "datamatrix/characters.hpp"

namespace korvex::datamatrix {
namespace {

constexpr int kPad = 129;
constexpr int kFirstDigitPair = 130;
constexpr int kLatchC40 = 230;
constexpr int kLatchBase256 = 231;
constexpr int kFnc1Codeword = 232;
constexpr int kUpperShift = 235;
constexpr int kLatchX12 = 238;
constexpr int kLatchText = 239;
constexpr int kLatchEdifact = 240;
constexpr int kUnlatch = 254;          // out of C40, Text and X12
constexpr int kEdifactUnlatch = 31;    // a value
constexpr int kMaxShortBase256 = 249;  // bytes with a length field of one codeword

/// Writes codewords and knows how many there may be. What comes behind the last place is counted, not
/// written.
class CodewordWriter {
 public:
  explicit CodewordWriter(std::span<std::uint8_t> codewords) : codewords_(codewords) {}

  void put(int codeword) {
    if (left() > 0) codewords_[static_cast<std::size_t>(count_)] = static_cast<std::uint8_t>(codeword);
    ++count_;
  }
  /// Base 256: whitened by position, so that equal bytes do not make a pattern.
  void put_randomised(int byte) { put((byte + 149 * (count_ + 1) % 255 + 1) & 0xFF); }
  /// Three values of C40, Text or X12, as digits to base 40.
  void put_triple(int values) {
    put((values + 1) >> 8);
    put((values + 1) & 0xFF);
  }
  void put_pad() {
    const int number = kPad + 149 * (count_ + 1) % 253 + 1;
    put(number > 254 ? number - 254 : number);
  }

  [[nodiscard]] int count() const { return count_; }
  /// Places left in the symbol; negative when too many codewords came.
  [[nodiscard]] int left() const { return static_cast<int>(codewords_.size()) - count_; }

 private:
  std::span<std::uint8_t> codewords_;
  int count_ = 0;
};

void put_ascii(std::span<const Character> characters, CodewordWriter& out) {
  for (std::size_t i = 0; i < characters.size(); ++i) {
    const Character c = characters[i];
    if (is_digit(c) && i + 1 < characters.size() && is_digit(characters[i + 1])) {
      out.put(kFirstDigitPair + 10 * (c - '0') + (characters[++i] - '0'));
    } else if (c == kFnc1) {
      out.put(kFnc1Codeword);
    } else if (is_extended(c)) {
      out.put(kUpperShift);
      out.put(c - 127);
    } else {
      out.put(c + 1);
    }
  }
}

/// The end of C40 and Text, where `over` values make no triple. The last character goes to ASCII unless it
/// can stay: unshifted in a triple filled up with shift 1, extended in one that fills the symbol.
/// Returns true when the symbol is in ASCII then.
bool put_last_values(int values, int over, Character last, bool shifted, CodewordWriter& out) {
  if (over == 0) return false;
  if (over == 2 && (!shifted || (is_extended(last) && out.left() == 2))) {
    out.put_triple(40 * values + kShift1);
    return false;
  }
  if (out.left() >= 2) out.put(kUnlatch);
  put_ascii(std::span(&last, 1), out);
  return true;
}

/// Returns true when the symbol is in ASCII behind it.
bool put_c40_or_text(std::span<const Character> characters, bool text, CodewordWriter& out) {
  const auto& table = text ? kTextValues : kC40Values;
  int values = 0;
  int over = 0;
  for (const Character c : characters) {
    for (int i = 0; i < table[c].count; ++i) {
      values = 40 * values + table[c].value[static_cast<std::size_t>(i)];
      if (++over < 3) continue;
      out.put_triple(values);
      values = 0;
      over = 0;
    }
  }
  const Character last = characters.back();
  return put_last_values(values, over, last, table[last].count > 1, out);
}

bool put_x12(std::span<const Character> characters, CodewordWriter& out) {
  std::size_t i = 0;
  for (; i + 3 <= characters.size(); i += 3) {
    int values = 0;
    for (const Character c : characters.subspan(i, 3)) values = 40 * values + x12_value(c);
    out.put_triple(values);
  }
  const bool unlatched = out.left() >= 2;
  if (unlatched) out.put(kUnlatch);
  put_ascii(characters.subspan(i), out);
  return unlatched || i < characters.size();
}

/// Four values in three codewords.
void put_edifact(std::span<const Character> characters, CodewordWriter& out) {
  const auto put_bits = [&](int bits, int codewords) {
    for (int shift = 16; codewords > 0; --codewords, shift -= 8) out.put(bits >> shift & 0xFF);
  };
  std::size_t i = 0;
  for (; i + 4 <= characters.size(); i += 4) {
    int bits = 0;
    for (std::size_t j = 0; j < 4; ++j) bits = bits << 6 | edifact_value(characters[i + j]);
    put_bits(bits, 3);
  }
  const auto over = characters.subspan(i);
  // In the last two codewords behind whole quadruples ASCII holds without an unlatch.
  if (out.left() < 3) {
    put_ascii(over, out);
    return;
  }
  int bits = 0;
  int shift = 18;
  for (const Character c : over) {
    bits |= edifact_value(c) << shift;
    shift -= 6;
  }
  bits |= kEdifactUnlatch << shift;
  put_bits(bits, over.empty() ? 1 : over.size() == 1 ? 2 : 3);
}

/// A length field of 0 says that the segment goes on to the end of the symbol.
void put_base256(std::span<const Character> characters, bool last, CodewordWriter& out) {
  const int length = static_cast<int>(characters.size());
  if (last && out.left() == length + 1) {
    out.put_randomised(0);
  } else if (length <= kMaxShortBase256) {
    out.put_randomised(length);
  } else {
    out.put_randomised(length / 250 + kMaxShortBase256);
    out.put_randomised(length % 250);
  }
  for (const Character c : characters) out.put_randomised(c);
}

/// Returns true when the symbol is in ASCII behind the segment.
bool put_segment(Scheme scheme, std::span<const Character> characters, bool last, CodewordWriter& out) {
  switch (scheme) {
    case Scheme::ascii:
      put_ascii(characters, out);
      return true;
    case Scheme::c40:
      out.put(kLatchC40);
      return put_c40_or_text(characters, false, out);
    case Scheme::text:
      out.put(kLatchText);
      return put_c40_or_text(characters, true, out);
    case Scheme::x12:
      out.put(kLatchX12);
      return put_x12(characters, out);
    case Scheme::edifact:
      out.put(kLatchEdifact);
      put_edifact(characters, out);
      return true;
    case Scheme::base256:
      out.put(kLatchBase256);
      put_base256(characters, last, out);
      return true;
  }
  return true;
}

}  // namespace

int encode_message(std::span<const Character> message, const Plan& plan, std::span<std::uint8_t> codewords) {
  CodewordWriter out(codewords);
  bool in_ascii = true;
  const auto segments = plan.segments();
  for (std::size_t i = 0; i < segments.size(); ++i) {
    if (!in_ascii) out.put(kUnlatch);  // segments other than ASCII have one of it between them
    const auto length = static_cast<std::size_t>(segments[i].characters);
    in_ascii = put_segment(segments[i].scheme, message.first(length), i + 1 == segments.size(), out);
    message = message.subspan(length);
  }
  if (!in_ascii && out.left() > 0) out.put(kUnlatch);
  const int pads = out.left();
  if (pads > 0) out.put(kPad);
  while (out.left() > 0) out.put_pad();
  return pads;
}

}  // namespace korvex::datamatrix
