// A request's message laid out as a whole symbol of codewords.
#pragma once

#include "pdf417/request.hpp"

namespace korvex::pdf417 {

/// How far a message got.
enum class Outcome : std::uint8_t {
  fits,
  no_room_for_data,  ///< the check codewords would be the whole symbol
  too_long,
};

struct Laid {
  Outcome outcome = Outcome::fits;
  int bytes_that_fit = 0;
};

/// Data, pad and check codewords, in rows and columns. `layout` is whole when the outcome is `fits`.
Laid lay_out(const Request& request, Layout& layout, RunLog* log = nullptr);

}  // namespace korvex::pdf417
