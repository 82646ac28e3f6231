#include <string>

#include "veri/request.hpp"

namespace korvex::veri {
namespace {

Error too_long(std::size_t given, int size, Correction correction) {
  const int capacity = capacity_bytes(size, correction);
  const std::string symbol = " VERI symbol of " + std::to_string(size) + " x " + std::to_string(size) +
                             " modules with " + std::to_string(static_cast<int>(correction)) +
                             " check bytes a block";
  return {Code::no_symbol, capacity < 0 ? "A" + symbol + " is too small for its check value."
                                        : "The data has " + std::to_string(given) + " bytes; a" + symbol +
                                              " holds at most " + std::to_string(capacity) + "."};
}

bool is_listed(Correction correction) {
  return correction == Correction::none || correction == Correction::two || correction == Correction::four;
}

bool holds(int size, Correction correction, std::size_t bytes) {
  const int capacity = capacity_bytes(size, correction);
  return capacity >= 0 && bytes <= static_cast<std::size_t>(capacity);
}

}  // namespace

int capacity_bytes(int size, Correction correction) {
  if (size < kMinSize || size > kMaxSize || !is_listed(correction)) return -kCheckValueBytes;
  const int interior = size - 2 * kBorderModules;
  const int interior_bytes = interior * interior / 8;
  const int check_bytes = static_cast<int>(correction);
  const int rest = interior_bytes % kBlockBytes;
  return (kBlockBytes - check_bytes) * (interior_bytes / kBlockBytes) +
         (rest > check_bytes ? rest - check_bytes : 0) - kCheckValueBytes;
}

ModuleMatrix draw(const Request& request) {
  const Bytes stream = encodation(request);
  const Bytes blocks = with_error_correction(stream, request.correction);
  return construct(blocks, request);
}

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  if (!is_listed(options.correction)) {
    return Error{Code::bad_parameter, "The correction is " +
                                          std::to_string(static_cast<int>(options.correction)) +
                                          " check bytes a block; there are 0, 2 and 4."};
  }
  int size = options.size;
  if (size == 0) {
    size = kMinSize;
    while (size < kMaxSize && !holds(size, options.correction, data.size())) ++size;
  }
  if (size < kMinSize || size > kMaxSize) {
    return Error{Code::bad_parameter, "The size is " + std::to_string(size) + " modules; allowed are " +
                                          std::to_string(kMinSize) + " to " + std::to_string(kMaxSize) +
                                          ", or 0 for the smallest that holds the data."};
  }
  if (!holds(size, options.correction, data.size())) return too_long(data.size(), size, options.correction);
  return Symbol{.modules = draw({.size = size, .correction = options.correction, .data = data}),
                .correction = options.correction,
                .capacity_bytes = capacity_bytes(size, options.correction)};
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()));
}

}  // namespace korvex::veri
