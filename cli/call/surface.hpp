// What a call paints on: a fresh surface, light everywhere, that grows with what is painted (or is large
// enough).
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "korvex/korvex32.h"

namespace korvex::cli::call {

class Surface {
 public:
  /// Throws std::bad_alloc when there is no memory for it. `trace`: remember the operations.
  explicit Surface(bool trace);
  ~Surface();
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  [[nodiscard]] Korvex_Device_Context context() const;

  /// The smallest rectangle from (0, 0) that covers every pixel that was set, dark or light; 0 x 0 when none
  /// was.
  struct Size {
    int width = 0;
    int height = 0;
  };
  [[nodiscard]] Size painted() const;

  /// Fills `bytes` with row `y` from the left, most significant bit leftmost: 1 for a dark pixel, 0 for a
  /// light or unset one and past the painted width. Requires 0 <= y < painted().height and bytes for
  /// painted().width.
  void read_row(int y, std::span<std::uint8_t> bytes) const;

  /// True when the surface lost an operation for want of memory.
  [[nodiscard]] bool failed() const;

  /// The operations in order by GDI's names; a run of n SetPixel calls is "SetPixel*n".
  [[nodiscard]] std::vector<std::string> trace() const;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace korvex::cli::call
