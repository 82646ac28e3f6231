// What KORVEX32.dll asks of GDI, call by call.
#pragma once

#include <string>
#include <vector>

namespace korvex::cli::call {

/// While one lives, the DLL's imports from GDI32.dll lead through here, and their order is remembered. One at
/// a time.
class GdiTrace {
 public:
  /// Throws std::runtime_error when the DLL is not loaded or imports something else from GDI.
  GdiTrace();
  ~GdiTrace();
  GdiTrace(const GdiTrace&) = delete;
  GdiTrace& operator=(const GdiTrace&) = delete;

  /// The operations in order by name; a run of n SetPixel calls is "SetPixel*n".
  [[nodiscard]] std::vector<std::string> operations() const;
};

}  // namespace korvex::cli::call
