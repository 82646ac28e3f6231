// The surface on GDI: a memory device context on a bitmap whose first colour means "not painted".
#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <new>
#include <optional>

#include "call/surface.hpp"
#include "call/trace_gdi.hpp"

namespace korvex::cli::call {
namespace {

// A bitmap cannot grow under the call, and a call cannot be repeated on a larger one: some rewrite their
// data. So it is larger than any QR symbol (177 modules of 99 pixels) and wider than any width that the size
// pair can hold. With four bits a pixel that is 297 MB of address space, of which Windows provides what is
// touched.
constexpr int kWidth = 33'000;
constexpr int kHeight = 18'000;
constexpr int kStride = kWidth / 2;
static_assert(kStride % 4 == 0);

// A new bitmap is all zeros, so that nothing has to be filled.
enum Pixel : std::uint8_t { unpainted, dark, light };
constexpr RGBQUAD kColors[] = {{255, 0, 255, 0}, {0, 0, 0, 0}, {255, 255, 255, 0}};

}  // namespace

struct Surface::State {
  explicit State(bool trace) {
    struct {
      BITMAPINFOHEADER header;
      RGBQUAD colors[3];
    } info = {};
    info.header.biSize = sizeof info.header;
    info.header.biWidth = kWidth;
    info.header.biHeight = -kHeight;  // the top row comes first
    info.header.biPlanes = 1;
    info.header.biBitCount = 4;
    info.header.biClrUsed = 3;
    std::ranges::copy(kColors, info.colors);

    context = CreateCompatibleDC(nullptr);
    void* memory = nullptr;
    bitmap = CreateDIBSection(context, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, &memory,
                              nullptr, 0);
    if (bitmap == nullptr) {
      DeleteDC(context);
      throw std::bad_alloc();
    }
    before = SelectObject(context, bitmap);
    bits = static_cast<const std::uint8_t*>(memory);
    SetBoundsRect(context, nullptr, DCB_RESET | DCB_ENABLE);
    if (trace) operations.emplace();
  }

  ~State() {
    SelectObject(context, before);
    DeleteObject(bitmap);
    DeleteDC(context);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  [[nodiscard]] Pixel pixel(int x, int y) const {
    const std::uint8_t pair = bits[static_cast<std::size_t>(y) * kStride + static_cast<std::size_t>(x / 2)];
    return static_cast<Pixel>(x % 2 == 0 ? pair >> 4 : pair & 0xF);
  }

  /// The size of the area that GDI says it painted in, which may be larger than what it painted.
  [[nodiscard]] Size bounds() const {
    GdiFlush();
    RECT area = {};
    if (GetBoundsRect(context, &area, 0) != DCB_SET) return {};
    return {static_cast<int>(area.right), static_cast<int>(area.bottom)};
  }

  HDC context = nullptr;
  HBITMAP bitmap = nullptr;
  HGDIOBJ before = nullptr;
  const std::uint8_t* bits = nullptr;
  std::optional<GdiTrace> operations;
};

Surface::Surface(bool trace) : state_(std::make_unique<State>(trace)) {}

Surface::~Surface() = default;

Korvex_Device_Context Surface::context() const {
  return state_->context;
}

Surface::Size Surface::painted() const {
  const State& state = *state_;
  const Size area = state.bounds();
  const int right = std::min(area.width, kWidth);
  const int bottom = std::min(area.height, kHeight);
  Size painted;
  // From the far edges inwards: a symbol has painted there, and the search ends with its first pixel.
  for (int y = bottom; y > 0 && painted.height == 0; --y) {
    for (int x = right; x > 0; --x) {
      if (state.pixel(x - 1, y - 1) == unpainted) continue;
      painted.height = y;
      break;
    }
  }
  for (int x = right; x > 0 && painted.width == 0; --x) {
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
  const int width = std::min(static_cast<int>(bytes.size()) * 8, kWidth);
  for (int x = 0; x < width; ++x) {
    if (state_->pixel(x, y) == dark) {
      bytes[static_cast<std::size_t>(x / 8)] |= static_cast<std::uint8_t>(0x80 >> (x % 8));
    }
  }
}

bool Surface::failed() const {
  const Size area = state_->bounds();
  return area.width >= kWidth || area.height >= kHeight;
}

std::vector<std::string> Surface::trace() const {
  return state_->operations ? state_->operations->operations() : std::vector<std::string>();
}

}  // namespace korvex::cli::call
