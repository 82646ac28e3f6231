// What the tests of the QR family share.
#pragma once

#include <cstdint>
#include <iomanip>
#include <random>
#include <span>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "korvex/qr.hpp"
#include "qr/tables.hpp"

namespace korvex::qr::test {

using Bytes = std::vector<std::uint8_t>;

inline Bytes bytes(std::string_view text) {
  return {text.begin(), text.end()};
}

/// "01 AB" as bytes.
inline Bytes from_hex(std::string_view text) {
  Bytes result;
  std::istringstream in{std::string(text)};
  for (unsigned value = 0; in >> std::hex >> value;) result.push_back(static_cast<std::uint8_t>(value));
  return result;
}

inline std::string to_hex(std::span<const std::uint8_t> data) {
  std::ostringstream out;
  out << std::hex << std::uppercase << std::setfill('0');
  for (const unsigned byte : data) out << (out.tellp() > 0 ? " " : "") << std::setw(2) << byte;
  return out.str();
}

/// Rows of '#' (dark) and '.' (light), each with a line end.
inline std::string art(const ModuleMatrix& modules) {
  std::string text;
  for (int row = 0; row < modules.rows(); ++row) {
    for (int column = 0; column < modules.columns(); ++column) text += modules.dark(row, column) ? '#' : '.';
    text += '\n';
  }
  return text;
}

/// Segments as mode letter and length in bytes: "N8 B3 K4".
inline std::string segment_text(std::span<const Segment> segments) {
  std::string text;
  for (const Segment& segment : segments) {
    text += (text.empty() ? "" : " ") + std::string(1, "NABK"[static_cast<int>(segment.mode)]) +
            std::to_string(segment.length);
  }
  return text;
}

inline Bytes random_bytes(std::mt19937& random, std::size_t count) {
  Bytes result(count);
  for (auto& byte : result) byte = static_cast<std::uint8_t>(random());
  return result;
}

/// A codeword polynomial is zero at the powers 0 to `roots` - 1 of 2 in GF(256) modulo 0x11D.
inline bool is_valid_block(const Bytes& block, int roots) {
  for (int root = 0; root < roots; ++root) {
    unsigned sum = 0;
    for (const std::uint8_t codeword : block) {
      for (int i = 0; i < root; ++i) sum = sum << 1 ^ (sum >= 128 ? 0x11D : 0);
      sum ^= codeword;
    }
    if (sum != 0) return false;
  }
  return true;
}

inline constexpr SymbolType kAllTypes[] = {SymbolType::model1, SymbolType::model2, SymbolType::micro,
                                           SymbolType::rmqr};

/// Calls `visit` with every type, version and level that has a symbol.
template <class Visit>
void for_each_symbol(Visit visit) {
  for (const SymbolType type : kAllTypes) {
    for (int version = 1; version <= version_count(type); ++version) {
      for (const Level level : {Level::low, Level::medium, Level::quartile, Level::high}) {
        if (capacity(type, version, level).data_codewords == 0) continue;
        SCOPED_TRACE("type " + std::to_string(static_cast<int>(type)) + ", version " +
                     version_name(type, version) + ", level " + std::to_string(static_cast<int>(level)));
        visit(type, version, level);
      }
    }
  }
}

}  // namespace korvex::qr::test
