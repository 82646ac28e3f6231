// The functions of the library that this program is linked with.
#include "call/exports.hpp"

namespace korvex::cli::call {

Exports load_exports() {
  Exports exports;
#define KORVEX_TAKE(name) exports.name = &::name;
  KORVEX_EXPORTS(KORVEX_TAKE)
#undef KORVEX_TAKE
  return exports;
}

}  // namespace korvex::cli::call
