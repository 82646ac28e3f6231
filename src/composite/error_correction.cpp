#include "composite/error_correction.hpp"

#include "core/prime_reed_solomon.hpp"

namespace korvex::composite {

void put_check_codewords(std::span<const std::uint16_t> data, std::span<std::uint16_t> check) {
  using ReedSolomon = PrimeReedSolomon<Gf929,                                           //
                                       4, 5, 6, 7, 8,                                   // CC-A
                                       10, 11, 13, 15, 16, 18, 21, 26, 32, 38, 44, 50,  // CC-B
                                       64>;  // CC-C: also 8, 16, 32
  ReedSolomon::check_codewords(data, check);
}

}  // namespace korvex::composite
