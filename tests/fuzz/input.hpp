// A call as the bytes that a fuzzer changes: the record's fields in their order, whatever they hold.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "call/request.hpp"

namespace korvex::fuzz {

// Numbers are 16 bits, low byte first. Bytes are 16 bits of length and then themselves; the length kNoPointer
// makes a null pointer. What the bytes of an input do not reach is zero.
inline constexpr std::uint16_t kNoPointer = 0xFFFF;

/// Any bytes become a call whose counted lengths do not exceed the bytes that are there.
cli::call::Request read_call(const cli::call::Export& target, std::span<const std::uint8_t> input);

/// The bytes that read_call() makes this call of.
std::vector<std::uint8_t> write_call(const cli::call::Request& request);

}  // namespace korvex::fuzz
