// What KORVEX32.dll asks of GDI, call by call.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "call/imports_gdi.hpp"

namespace korvex::cli::call {

/// While one lives, the DLL's imports from GDI32.dll lead through here, and their order is remembered. One at
/// a time.
class GdiTrace {
 public:
  /// Told before an operation paints as far as `right` and `bottom`.
  using Reach = std::function<void(int right, int bottom)>;

  /// `reach` throws nothing: it is called from inside the DLL. Throws std::runtime_error when the DLL is not
  /// loaded or imports something else from GDI.
  explicit GdiTrace(Reach reach);

  /// The operations in order by name; a run of n SetPixel calls is "SetPixel*n". Throws std::bad_alloc when
  /// there was no memory to remember them.
  [[nodiscard]] static std::vector<std::string> operations();

 private:
  Imports imports_;
};

}  // namespace korvex::cli::call
