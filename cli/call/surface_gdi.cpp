// The surface on GDI: a memory device context on a bitmap whose first colour means "not painted".
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <new>

#include "call/surface.hpp"
#include "call/trace_gdi.hpp"

namespace korvex::cli::call {
namespace {

// Enough for most symbols. Windows provides of it what is touched.
constexpr int kFirstWidth = 2048;
constexpr int kFirstHeight = 2048;

// A new bitmap is all zeros, so that nothing has to be filled.
enum Pixel : std::uint8_t { unpainted, dark, light };
constexpr RGBQUAD kColors[] = {{255, 0, 255, 0}, {0, 0, 0, 0}, {255, 255, 255, 0}};

}  // namespace

// A bitmap cannot be larger than memory has room for, and a call cannot be repeated on a larger one: some
// rewrite their data. So the context changes to a larger one just before the call paints outside.
struct Surface::State {
  explicit State(bool wants_trace) : context(CreateCompatibleDC(nullptr)), traced(wants_trace) {
    if (context == nullptr || !grow(kFirstWidth, kFirstHeight)) {
      DeleteDC(context);
      throw std::bad_alloc();
    }
  }

  ~State() {
    SelectObject(context, before);
    DeleteObject(bitmap);
    DeleteDC(context);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  /// Exchanges the bitmap for one of another size with the same picture. False when there is no memory for
  /// it.
  bool grow(int new_width, int new_height) {
    struct {
      BITMAPINFOHEADER header;
      RGBQUAD colors[std::size(kColors)];
    } info = {};
    info.header.biSize = sizeof info.header;
    info.header.biWidth = new_width;
    info.header.biHeight = -new_height;  // the top row comes first
    info.header.biPlanes = 1;
    info.header.biBitCount = 4;
    info.header.biClrUsed = std::size(kColors);
    std::ranges::copy(kColors, info.colors);

    void* memory = nullptr;
    const HBITMAP larger = CreateDIBSection(context, reinterpret_cast<const BITMAPINFO*>(&info),
                                            DIB_RGB_COLORS, &memory, nullptr, 0);
    if (larger == nullptr) return false;
    auto* const new_bits = static_cast<std::uint8_t*>(memory);
    const std::size_t new_stride = stride_of(new_width);
    GdiFlush();
    for (int y = 0; y < std::min(bottom, height); ++y) {
      const auto row = static_cast<std::size_t>(y);
      std::memcpy(new_bits + row * new_stride, bits + row * stride_of(width), stride_of(width));
    }
    const HGDIOBJ replaced = SelectObject(context, larger);
    if (bitmap == nullptr) {
      before = replaced;
    } else {
      DeleteObject(bitmap);
    }
    bitmap = larger;
    bits = new_bits;
    width = new_width;
    height = new_height;
    return true;
  }

  /// Makes room for what is painted next, and more than that, for rows and pixels come one by one.
  void reach(int new_right, int new_bottom) {
    const auto grown = [](int present, int wanted) {
      return wanted <= present ? present : std::max(wanted, 2 * present);
    };
    if ((new_right > width || new_bottom > height) &&
        !grow(grown(width, new_right), grown(height, new_bottom)) &&
        !grow(std::max(width, new_right), std::max(height, new_bottom))) {
      lost = true;
    }
    right = std::min(std::max(right, new_right), width);
    bottom = std::min(std::max(bottom, new_bottom), height);
  }

  [[nodiscard]] Pixel pixel(int x, int y) const {
    const std::uint8_t pair =
        bits[static_cast<std::size_t>(y) * stride_of(width) + static_cast<std::size_t>(x / 2)];
    return static_cast<Pixel>(x % 2 == 0 ? pair >> 4 : pair & 0xF);
  }

  /// Bytes from row to row: half a byte a pixel, in groups of four bytes.
  static std::size_t stride_of(int width) {
    return static_cast<std::size_t>((std::int64_t{width} + 7) / 8 * 4);
  }

  HDC context;
  HBITMAP bitmap = nullptr;
  HGDIOBJ before = nullptr;
  const std::uint8_t* bits = nullptr;
  int width = 0;  // of the bitmap
  int height = 0;
  int right = 0;  // of what the call wanted to paint
  int bottom = 0;
  bool lost = false;
  bool traced;
  GdiTrace calls{[this](int new_right, int new_bottom) { reach(new_right, new_bottom); }};
};

Surface::Surface(bool trace) : state_(std::make_unique<State>(trace)) {}

Surface::~Surface() = default;

Korvex_Device_Context Surface::context() const {
  return state_->context;
}

Surface::Size Surface::painted() const {
  const State& state = *state_;
  GdiFlush();
  Size painted;
  // From the far edges inwards: a symbol has painted there, and the search ends with its first pixel.
  for (int y = state.bottom; y > 0 && painted.height == 0; --y) {
    for (int x = state.right; x > 0; --x) {
      if (state.pixel(x - 1, y - 1) == unpainted) continue;
      painted.height = y;
      break;
    }
  }
  for (int x = state.right; x > 0 && painted.width == 0; --x) {
    for (int y = painted.height; y > 0; --y) {
      if (state.pixel(x - 1, y - 1) == unpainted) continue;
      painted.width = x;
      break;
    }
  }
  return painted;
}

void Surface::read_row(int y, std::span<std::uint8_t> bytes) const {
  std::ranges::fill(bytes, std::uint8_t{0});
  const int width = std::min(static_cast<int>(bytes.size()) * 8, state_->right);
  for (int x = 0; x < width; ++x) {
    if (state_->pixel(x, y) == dark) {
      bytes[static_cast<std::size_t>(x / 8)] |= static_cast<std::uint8_t>(0x80 >> (x % 8));
    }
  }
}

bool Surface::failed() const {
  return state_->lost;
}

std::vector<std::string> Surface::trace() const {
  return state_->traced ? GdiTrace::operations() : std::vector<std::string>();
}

}  // namespace korvex::cli::call
