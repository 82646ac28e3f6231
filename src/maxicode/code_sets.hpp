// Code sets A to E: which byte has which value in which set. ISO/IEC 16023:2000, Table B.1.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "korvex/result.hpp"

namespace korvex::maxicode {

enum class Set : std::uint8_t { a, b, c, d, e };
inline constexpr std::size_t kSets = 5;

/// The letter by which people know it.
constexpr char letter(Set set) {
  return static_cast<char>('A' + static_cast<int>(set));
}

/// A byte in a set: its value there, or the set to change to.
struct Place {
  std::int8_t value;  ///< 0 to 63; -1: none
  Set go_to;          ///< where there is no value

  [[nodiscard]] constexpr bool has_value() const { return value >= 0; }
};

using Sets = std::array<std::array<Place, 256>, kSets>;

/// Bytes `first` to `last` have the values from `value` on.
struct Run {
  Set set;
  int first, last, value;
};
inline constexpr Run kRuns[] = {
    {Set::a, 13, 13, 0},    {Set::a, 28, 32, 28},   {Set::a, 34, 58, 34},   {Set::a, 65, 90, 1},
    {Set::b, 28, 31, 28},   {Set::b, 32, 32, 47},   {Set::b, 33, 33, 33},   {Set::b, 59, 63, 37},
    {Set::b, 64, 64, 52},   {Set::b, 91, 95, 42},   {Set::b, 96, 122, 0},   {Set::b, 123, 123, 32},
    {Set::b, 124, 124, 54}, {Set::b, 125, 127, 34}, {Set::c, 28, 31, 28},   {Set::c, 32, 32, 59},
    {Set::c, 128, 137, 48}, {Set::c, 170, 170, 37}, {Set::c, 172, 172, 38}, {Set::c, 177, 179, 39},
    {Set::c, 181, 181, 42}, {Set::c, 185, 186, 43}, {Set::c, 188, 190, 45}, {Set::c, 192, 218, 0},
    {Set::c, 219, 223, 32}, {Set::d, 28, 31, 28},   {Set::d, 32, 32, 59},   {Set::d, 138, 148, 47},
    {Set::d, 161, 161, 37}, {Set::d, 168, 168, 38}, {Set::d, 171, 171, 39}, {Set::d, 175, 176, 40},
    {Set::d, 180, 180, 42}, {Set::d, 183, 184, 43}, {Set::d, 187, 187, 45}, {Set::d, 191, 191, 46},
    {Set::d, 224, 250, 0},  {Set::d, 251, 255, 32}, {Set::e, 0, 26, 0},     {Set::e, 27, 27, 30},
    {Set::e, 28, 31, 32},   {Set::e, 32, 32, 59},   {Set::e, 149, 158, 48}, {Set::e, 159, 160, 36},
    {Set::e, 162, 167, 38}, {Set::e, 169, 169, 44}, {Set::e, 173, 174, 45}, {Set::e, 182, 182, 47},
};

constexpr Sets make_sets(Dialect dialect) {
  Sets sets;
  for (auto& set : sets) set.fill({.value = -1, .go_to = Set::a});
  const auto at = [&sets](Set set, int byte) -> Place& {
    return sets[static_cast<std::size_t>(set)][static_cast<std::size_t>(byte)];
  };
  for (const Run& run : kRuns) {
    for (int byte = run.first; byte <= run.last; ++byte) {
      at(run.set, byte).value = static_cast<std::int8_t>(run.value + byte - run.first);
    }
  }
  if (dialect == Dialect::standard) {
    at(Set::b, '!').value = 53;  // 33 is the pad there
    // 31 announces nine digits in sets A to D: the unit separator is set E's alone.
    for (const Set set : {Set::a, Set::b, Set::c, Set::d}) at(set, 31).value = -1;
  }
  for (int byte = 0; byte < 256; ++byte) {
    // A carriage return is in A and in E: A comes first.
    Set holder = Set::a;
    while (!at(holder, byte).has_value() && holder != Set::e) {
      holder = static_cast<Set>(static_cast<int>(holder) + 1);
    }
    for (const Set set : {Set::a, Set::b, Set::c, Set::d, Set::e}) at(set, byte).go_to = holder;
  }
  // These two are in B alone, and from C, D and E they are reached by way of A.
  for (const Set set : {Set::c, Set::d, Set::e}) at(set, ';').go_to = Set::a;
  for (const Set set : {Set::d, Set::e}) at(set, '!').go_to = Set::a;
  return sets;
}

inline constexpr Sets kStandardSets = make_sets(Dialect::standard);
inline constexpr Sets kKorvex32Sets = make_sets(Dialect::korvex32);

static_assert(
    [] {
      for (const Sets& sets : {kStandardSets, kKorvex32Sets}) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
          bool held = false;
          for (const auto& set : sets) held = held || set[byte].has_value();
          if (!held) return false;
        }
      }
      return true;
    }(),
    "every byte is in some set");

}  // namespace korvex::maxicode
