#include "pdf417/error_correction.hpp"

#include "core/prime_reed_solomon.hpp"

namespace korvex::pdf417 {

void append_check_codewords(int count, CodewordBuffer& codewords) {
  using Checks =
      PrimeReedSolomon<Gf929, 2, 4, 8, 16, 32, 64, 128, 256, 512,              // PDF417
                       7, 9, 10, 11, 12, 13, 14, 15, 18, 21, 26, 38, 44, 50>;  // MicroPDF417 besides
  const auto data = codewords.all();
  Checks::check_codewords(data, codewords.extend(count));
}

}  // namespace korvex::pdf417
