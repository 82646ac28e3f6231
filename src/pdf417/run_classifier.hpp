// Which stretch of the message comes next, and in which compaction mode.
#pragma once

#include <cstdint>
#include <span>

#include "pdf417/request.hpp"

namespace korvex::pdf417 {

struct NextRun {
  Mode mode = Mode::text;
  int length = 0;  ///< bytes; 0: nothing more fits, or the message is at its end
};

/// The run of `data` that begins at `at`, with the decoder in the mode `current` and `room` codewords free.
NextRun next_run(std::span<const std::uint8_t> data, int at, Mode current, int room);

/// The most bytes that a latch to byte compaction and its codewords bring into `room` codewords (at least 1).
int byte_limit(int room);

}  // namespace korvex::pdf417
