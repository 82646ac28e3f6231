#include <algorithm>

#include "qr/checks.hpp"
#include "qr/secret.hpp"
#include "qr/segmentation.hpp"

namespace korvex::qr {
namespace {

constexpr int kMostSymbols = 16;

Error bad_parameter(std::string message) {
  return {Code::bad_parameter, std::move(message)};
}

/// Where each of `parts` parts of about equal length ends. A part may come out empty when there are more
/// parts than characters.
std::vector<std::size_t> part_ends(std::span<const std::uint8_t> data, std::size_t parts) {
  std::vector<std::size_t> ends;
  std::size_t at = 0;
  for (std::size_t part = 1; part <= parts; ++part) {
    const std::size_t wanted = data.size() * part / parts;
    while (at < wanted) at += static_cast<std::size_t>(character_bytes(data.subspan(at)));
    ends.push_back(at);
  }
  return ends;
}

Result<std::vector<Symbol>> encode_parts(const Options& options, std::span<const std::uint8_t> data,
                                         int count) {
  OptionsWithKey with_key(options);
  Options& part_options = with_key.options;
  part_options.append = StructuredAppend{1, count, append_parity(data)};
  std::vector<Symbol> symbols;
  const auto encode_all = [&]() -> std::optional<Error> {
    symbols.clear();
    std::size_t begin = 0;
    for (const std::size_t end : part_ends(data, static_cast<std::size_t>(count))) {
      part_options.append->index = static_cast<int>(symbols.size()) + 1;
      Result<Symbol> symbol = encode(part_options, data.subspan(begin, end - begin));
      if (!symbol) return symbol.error();
      symbols.push_back(std::move(symbol).value());
      begin = end;
    }
    return std::nullopt;
  };
  if (auto error = encode_all()) return *std::move(error);

  // Draw all in the largest version among them: a series of one size is easier to print and to scan.
  const auto [smallest, largest] = std::ranges::minmax(symbols, {}, &Symbol::version);
  if (smallest.version != largest.version) {
    part_options.version = largest.version;
    if (auto error = encode_all()) return *std::move(error);
  }
  return symbols;
}

}  // namespace

std::uint8_t append_parity(std::span<const std::uint8_t> data) {
  std::uint8_t parity = 0;
  for (const std::uint8_t byte : data) parity ^= byte;
  return parity;
}

Result<std::vector<Symbol>> encode_series(const Options& options, std::span<const std::uint8_t> data,
                                          int symbols) {
  if (options.append) return bad_parameter("The series sets structured append itself; leave it empty.");
  if (symbols != 0 && (symbols < 2 || symbols > kMostSymbols)) {
    return bad_parameter("A series cannot have " + std::to_string(symbols) +
                         " symbols; it has 2 to 16, or 0 for as few as hold the data.");
  }
  if (auto fault = find_fault(options, data)) return *std::move(fault);
  if (static_cast<std::size_t>(symbols) > data.size()) {
    return bad_parameter("The data of " + std::to_string(data.size()) +
                         (data.size() == 1 ? " byte" : " bytes") + " cannot fill " + std::to_string(symbols) +
                         " symbols; each needs a character.");
  }
  if (symbols != 0) return encode_parts(options, data, symbols);

  // What is left to fail is the length of the data.
  Result<Symbol> alone = encode(options, data);
  if (alone) return std::vector<Symbol>{std::move(alone).value()};
  if (alone.error().code == Code::bad_data) return alone.error();
  for (int count = 2; count < kMostSymbols; ++count) {
    if (auto series = encode_parts(options, data, count)) return series;
  }
  return encode_parts(options, data, kMostSymbols);
}

}  // namespace korvex::qr
