// The painting surface of every system but Windows: the operations of GDI on an in-memory picture.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <utility>
#include <vector>

#include "frame/device.hpp"

using korvex::device::Color;

struct korvex::device::Bitmap {
  Korvex_Device* made_for;  // records what happens to the bitmap
  int width;
  int height;
  int stride;
  std::vector<std::uint8_t> bits;

  /// 1 bits are light. Requires a pixel inside.
  [[nodiscard]] bool light(int x, int y) const {
    return (bits[static_cast<std::size_t>(y) * static_cast<std::size_t>(stride) +
                 static_cast<std::size_t>(x / 8)] >>
                (7 - x % 8) &
            1) != 0;
  }
};

namespace {

constexpr Color kUnpainted = 0xFF000000;  // no colour of GDI's has these bits

enum class Operation : std::uint8_t {
  create_bitmap,
  create_compatible_dc,
  select_object,
  bit_blt,
  delete_dc,
  delete_object,
  set_pixel
};

constexpr const char* kOperationNames[] = {"CreateBitmap", "CreateCompatibleDC", "SelectObject", "BitBlt",
                                           "DeleteDC",     "DeleteObject",       "SetPixel"};

struct Entry {
  Operation operation;
  std::int32_t repeats;
};

}  // namespace

// A picture, or a memory device context: then it only holds the selected bitmap.
struct Korvex_Device {
  bool grows = false;
  bool failed = false;
  bool recording = false;
  int width = 0;  // of a picture of fixed size
  int height = 0;
  int capacity_width = 0;  // of `pixels`
  int capacity_height = 0;
  int painted_width = 0;
  int painted_height = 0;
  Color text = korvex::device::kBlack;
  Color background = korvex::device::kWhite;
  std::vector<Color> pixels;  // rows of capacity_width
  std::vector<Entry> operations;
  const korvex::device::Bitmap* selected = nullptr;
  Korvex_Device* compatible_with = nullptr;  // the picture that records for a memory device context

  [[nodiscard]] std::size_t index(int x, int y) const {
    return static_cast<std::size_t>(y) * static_cast<std::size_t>(capacity_width) +
           static_cast<std::size_t>(x);
  }

  void note(Operation operation) noexcept {
    if (!recording) return;
    if (operation == Operation::set_pixel && !operations.empty() &&
        operations.back().operation == Operation::set_pixel) {
      ++operations.back().repeats;
      return;
    }
    try {
      operations.push_back({operation, 1});
    } catch (const std::bad_alloc&) {
      failed = true;
    }
  }

  /// Makes room for width x height pixels, with slack when pixels come one by one. False when there is none.
  bool reserve(int wanted_width, int wanted_height, bool slack) {
    if (wanted_width <= capacity_width && wanted_height <= capacity_height) return true;
    const auto grown = [slack](int wanted, int present) {
      if (wanted <= present) return present;
      const bool doubles = slack && wanted < std::numeric_limits<int>::max() / 2;
      return doubles ? std::max({wanted, 2 * present, 64}) : wanted;
    };
    const int new_width = grown(wanted_width, capacity_width);
    const int new_height = grown(wanted_height, capacity_height);
    std::vector<Color> grown_pixels;
    const auto count = static_cast<std::uint64_t>(new_width) * static_cast<std::uint64_t>(new_height);
    try {
      if (count > grown_pixels.max_size()) throw std::bad_alloc();  // 32 bits may not even hold the product
      grown_pixels.assign(static_cast<std::size_t>(count), kUnpainted);
    } catch (const std::bad_alloc&) {
      failed = true;
      return false;
    }
    for (int y = 0; y < painted_height; ++y) {
      std::copy_n(pixels.begin() + static_cast<std::ptrdiff_t>(index(0, y)), painted_width,
                  grown_pixels.begin() + static_cast<std::ptrdiff_t>(y) * new_width);
    }
    pixels = std::move(grown_pixels);
    capacity_width = new_width;
    capacity_height = new_height;
    return true;
  }

  void painted_to(int right, int bottom) {
    painted_width = std::max(painted_width, right);
    painted_height = std::max(painted_height, bottom);
  }
};

