// The message as codewords.
#pragma once

#include "pdf417/request.hpp"

namespace korvex::pdf417 {

/// Appends the data codewords of the request's message, at most `room` of them (at least 1): run by run in
/// the compaction mode that the run classifier picks, or, where that does not fit, the whole of it in byte
/// compaction. Returns how many bytes fitted: all of them, or there is no such symbol. `log`, unless null,
/// receives the runs.
int encode_data(const Request& request, int room, CodewordBuffer& codewords, RunLog* log);

}  // namespace korvex::pdf417
