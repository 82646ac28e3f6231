// The surface on the portable device.
#include <algorithm>
#include <new>

#include "call/surface.hpp"

namespace korvex::cli::call {

struct Surface::State {
  Korvex_Device* device;
};

Surface::Surface(bool trace) : state_(new State{korvex_device_create(0, 0)}) {
  if (state_->device == nullptr) throw std::bad_alloc();
  korvex_device_record(state_->device, trace ? 1 : 0);
}

Surface::~Surface() {
  korvex_device_destroy(state_->device);
}

Korvex_Device_Context Surface::context() const {
  return state_->device;
}

Surface::Size Surface::painted() const {
  Size size;
  korvex_device_painted_size(state_->device, &size.width, &size.height);
  return size;
}

void Surface::read_row(int y, std::span<std::uint8_t> bytes) const {
  std::ranges::fill(bytes, std::uint8_t{0});
  const int width = painted().width;
  for (int x = 0; x < width; ++x) {
    if (korvex_device_pixel(state_->device, x, y) == 0x000000) {
      bytes[static_cast<std::size_t>(x / 8)] |= static_cast<std::uint8_t>(0x80 >> (x % 8));
    }
  }
}

bool Surface::failed() const {
  return korvex_device_failed(state_->device) != 0;
}

std::vector<std::string> Surface::trace() const {
  std::vector<std::string> entries;
  const std::int32_t count = korvex_device_operation_count(state_->device);
  for (std::int32_t index = 0; index < count; ++index) {
    std::int32_t repeats = 0;
    std::string name = korvex_device_operation(state_->device, index, &repeats);
    if (name == "SetPixel") name.append("*").append(std::to_string(repeats));
    entries.push_back(std::move(name));
  }
  return entries;
}

}  // namespace korvex::cli::call
