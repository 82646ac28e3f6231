#include "composite/separators.hpp"

#include <algorithm>
#include <bit>
#include <cstdint>

namespace korvex::composite {
namespace {

/// The three wide elements of a finder pattern.
constexpr int kFinderModules = 13;
/// Modules at each end of a separator that stay light, at least.
constexpr int kLightModules = 4;

/// What the end of a separator becomes: `count` modules, of which those farther in than kLightModules are
/// dark when `dark_inside`.
struct End {
  int count;
  bool dark_inside;
};

/// The fewest whole runs from the end that are together wider than the light modules. `modules` has the end
/// in its most significant bit.
End end_runs(std::uint64_t modules) {
  bool dark = modules >> 63 != 0;
  int count = 0;
  while (count <= kLightModules) {
    const std::uint64_t rest = modules << count;
    count += dark ? std::countl_one(rest) : std::countl_zero(rest);
    dark = !dark;
  }
  return {count, !dark};
}

/// A separator begins and ends with light modules: dark ones there would lengthen the guard bars' picture.
void lighten_ends(Row& separator) {
  const int window = std::min(64, separator.width());
  const End left = end_runs(separator.modules(0, window) << (64 - window));
  const End right = end_runs(reversed_bits(separator.modules(separator.width() - window, window)));
  const auto inner = [](const End& end) {
    return end.dark_inside ? (std::uint64_t{1} << (end.count - kLightModules)) - 1 : 0;
  };
  separator.replace(0, left.count, inner(left));
  separator.replace(separator.width() - right.count, right.count, inner(right) << kLightModules);
}

}  // namespace

Row guarded_row(Elements elements, bool dark_first) {
  Row row;
  row.put(dark_first ? 0b10 : 0b01, 2);
  row.put_elements(elements, dark_first);
  const bool dark_next = dark_first == (elements.size() % 2 == 0);
  row.put(dark_next ? 0b10 : 0b01, 2);
  row.finish();
  return row;
}

FinderPlaces finder_like_places(Elements elements, bool dark_first) {
  FinderPlaces places;
  for (std::size_t i = 0; i + 3 <= elements.size();) {
    if (elements[i] + elements[i + 1] + elements[i + 2] != kFinderModules) {
      ++i;
      continue;
    }
    places.push(i);
    const bool dark = dark_first == (i % 2 == 0);
    i += dark ? 3 : 4;  // the narrow dark element behind a light one cannot begin another one
  }
  return places;
}

Row adjacent_row_separator(const Row& row, Elements elements, bool dark_first, const FinderPlaces& finders) {
  Row separator = row.inverted();
  const auto alternate = [&separator](int first, int count) {
    separator.replace(first, count, alternating_modules(count));
  };
  int module = 2;  // behind the guard
  std::size_t next = 0;
  for (const std::size_t i : finders.all()) {
    for (; next < i; ++next) module += elements[next];
    const bool dark = dark_first == (i % 2 == 0);
    if (!dark) {
      alternate(module, elements[i]);
      alternate(module + elements[i] + elements[i + 1], elements[i + 2]);
    } else if (elements[i + 1] == 1) {
      separator.replace(module, kFinderModules, 0b0000000000100);
    } else {
      alternate(module + elements[i], elements[i + 1]);
    }
  }
  lighten_ends(separator);
  return separator;
}

Row opposite_separator(const Row& row) {
  Row separator = row.inverted();
  lighten_ends(separator);
  return separator;
}

Row stacked_middle_separator(const Row& upper, const Row& lower) {
  constexpr int kWidth = 50;
  constexpr int kGuard = 2;
  const std::uint64_t above = upper.modules(0, kWidth);
  const std::uint64_t below = lower.modules(0, kWidth);
  bool dark = true;  // the guard: light, dark
  std::uint64_t modules = 0b01;
  for (int module = kGuard; module < kWidth; ++module) {
    const bool above_dark = (above >> (kWidth - 1 - module) & 1U) != 0;
    const bool below_dark = (below >> (kWidth - 1 - module) & 1U) != 0;
    const bool in_guard = module >= kWidth - kGuard;
    dark = !in_guard && above_dark == below_dark ? !above_dark : !dark;
    modules = modules << 1 | (dark ? 1U : 0U);
  }
  Row separator;
  separator.put(modules >> 25, 25);
  separator.put(modules & ((1U << 25) - 1), 25);
  separator.finish();
  lighten_ends(separator);
  return separator;
}

Row alternating_middle_separator(int width) {
  constexpr int kFirst = 5;
  const int last_light = kLightModules + width % 2;
  Row separator;
  separator.put_light(kFirst);
  for (int rest = width - kFirst - last_light; rest > 0; rest -= 32) {
    const int count = std::min(rest, 32);
    separator.put(alternating_modules(count), count);
  }
  separator.put_light(last_light);
  separator.finish();
  return separator;
}

}  // namespace korvex::composite