namespace korvex::device {

Bitmap* create_bitmap(Korvex_Device* context, int width, int height, const std::uint8_t* bits) {
  if (context == nullptr) return nullptr;
  context->note(Operation::create_bitmap);
  const int stride = (width + 15) / 16 * 2;
  try {
    return new Bitmap{
        context,
        width,
        height,
        stride,
        {bits, bits + static_cast<std::ptrdiff_t>(stride) * static_cast<std::ptrdiff_t>(height)}};
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

Korvex_Device* create_compatible_dc(Korvex_Device* context) {
  if (context == nullptr) return nullptr;
  context->note(Operation::create_compatible_dc);
  auto* const memory = new (std::nothrow) Korvex_Device;
  if (memory != nullptr) memory->compatible_with = context;
  return memory;
}

void select_object(Korvex_Device* memory, Bitmap* bitmap) {
  if (memory == nullptr) return;
  memory->compatible_with->note(Operation::select_object);
  memory->selected = bitmap;
}

void bit_blt(Korvex_Device* context, int x, int y, int width, int height, Korvex_Device* source) {
  if (context == nullptr) return;
  context->note(Operation::bit_blt);
  if (source == nullptr || source->selected == nullptr) {
    context->failed = true;
    return;
  }
  const Bitmap& bitmap = *source->selected;
  const int left = std::max(x, 0);
  const int top = std::max(y, 0);
  int right = x + std::min(width, bitmap.width);
  int bottom = y + std::min(height, bitmap.height);
  if (context->grows) {
    if (right > left && bottom > top && !context->reserve(right, bottom, false)) return;
  } else {
    right = std::min(right, context->width);
    bottom = std::min(bottom, context->height);
  }
  if (right <= left || bottom <= top) return;
  for (int to_y = top; to_y < bottom; ++to_y) {
    Color* const row = &context->pixels[context->index(0, to_y)];
    for (int to_x = left; to_x < right; ++to_x) {
      row[to_x] = bitmap.light(to_x - x, to_y - y) ? context->background : context->text;
    }
  }
  context->painted_to(right, bottom);
}

void delete_dc(Korvex_Device* memory) {
  if (memory == nullptr) return;
  memory->compatible_with->note(Operation::delete_dc);
  delete memory;
}

void delete_object(Bitmap* bitmap) {
  if (bitmap == nullptr) return;
  bitmap->made_for->note(Operation::delete_object);
  delete bitmap;
}

void set_pixel(Korvex_Device* context, int x, int y, Color color) {
  if (context == nullptr) return;
  context->note(Operation::set_pixel);
  if (x < 0 || y < 0) return;
  if (context->grows ? !context->reserve(x + 1, y + 1, true) : x >= context->width || y >= context->height)
    return;
  context->pixels[context->index(x, y)] = color;
  context->painted_to(x + 1, y + 1);
}

}  // namespace korvex::device

extern "C" {

Korvex_Device* korvex_device_create(int32_t width, int32_t height) {
  if (width < 0 || height < 0) return nullptr;
  auto* const device = new (std::nothrow) Korvex_Device;
  if (device == nullptr) return nullptr;
  device->grows = width == 0 && height == 0;
  device->width = width;
  device->height = height;
  if (!device->grows && !device->reserve(width, height, false)) {
    delete device;
    return nullptr;
  }
  return device;
}

void korvex_device_destroy(Korvex_Device* device) {
  delete device;
}

void korvex_device_set_colors(Korvex_Device* device, uint32_t text, uint32_t background) {
  device->text = text & 0xFFFFFF;
  device->background = background & 0xFFFFFF;
}

int32_t korvex_device_width(const Korvex_Device* device) {
  return device->grows ? device->painted_width : device->width;
}

int32_t korvex_device_height(const Korvex_Device* device) {
  return device->grows ? device->painted_height : device->height;
}

int korvex_device_is_painted(const Korvex_Device* device, int32_t x, int32_t y) {
  return x >= 0 && y >= 0 && x < device->painted_width && y < device->painted_height &&
         device->pixels[device->index(x, y)] != kUnpainted;
}

uint32_t korvex_device_pixel(const Korvex_Device* device, int32_t x, int32_t y) {
  return korvex_device_is_painted(device, x, y) ? device->pixels[device->index(x, y)]
                                                : korvex::device::kWhite;
}

void korvex_device_painted_size(const Korvex_Device* device, int32_t* width, int32_t* height) {
  *width = device->painted_width;
  *height = device->painted_height;
}

int korvex_device_failed(const Korvex_Device* device) {
  return device->failed ? 1 : 0;
}

void korvex_device_record(Korvex_Device* device, int on) {
  device->recording = on != 0;
}

int32_t korvex_device_operation_count(const Korvex_Device* device) {
  return static_cast<int32_t>(device->operations.size());
}

const char* korvex_device_operation(const Korvex_Device* device, int32_t index, int32_t* repeats) {
  if (index < 0 || index >= korvex_device_operation_count(device)) return nullptr;
  const Entry& entry = device->operations[static_cast<std::size_t>(index)];
  if (repeats != nullptr) *repeats = entry.repeats;
  return kOperationNames[static_cast<std::size_t>(entry.operation)];
}

}  // extern "C"
