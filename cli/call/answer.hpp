// Performs a request and writes its answer.
#pragma once

#include <string>
#include <string_view>

#include "call/console.hpp"
#include "call/exports.hpp"
#include "call/request.hpp"

namespace korvex::cli::call {

/// Makes the call and returns its answer, one line of JSON without line feed. Throws when memory runs
/// out, and BadLine, without the call, when its picture would be too large.
std::string answer(const Exports& exports, Request& request, Console& console);

/// The answer for a line that was no request: {"error": sentence}, with its id when it has one.
std::string refusal(const Request& request, std::string_view sentence);

}  // namespace korvex::cli::call
