#include <algorithm>

#include "core/crc16.hpp"
#include "veri/request.hpp"

namespace korvex::veri {

Bytes encodation(const Request& request) {
  const int capacity = capacity_bytes(request.size, request.correction);
  Bytes stream;
  const auto filled = std::copy(request.data.begin(), request.data.end(), stream.bytes.begin());
  std::fill(filled, stream.bytes.begin() + capacity, std::uint8_t{0});
  stream.size = capacity;
  const std::uint16_t check_value = crc16(stream.all());
  stream.push(static_cast<std::uint8_t>(check_value >> 8));
  stream.push(static_cast<std::uint8_t>(check_value));
  return stream;
}

}  // namespace korvex::veri
