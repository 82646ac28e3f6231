// What the Data Matrix encoder is asked for.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "datamatrix/tables.hpp"
#include "korvex/datamatrix.hpp"

namespace korvex::datamatrix {

/// A byte of the message, or FNC1.
using Character = std::uint16_t;
inline constexpr Character kFnc1 = 256;
inline constexpr int kCharacterCount = 257;

/// Begins an escape by the option fnc1_escape.
inline constexpr std::uint8_t kEsc = 0x1B;

/// The bytes, and FNC1 in front of GS1 data.
inline constexpr int kMaxCharacters = kMaxDataBytes + 1;

/// Why there is no symbol; the sentence for it is in encode.cpp.
enum class Reason : std::uint8_t {
  none,
  bad_escape,        ///< position: an ESC, of which the next byte makes nothing
  size_not_allowed,  ///< no size has these rows and columns
  does_not_fit,
};

struct Fault {
  Reason reason = Reason::none;
  int position = 0;  ///< in the data, counted from 1

  explicit operator bool() const { return reason != Reason::none; }
};

/// A message as the encoder reads it. Not cleared: only the first `size` characters are there.
struct Message {
  std::array<Character, kMaxCharacters> storage;
  int size = 0;

  [[nodiscard]] std::span<const Character> characters() const {
    return std::span(storage).first(static_cast<std::size_t>(size));
  }
  void append(Character character) { storage[static_cast<std::size_t>(size++)] = character; }
};

/// Reads `data`, at most kMaxDataBytes, by the options gs1 and fnc1_escape.
Fault read_message(const Options& options, std::span<const std::uint8_t> data, Message& message);

/// The sizes that go with the options, in the order in which they are tried; empty when there is none.
std::span<const SymbolSize> sizes_for(const Options& options);

}  // namespace korvex::datamatrix
