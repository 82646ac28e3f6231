// The functions of KORVEX32.dll, loaded when the program runs, as any application would.
#include <windows.h>

#include <stdexcept>
#include <string>

#include "call/exports.hpp"

namespace korvex::cli::call {
namespace {

constexpr const char* kLibrary = "KORVEX32.dll";

template <class Function>
Function find(HMODULE library, const char* name) {
  const FARPROC address = GetProcAddress(library, name);
  if (address == nullptr) throw std::runtime_error(std::string(kLibrary) + " has no " + name);
  return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

}  // namespace

Exports load_exports() {
  const HMODULE library = LoadLibraryA(kLibrary);
  if (library == nullptr) {
    throw std::runtime_error(std::string("cannot load ") + kLibrary + ", error " +
                             std::to_string(GetLastError()));
  }
  Exports exports;
#define KORVEX_TAKE(name) exports.name = find<decltype(exports.name)>(library, #name);
  KORVEX_EXPORTS(KORVEX_TAKE)
#undef KORVEX_TAKE
  return exports;
}

}  // namespace korvex::cli::call
