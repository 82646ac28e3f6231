// What KORVEX32.dll calls of another DLL: its import address table.
#pragma once

#include <windows.h>

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

namespace korvex::cli::call {

/// Replaces functions while it lives.
class Imports {
 public:
  /// Of the loaded KORVEX32.dll, from `dll`. For every name `stand_in` says what to call; 0 leaves it as it
  /// is. Throws std::runtime_error when nothing is imported from there or the table cannot be written.
  Imports(const char* dll, const std::function<ULONG_PTR(std::string_view name)>& stand_in);
  ~Imports();
  Imports(const Imports&) = delete;
  Imports& operator=(const Imports&) = delete;

 private:
  void restore();

  struct Slot {
    ULONG_PTR* address;
    ULONG_PTR original;
  };
  std::vector<Slot> replaced_;
};

}  // namespace korvex::cli::call
