#include "fuzz/input.hpp"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

namespace korvex::fuzz {
namespace {

using cli::call::Block;
using cli::call::Field;
using cli::call::Kind;
using cli::call::Request;

class Reader {
 public:
  explicit Reader(std::span<const std::uint8_t> input) : rest_(input) {}

  std::uint16_t number() {
    std::uint8_t low_high[2] = {};
    take(low_high);
    return static_cast<std::uint16_t>(low_high[0] | low_high[1] << 8);
  }
  /// Fills `bytes` with what is there and zeros.
  void take(std::span<std::uint8_t> bytes) {
    const std::size_t count = std::min(bytes.size(), rest_.size());
    std::copy_n(rest_.begin(), count, bytes.begin());
    rest_ = rest_.subspan(count);
  }
  [[nodiscard]] std::size_t left() const { return rest_.size(); }

 private:
  std::span<const std::uint8_t> rest_;
};

/// Sizes in pixels that only cost time are seldom: a picture of 30000 x 30000 shows what one of 30 x 30 does.
std::uint16_t bounded(std::string_view name, std::uint16_t value) {
  const bool is_size = name.starts_with("module_") || name == "linear_height" || name == "row_height";
  constexpr std::uint16_t kLarge = 30;
  return is_size && value > kLarge && value < 0x8000 && value % 64 != 0 ? value % kLarge : value;
}

}  // namespace

Request read_call(const cli::call::Export& target, std::span<const std::uint8_t> input) {
  Request request;
  request.target = &target;
  auto* const record = reinterpret_cast<std::uint8_t*>(&request.record);
  Reader reader(input);
  for (const Field& field : target.fields) {
    const auto put = [&](const auto& value) { std::memcpy(record + field.offset, &value, sizeof value); };
    switch (field.kind) {
      case Kind::number:
      case Kind::natural:
        put(bounded(field.name, reader.number()));
        break;
      case Kind::numbers:
        reader.take({record + field.offset, sizeof(Bar_Ratio)});
        break;
      case Kind::key:
        reader.take({record + field.offset, sizeof(QR_Params::private_key)});
        break;
      case Kind::bytes:
      case Kind::text: {
        const std::uint16_t length = reader.number();
        if (length == kNoPointer) break;
        const std::size_t size = std::min<std::size_t>(length, reader.left());
        const std::size_t end = field.kind == Kind::text ? 1 : 0;  // the NUL
        Block block{field.name, std::make_unique<std::uint8_t[]>(size + end), size};
        reader.take({block.bytes.get(), size});
        put(block.bytes.get());
        request.blocks.push_back(std::move(block));
        break;
      }
      case Kind::byte_count: {
        const auto count = static_cast<std::int16_t>(reader.number());
        const std::size_t most = request.bytes(field.counted).size();
        put(static_cast<std::int16_t>(count > 0 ? std::min<std::size_t>(count, most) : count));
        break;
      }
    }
  }
  return request;
}

std::vector<std::uint8_t> write_call(const Request& request) {
  std::vector<std::uint8_t> bytes;
  const auto* const record = reinterpret_cast<const std::uint8_t*>(&request.record);
  const auto append = [&](std::span<const std::uint8_t> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
  };
  for (const Field& field : request.target->fields) {
    const std::uint8_t* const place = record + field.offset;
    switch (field.kind) {
      case Kind::number:
      case Kind::natural:
      case Kind::byte_count:
        append({place, sizeof(std::uint16_t)});
        break;
      case Kind::numbers:
        append({place, sizeof(Bar_Ratio)});
        break;
      case Kind::key:
        append({place, sizeof(QR_Params::private_key)});
        break;
      case Kind::bytes:
      case Kind::text: {
        const auto block = request.bytes(field.name);
        append(std::vector{static_cast<std::uint8_t>(block.size() & 0xFF),
                           static_cast<std::uint8_t>(block.size() >> 8)});
        append(block);
        break;
      }
    }
  }
  return bytes;
}

}  // namespace korvex::fuzz
