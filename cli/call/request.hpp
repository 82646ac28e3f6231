// One line of `korvex call`: an export and its filled parameter record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "call/records.hpp"

namespace korvex::cli::call {

/// A line that is no request; what() says why, in one sentence without the line's number.
struct BadLine : std::runtime_error {
  using std::runtime_error::runtime_error;
};

/// Bytes in a heap block of exactly their size, so that a tool that watches memory sees every read past the
/// end.
struct Block {
  std::string_view field;
  std::unique_ptr<std::uint8_t[]> bytes;
  std::size_t size = 0;
};

struct Request {
  std::string id;  ///< JSON that the answer echoes; empty when there is none
  const Export* target = nullptr;
  Record record{};            ///< its pointers lead into `blocks`
  std::vector<Block> blocks;  ///< one for every bytes and text field of the record
  bool trace = false;

  /// The bytes of a field, empty when the record has no such field.
  [[nodiscard]] std::span<const std::uint8_t> bytes(std::string_view field) const;
};

/// `text` as a JSON string; bytes that are no UTF-8 become U+FFFD.
std::string json_string(std::string_view text);

/// Reads a line into `request`, the id first, so that it is there even for a line that is refused.
/// Throws BadLine.
void read_request(std::string_view line, Request& request);

}  // namespace korvex::cli::call
