// From data codewords to the sequence that is placed in the symbol.
#pragma once

#include "qr/encodation.hpp"

namespace korvex::qr {

/// Divides the data codewords into blocks, adds their check codewords and writes all codewords to `sequence`
/// in the order of placement: Model 2, GS1 and rMQR interleave the blocks (ISO/IEC 18004:2015, 7.6), Model 1
/// keeps them one after the other, check codewords behind. In M1 and M3 the four bits of the last data
/// codeword are divided as the high half of a byte, and the check codewords follow them at once. Behind the
/// sequence stand kZerosBehindSequence zeros.
void write_sequence(SymbolType type, int version, Level level, const CodewordBuffer& data,
                    CodewordBuffer& sequence);

}  // namespace korvex::qr
