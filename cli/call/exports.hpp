// The thirteen functions that `korvex call` calls, wherever they come from.
#pragma once

#include "korvex/korvex32.h"

namespace korvex::cli::call {

// One list of the names: the members below, and whoever loads them by name, are made from it.
#define KORVEX_EXPORTS(X) \
  X(Korvex_Bit)           \
  X(Korvex_Bit_x64)       \
  X(QR_Encode)            \
  X(QR_Encode_x64)        \
  X(PDF_Encode)           \
  X(PDF_Encode_x64)       \
  X(DATA_Encode)          \
  X(DATA_Encode_x64)      \
  X(MAXI_Encode)          \
  X(MAXI_Encode_x64)      \
  X(CC_Encode)            \
  X(CC_Encode_x64)        \
  X(VERI_Encode)

/// A pointer to each function, a member of the function's own name and type.
struct Exports {
#define KORVEX_MEMBER(name) decltype(&::name) name = nullptr;  // NOLINT(bugprone-macro-parentheses)
  KORVEX_EXPORTS(KORVEX_MEMBER)
#undef KORVEX_MEMBER
};

/// All thirteen. Throws std::runtime_error with a sentence when the library or one of its names is not there.
Exports load_exports();

}  // namespace korvex::cli::call
