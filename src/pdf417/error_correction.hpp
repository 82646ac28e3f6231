// The check codewords of PDF417 and MicroPDF417.
#pragma once

#include "pdf417/request.hpp"

namespace korvex::pdf417 {

/// Appends `count` check codewords for all that stand in `codewords`: 2, 4, 8 ... 512 (PDF417), or the number
/// of one of the sizes of MicroPDF417.
void append_check_codewords(int count, CodewordBuffer& codewords);

}  // namespace korvex::pdf417
