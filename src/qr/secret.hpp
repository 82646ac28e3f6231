// Values that leave no trace in memory.
#pragma once

#include <array>
#include <cstring>
#include <type_traits>
#include <utility>

#include "korvex/qr.hpp"

namespace korvex::qr {

/// Overwrites `bytes` bytes. The compiler must take it that somebody reads the zeros, so it cannot drop the
/// writing.
inline void wipe(void* place, std::size_t bytes) {
  std::memset(place, 0, bytes);
  asm volatile("" : : "r"(place) : "memory");
}

/// Overwrites what calls that have returned left on the stack: copies that a compiler made of its own accord
/// where registers ran out. They must not have been inlined.
[[gnu::noinline]] inline void wipe_stack_below() {
  std::array<unsigned char, 8192> below;
  wipe(below.data(), below.size());
}

/// Holds a key, or what follows from one, and wipes it at the end of its life.
template <class T>
class Secret {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  Secret() = default;  // the value is not initialised
  explicit Secret(const T& value) : value_(value) {}
  ~Secret() { wipe(&value_, sizeof value_); }
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;

  T& operator*() { return value_; }
  const T& operator*() const { return value_; }
  T* operator->() { return &value_; }

 private:
  T value_;
};

/// Options whose key is wiped when they go.
struct OptionsWithKey {
  Options options;

  explicit OptionsWithKey(const Options& read) : options(read) {}
  OptionsWithKey(const OptionsWithKey&) = delete;
  OptionsWithKey& operator=(const OptionsWithKey&) = delete;
  ~OptionsWithKey() {
    if (options.private_data) wipe(&options.private_data->key, sizeof options.private_data->key);
  }
};

}  // namespace korvex::qr
