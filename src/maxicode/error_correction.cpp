// Standard error correction, ISO/IEC 16023, 4.9: one block for the primary message, two interleaved ones for
// the secondary message.
#include "core/reed_solomon.hpp"
#include "maxicode/request.hpp"

namespace korvex::maxicode {
namespace {

using Field = BinaryField<0x43>;  // x^6 + x + 1

/// Divides every `step`-th codeword from `first` on, and writes the remainder behind them in the same steps.
template <int CheckCodewords>
void add_block(AllCodewords& codewords, int first, int data_count, int step) {
  ReedSolomon<Field, 1, CheckCodewords> division;
  int at = first;
  for (int i = 0; i < data_count; ++i, at += step) division.add(codewords[static_cast<std::size_t>(at)]);
  for (int i = 0; i < CheckCodewords; ++i, at += step)
    codewords[static_cast<std::size_t>(at)] = division.check(i);
}

}  // namespace

void add_check_codewords(AllCodewords& codewords) {
  add_block<kPrimaryCheck>(codewords, 0, kPrimaryData, 1);
  for (const int block : {0, 1}) {
    add_block<kSecondaryCheck / 2>(codewords, kPrimaryCodewords + block, kSecondaryData / 2, 2);
  }
}

}  // namespace korvex::maxicode
