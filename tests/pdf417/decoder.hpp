// A decoder of PDF417 codewords, written for the tests alone.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <stdexcept>
#include <string>

namespace korvex::pdf417 {

/// The message of the data codewords (without length descriptor), as ISO/IEC 15438 tells readers to decode
/// them. Throws std::runtime_error where they mean nothing.
class Decoder {
 public:
  Decoder(std::span<const std::uint16_t> codewords, bool begins_with_bytes)
      : codewords_(codewords), mode_(begins_with_bytes ? 901 : 900) {}

  std::string message() {
    while (at_ < codewords_.size()) {
      const unsigned codeword = codewords_[at_];
      if (codeword == 913) {
        if (mode_ != 900) throw std::runtime_error("byte shift outside text");
        text_ += static_cast<char>(codewords_[at_ + 1]);
        at_ += 2;
        shift_ = -1;
      } else if (codeword >= 900) {
        mode_ = codeword;
        sub_mode_ = 0;
        shift_ = -1;  // a shift at the very end is a pad
        ++at_;
      } else if (mode_ == 900) {
        const unsigned value = codewords_[at_++];
        text_value(value / 30);
        text_value(value % 30);
      } else if (mode_ == 902) {
        digits();
      } else if (mode_ == 901 || mode_ == 924) {
        bytes();
      } else {
        throw std::runtime_error("unknown mode " + std::to_string(mode_));
      }
    }
    return text_;
  }

 private:
  /// Codewords up to the next one that is not data.
  std::span<const std::uint16_t> rest_of_run() {
    const std::size_t begin = at_;
    while (at_ < codewords_.size() && codewords_[at_] < 900) ++at_;
    return codewords_.subspan(begin, at_ - begin);
  }

  void text_value(unsigned value) {
    // A row a sub-mode. 1 to 4 stand for the latches to them in order, 5 for the shift to punctuation, 6 for
    // that to alpha.
    static const std::string kRows[] = {
        "ABCDEFGHIJKLMNOPQRSTUVWXYZ \2\3\5", "abcdefghijklmnopqrstuvwxyz \6\3\5",
        "0123456789&\r\t,:#-.$/+%*=^\4 \2\1\5", ";<>@[\\]_`~!\r\t,:\n-.$/\"|*()?{}'\1"};
    const char character = kRows[shift_ >= 0 ? shift_ : sub_mode_][value];
    const bool shifted = shift_ >= 0;
    shift_ = -1;
    if (character >= '\1' && character <= '\4' && !shifted) {
      sub_mode_ = character - '\1';
    } else if (character == '\5' || character == '\6') {
      shift_ = character == '\5' ? 3 : 0;
    } else if (character > '\6') {
      text_ += character;
    } else {
      throw std::runtime_error("latch behind a shift");
    }
  }

  void bytes() {
    const auto run = rest_of_run();
    // Five codewords are six bytes, but behind 901 the last one to five stand for a byte each.
    const std::size_t grouped = (run.size() - (mode_ == 901 ? 1 : 0)) / 5 * 5;
    for (std::size_t i = 0; i < grouped; i += 5) {
      std::uint64_t value = 0;
      for (const unsigned codeword : run.subspan(i, 5)) value = value * 900 + codeword;
      if (value >> 48 != 0) throw std::runtime_error("five codewords of more than six bytes");
      for (int shift = 40; shift >= 0; shift -= 8) text_ += static_cast<char>(value >> shift);
    }
    for (const unsigned codeword : run.subspan(grouped)) {
      if (mode_ == 924 || codeword > 255) throw std::runtime_error("no byte");
      text_ += static_cast<char>(codeword);
    }
  }

  void digits() {
    const auto run = rest_of_run();
    for (std::size_t i = 0; i < run.size(); i += 15) {
      std::string number = "0";  // decimal, the lowest digit first
      for (const unsigned codeword : run.subspan(i, std::min<std::size_t>(15, run.size() - i))) {
        unsigned carry = codeword;
        for (char& digit : number) {
          carry += static_cast<unsigned>(digit - '0') * 900;
          digit = static_cast<char>('0' + carry % 10);
          carry /= 10;
        }
        for (; carry != 0; carry /= 10) number += static_cast<char>('0' + carry % 10);
      }
      if (number.back() != '1') throw std::runtime_error("digits without a 1 in front");
      text_.append(number.rbegin() + 1, number.rend());
    }
  }

  std::span<const std::uint16_t> codewords_;
  std::size_t at_ = 0;
  unsigned mode_;
  int sub_mode_ = 0;
  int shift_ = -1;
  std::string text_;
};

}  // namespace korvex::pdf417
