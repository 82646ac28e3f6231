// Sizes and capacities of the versions.
#pragma once

#include <array>

#include "korvex/qr.hpp"

namespace korvex::qr {

inline constexpr int kMostModules = 177;        // a side of version 40
inline constexpr int kMostCodewords = 3808;     // Model 1 version 40
inline constexpr int kMostCharacters = 7366;    // of one stream, Kanji counting one
inline constexpr int kMostSegments = 200;       // of one stream
inline constexpr int kMostBlocks = 81;          // version 40-H
inline constexpr int kMostCheckCodewords = 68;  // of one block
inline constexpr std::array kRmqrRows = {7, 9, 11, 13, 15, 17};

/// One number for each Mode.
using PerMode = std::array<int, 4>;

/// Codewords of a version at a level. No data codewords: the version does not have the level.
struct Capacity {
  int total_codewords = 0;
  int data_codewords = 0;
  int blocks = 0;
};

/// Versions that a type has: 40, 4 or 32.
int version_count(SymbolType type);
/// The highest version that is chosen by itself.
int last_automatic_version(SymbolType type);

// The functions below require 1 <= version <= version_count(type).

Capacity capacity(SymbolType type, int version, Level level);
/// Bits for data: eight a data codeword, but for the last one of M1 and M3, which has four.
int data_bits(SymbolType type, int version, Level level);
bool has_short_last_codeword(SymbolType type, int version);

/// Height and width in modules.
int row_count(SymbolType type, int version);
int column_count(SymbolType type, int version);

/// Bits of the mode indicator, and of each mode's character count indicator.
int mode_indicator_bits(SymbolType type, int version);
const PerMode& count_bits(SymbolType type, int version);
bool has_mode(SymbolType type, int version, Mode mode);

/// The narrowest and the widest rMQR version of `rows` module rows, which is one of kRmqrRows.
struct VersionRange {
  int first;
  int last;
};
VersionRange rmqr_versions(int rows);

}  // namespace korvex::qr
