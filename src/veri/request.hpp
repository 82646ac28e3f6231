// What the VERI encoder is asked for, and the sizes that follow from it.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "korvex/module_matrix.hpp"
#include "korvex/veri.hpp"

namespace korvex::veri {

inline constexpr int kBorderModules = 1;
inline constexpr int kBlockBytes = 8;
inline constexpr int kCheckValueBytes = 2;
inline constexpr int kMaxInterior = kMaxSize - 2 * kBorderModules;
inline constexpr int kMaxStreamBytes = kMaxInterior * kMaxInterior / 8;

/// Requires kMinSize <= size <= kMaxSize and data of at most capacity_bytes(size, correction).
struct Request {
  int size = 0;
  Correction correction = Correction::none;
  std::span<const std::uint8_t> data;

  [[nodiscard]] int interior() const { return size - 2 * kBorderModules; }
};

/// Bytes on their way into the interior; the first `size` count.
struct Bytes {
  std::array<std::uint8_t, kMaxStreamBytes> bytes;  // not cleared
  int size = 0;

  void push(std::uint8_t byte) { bytes[static_cast<std::size_t>(size++)] = byte; }
  [[nodiscard]] std::span<const std::uint8_t> all() const {
    return {bytes.data(), static_cast<std::size_t>(size)};
  }
};

/// The symbol of a request: data and check value, blocks, modules. Any thread, no memory but the result's.
ModuleMatrix draw(const Request& request);

/// The data, zero bytes up to the capacity, and the check value.
Bytes encodation(const Request& request);
/// `stream` in blocks with their check symbols; unchanged when there is no correction.
Bytes with_error_correction(const Bytes& stream, Correction correction);
/// The blocks in the interior, and the border around it.
ModuleMatrix construct(const Bytes& blocks, const Request& request);

}  // namespace korvex::veri
