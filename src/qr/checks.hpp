// What must hold of options before anything is encoded.
#pragma once

#include <optional>

#include "korvex/qr.hpp"

namespace korvex::qr {

/// As it stands in a sentence.
const char* type_name(SymbolType type);

/// The first thing wrong with `options`, alone or together with `data`, if there is one.
std::optional<Error> find_fault(const Options& options, std::span<const std::uint8_t> data);

}  // namespace korvex::qr
