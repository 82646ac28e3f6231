// How many codewords a symbol has, and in how many rows and columns.
#pragma once

#include "pdf417/request.hpp"

namespace korvex::pdf417 {

// ISO/IEC 15438: the limits of PDF417. MicroPDF417 has a list of sizes.
inline constexpr int kMinRows = 3;
inline constexpr int kMaxRows = 90;
inline constexpr int kMinColumns = 1;
inline constexpr int kMaxColumns = 30;
inline constexpr int kMaxLevel = 8;

/// Codewords of the largest symbol that the request allows.
struct Capacity {
  int total = 0;
  int check = 0;

  [[nodiscard]] int data() const { return total - check; }
  /// Whether the check codewords leave room for anything but themselves and one more.
  [[nodiscard]] bool holds_data() const { return check < total - 1; }
};
Capacity capacity(const Request& request);

struct Shape {
  int rows = 0;
  int columns = 0;
};

/// The shape for so many data and check codewords, at most Capacity::total. What is free in the request
/// follows from the number; when both are, the height nearest to half the width wins.
Shape choose_shape(const Request& request, int codewords);

/// Width in modules of a symbol of so many data columns.
int width_modules(Kind kind, int columns);

}  // namespace korvex::pdf417
