// Primary and secondary message, ISO/IEC 16023, 4.2 and annex B.
#include <algorithm>
#include <string_view>

#include "maxicode/request.hpp"

namespace korvex::maxicode {
namespace {

/// Bits `low` to `low` + `count` - 1 of a number.
constexpr int bits(std::uint32_t number, int low, int count) {
  return static_cast<int>(number >> low & ((1U << count) - 1));
}

using Primary = std::array<int, kPrimaryData>;

/// Codewords 7 to 10: country and class of service, two bits beside what codeword 7 has of the postal code.
void put_country_and_service(const Request& request, int postal_bits, Primary& primary) {
  const auto country = static_cast<std::uint32_t>(request.country_code);
  const auto service = static_cast<std::uint32_t>(request.service_class);
  primary[6] = bits(country, 0, 2) << 4 | postal_bits;
  primary[7] = bits(country, 2, 6);
  primary[8] = bits(service, 0, 4) << 2 | bits(country, 8, 2);
  primary[9] = bits(service, 4, 6);
}

Primary numeric_carrier(const Request& request) {
  const std::uint32_t number = request.postal_number;
  const auto length = static_cast<std::uint32_t>(request.postal_length);
  Primary primary{};
  primary[0] = bits(number, 0, 2) << 4 | static_cast<int>(request.mode);
  for (int i = 1; i <= 4; ++i) primary[static_cast<std::size_t>(i)] = bits(number, 6 * i - 4, 6);
  primary[5] = bits(length, 0, 2) << 4 | bits(number, 26, 4);
  put_country_and_service(request, bits(length, 2, 4), primary);
  return primary;
}

Primary alphanumeric_carrier(const Request& request) {
  Primary primary{};
  int upper = static_cast<int>(request.mode);  // the four bits beside the next character's low two
  for (std::size_t i = 0; i < 6; ++i) {
    const std::uint32_t character = request.postal_characters[5 - i];
    primary[i] = bits(character, 0, 2) << 4 | upper;
    upper = bits(character, 2, 4);
  }
  put_country_and_service(request, upper, primary);
  return primary;
}

}  // namespace

std::uint32_t leading_number(std::string_view text) {
  const std::size_t start = text.find_first_not_of(" \t\n\v\f\r");
  if (start == std::string_view::npos) return 0;
  text.remove_prefix(start);
  const bool negative = text.front() == '-';
  if (negative || text.front() == '+') text.remove_prefix(1);
  std::uint32_t number = 0;
  for (const char digit : text) {
    if (digit < '0' || digit > '9') break;
    number = number * 10 + static_cast<std::uint32_t>(digit - '0');
  }
  return negative ? 0U - number : number;
}

AllCodewords data_codewords(const Request& request, const Codewords& message) {
  std::array<std::uint8_t, kMaxMessage> filled;
  const int capacity = message.capacity();
  for (int i = 0; i < capacity; ++i) {
    const int pad = i == message.count() ? message.pads.first : message.pads.others;
    const int value = i < message.count() ? message[i] : pad;
    filled[static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(value);
  }

  AllCodewords all{};
  const auto secondary = all.begin() + kPrimaryCodewords;
  if (request.is_carrier()) {
    const Primary primary =
        request.mode == Mode::carrier_numeric ? numeric_carrier(request) : alphanumeric_carrier(request);
    std::ranges::copy(primary, all.begin());
    std::copy_n(filled.begin(), kSecondaryData, secondary);
  } else {
    all[0] = static_cast<std::uint8_t>(request.mode);
    std::copy_n(filled.begin(), kPrimaryData - 1, all.begin() + 1);
    std::copy_n(filled.begin() + kPrimaryData - 1, kSecondaryData, secondary);
  }
  return all;
}

}  // namespace korvex::maxicode
