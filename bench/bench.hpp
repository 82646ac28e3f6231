// What the benchmarks share: every family names its symbols and payloads, bench/main.cpp measures them.
#pragma once

#include <functional>
#include <string>

namespace korvex::bench {

/// Adds a benchmark called FAMILY-WIDE NAME, such as "ean13/12 digits": `encode` makes one symbol in memory,
/// `paint` (if any) makes the same one through its export and paints it at 4 pixels a module, listed as
/// NAME/painted. Keep results alive with benchmark::DoNotOptimize. Call it from a static initialiser through
/// Family.
void add(const std::string& name, std::function<void()> encode, std::function<void()> paint = {});

/// A static object of this type in a family's file adds its benchmarks.
struct Family {
  explicit Family(void (*add_all)()) { add_all(); }
};

}  // namespace korvex::bench
