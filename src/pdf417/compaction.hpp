// The compaction modes of ISO/IEC 15438: characters to codewords, without the latches between the modes.
#pragma once

#include <cstdint>
#include <span>

#include "pdf417/characters.hpp"
#include "pdf417/request.hpp"

namespace korvex::pdf417 {

/// Appends the text characters [begin, end) of `data`, from sub-mode `sub_mode` on, as far as `room`
/// codewords hold them. Returns how many they held; `sub_mode` is then the one that the decoder is left in.
int compact_text(std::span<const std::uint8_t> data, int begin, int end, int room, SubMode& sub_mode,
                 CodewordBuffer& codewords);

/// Appends `bytes`: five codewords for every six, one each for those left over.
void compact_bytes(std::span<const std::uint8_t> bytes, CodewordBuffer& codewords);

/// Appends `digits`: 15 codewords for every 44, fewer for those left over.
void compact_digits(std::span<const std::uint8_t> digits, CodewordBuffer& codewords);

}  // namespace korvex::pdf417
