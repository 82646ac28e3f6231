// What can be wrong with a request, in sentences.
#pragma once

#include <cstddef>
#include <optional>

#include "pdf417/layout.hpp"

namespace korvex::pdf417 {

/// More bytes than any symbol holds (2,710 digits at level 0).
inline constexpr std::size_t kMoreBytesThanFit = 4096;

/// The first of the options that is out of range or does not go with the others.
std::optional<Error> check(const Options& options);

/// Why `request`, whose whole message has `data_bytes`, was not laid out.
Error describe(const Laid& laid, const Request& request, std::size_t data_bytes);

}  // namespace korvex::pdf417
