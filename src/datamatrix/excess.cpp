#include "datamatrix/excess.hpp"

namespace korvex::datamatrix {

Counts counts_of(Excess at) {
  Counts counts{};
  for (const std::size_t scheme : excess::kSchemes) {
    const int above = 63 - excess::kTopBit[scheme];
    counts[scheme] =
        static_cast<std::int32_t>(at << above >> above >> excess::kLowBit[scheme]) - excess::kZero[scheme];
  }
  return counts;
}

Verdict verdict(Excess at) {
  return verdict(counts_of(at));
}

}  // namespace korvex::datamatrix
