// Everything that paints, on every kind of destination of GDI, ten thousand times over, and without memory.
//   painting.exe destinations | leaks
// Prints a line for every check: "ok - name", "not ok - name: why".
#include <windows.h>
// After windows.h.
#include <psapi.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "call/imports_gdi.hpp"
#include "frame/device.hpp"
#include "frame/raster.hpp"
#include "korvex/korvex32.h"

namespace {

constexpr COLORREF kUnpainted = RGB(128, 128, 128);

int failures = 0;

void report(const std::string& name, const std::string& why) {
  if (why.empty()) {
    std::printf("ok - %s\n", name.c_str());
  } else {
    std::printf("not ok - %s: %s\n", name.c_str(), why.c_str());
    ++failures;
  }
}

// ---- What paints ----

/// A checkered symbol whose pixel width is no multiple of 16, with no symmetry that would hide a mirrored
/// row.
korvex::ModuleMatrix some_symbol() {
  korvex::ModuleMatrix symbol(14, 19);
  for (int row = 0; row < symbol.rows(); ++row) {
    for (int column = 0; column < symbol.columns(); ++column) {
      symbol.set_dark(row, column, (row * row + 3 * column * row + column * column) % 7 < 3);
    }
  }
  return symbol;
}

constexpr korvex::raster::ModulePixels kModule{3, 2};

bool dark_at(const korvex::ModuleMatrix& symbol, int x, int y) {
  return symbol.dark(y / kModule.height, x / kModule.width);
}

struct Painter {
  std::string name;
  bool in_colors_of_context;  // bitmaps are; single pixels are black and white
  std::function<std::int16_t(HDC, Symbol_Size&)> paint;
};

std::uint8_t message[] = "KORVEX 32";
constexpr auto kMessageLength = static_cast<std::int16_t>(sizeof message - 1);

template <class Params>
Painter exported(HMODULE library, const char* name, bool in_colors_of_context, Params params) {
  using Export = std::int16_t(KORVEX_CALL*)(HDC, Params*, Symbol_Size*);
  const auto function = reinterpret_cast<Export>(reinterpret_cast<void*>(GetProcAddress(library, name)));
  return {name, in_colors_of_context, [function, params](HDC context, Symbol_Size& size) mutable {
            return function(context, &params, &size);
          }};
}

std::vector<Painter> all_painters(HMODULE library) {
  const korvex::ModuleMatrix symbol = some_symbol();
  const Symbol_Size painted{static_cast<std::int16_t>(symbol.columns() * kModule.width),
                            static_cast<std::int16_t>(symbol.rows() * kModule.height)};
  std::vector<Painter> painters = {
      {"a module matrix as a bitmap", true,
       [=](HDC context, Symbol_Size& size) {
         size = painted;
         return korvex::raster::paint(context, symbol, kModule);
       }},
      {"a module matrix pixel by pixel", false,
       [=](HDC context, Symbol_Size& size) {
         size = painted;
         for (int y = 0; y < painted.height; ++y) {
           for (int x = 0; x < painted.width; ++x) {
             korvex::device::set_pixel(
                 context, x, y, dark_at(symbol, x, y) ? korvex::device::kBlack : korvex::device::kWhite);
           }
         }
         return std::int16_t{KORVEX_OK};
       }},
  };
  QR_Params qr{};
  qr.ecc_level = 2, qr.module_size = 3, qr.symbol_type = 2, qr.rmqr_rows = 1, qr.data = message;
  qr.data_length = kMessageLength;
  PDF_Params pdf{};
  pdf.module_width = 1, pdf.row_height = 3, pdf.data = message, pdf.length = kMessageLength;
  DATA_Params data_matrix{};
  data_matrix.module_width = 3, data_matrix.module_height = 2, data_matrix.data = message;
  data_matrix.length = kMessageLength;
  MAXI_Params maxicode{};
  maxicode.position = 1, maxicode.total = 1, maxicode.mode = 4,
  maxicode.message = reinterpret_cast<char*>(message);
  CC_Params composite{};
  static const std::uint8_t item[] = "2401234567890|99AB";
  composite.type = 1, composite.module_size = 1, composite.data = item, composite.length = sizeof item - 1;
  VERI_Params veri{};
  veri.symbol_size = 18, veri.module_width = 3, veri.module_height = 3, veri.data = message;
  veri.data_length = kMessageLength;
  painters.push_back(exported(library, "QR_Encode", true, qr));
  painters.push_back(exported(library, "PDF_Encode", true, pdf));
  painters.push_back(exported(library, "DATA_Encode", true, data_matrix));
  painters.push_back(exported(library, "MAXI_Encode", false, maxicode));
  painters.push_back(exported(library, "CC_Encode", true, composite));
  painters.push_back(exported(library, "VERI_Encode", false, veri));
  return painters;
}

// ---- What is painted on ----

struct Destination {
  const char* name;
  WORD bits_per_pixel;
  int width;
  int height;
  COLORREF text;
  COLORREF background;
};

constexpr COLORREF kBlack = RGB(0, 0, 0);
constexpr COLORREF kWhite = RGB(255, 255, 255);
constexpr Destination kPlain = {"32 bits, default colours", 32, 400, 250, kBlack, kWhite};
constexpr Destination kDestinations[] = {
    {"32 bits, red on yellow", 32, 400, 250, RGB(255, 0, 0), RGB(255, 255, 0)},
    {"24 bits", 24, 400, 250, kBlack, kWhite},
    {"24 bits, light on dark blue", 24, 400, 250, RGB(200, 220, 255), RGB(0, 0, 90)},
    {"1 bit", 1, 400, 250, kBlack, kWhite},
    {"1 bit, white on black", 1, 400, 250, kWhite, kBlack},
    {"24 bits, smaller than the symbol", 24, 21, 17, kBlack, kWhite},
    {"1 bit, a single row", 1, 400, 1, kBlack, kWhite},
};

/// A device context on a bitmap of its own, grey where nothing was painted (one bit: white).
class Surface {
 public:
  explicit Surface(const Destination& kind) : width_(kind.width), height_(kind.height) {
    struct {
      BITMAPINFOHEADER header;
      RGBQUAD colors[2];
    } info = {{}, {{0, 0, 0, 0}, {255, 255, 255, 0}}};
    info.header.biSize = sizeof info.header;
    info.header.biWidth = width_;
    info.header.biHeight = -height_;
    info.header.biPlanes = 1;
    info.header.biBitCount = kind.bits_per_pixel;
    context_ = CreateCompatibleDC(nullptr);
    void* bits = nullptr;
    bitmap_ = CreateDIBSection(context_, reinterpret_cast<const BITMAPINFO*>(&info), DIB_RGB_COLORS, &bits,
                               nullptr, 0);
    if (bitmap_ == nullptr) throw std::bad_alloc();
    before_ = SelectObject(context_, bitmap_);
    const HBRUSH brush = CreateSolidBrush(kind.bits_per_pixel == 1 ? kWhite : kUnpainted);
    const RECT whole = {0, 0, width_, height_};
    FillRect(context_, &whole, brush);
    DeleteObject(brush);
    SetTextColor(context_, kind.text);
    SetBkColor(context_, kind.background);
  }
  ~Surface() {
    SelectObject(context_, before_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
  }
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  [[nodiscard]] HDC context() const { return context_; }
  [[nodiscard]] int width() const { return width_; }
  [[nodiscard]] int height() const { return height_; }
  [[nodiscard]] COLORREF pixel(int x, int y) const { return GetPixel(context_, x, y); }

 private:
  int width_;
  int height_;
  HDC context_;
  HBITMAP bitmap_;
  HGDIOBJ before_;
};

std::string place(int x, int y) {
  std::string words;
  return words.append("the pixel at ").append(std::to_string(x)).append(", ").append(std::to_string(y));
}

/// Why `picture` is not the one of `plain` in the destination's colours; empty when it is.
std::string difference(const Painter& painter, const Destination& kind, const Surface& picture,
                       const Surface& plain) {
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      COLORREF expected = plain.pixel(x, y);
      if (expected == kUnpainted) {
        if (kind.bits_per_pixel == 1) expected = kWhite;
      } else if (painter.in_colors_of_context) {
        expected = expected == kBlack ? kind.text : kind.background;
      }
      if (picture.pixel(x, y) != expected) return place(x, y) + " has another colour";
    }
  }
  return {};
}

void check_plain(const Painter& painter, const Surface& plain, Symbol_Size size) {
  const korvex::ModuleMatrix symbol = some_symbol();
  for (int y = 0; y < plain.height(); ++y) {
    for (int x = 0; x < plain.width(); ++x) {
      const bool inside = x < size.width && y < size.height;
      const COLORREF expected = !inside ? kUnpainted : dark_at(symbol, x, y) ? kBlack : kWhite;
      if (plain.pixel(x, y) != expected) return report(painter.name, place(x, y) + " has the wrong colour");
    }
  }
  report(painter.name, "");
}

void check_destinations(const Painter& painter, bool own_symbol) {
  const Surface plain(kPlain);
  Symbol_Size size{-1, -1};
  const std::int16_t result = painter.paint(plain.context(), size);
  if (own_symbol) check_plain(painter, plain, size);
  for (const Destination& kind : kDestinations) {
    const Surface picture(kind);
    Symbol_Size again{-1, -1};
    const std::int16_t same = painter.paint(picture.context(), again);
    std::string why = difference(painter, kind, picture, plain);
    if (same != KORVEX_OK || result != KORVEX_OK) why = "the result is " + std::to_string(same);
    if (again.width != size.width || again.height != size.height) why = "the size pair differs";
    report(painter.name + " on " + kind.name, why);
  }
}

// ---- What is left behind ----

/// How many GDI objects this process can still make: exact, where a count of those in use is not to be had.
std::size_t free_gdi_objects() {
  std::vector<HGDIOBJ> objects;
  while (const HGDIOBJ object = CreateSolidBrush(RGB(1, 2, 3))) objects.push_back(object);
  std::ranges::for_each(objects, [](HGDIOBJ object) { DeleteObject(object); });
  return objects.size();
}

/// Bytes in use on the heaps of the process.
std::size_t busy_bytes() {
  HANDLE heaps[64];
  const DWORD count = std::min<DWORD>(GetProcessHeaps(64, heaps), 64);
  std::size_t bytes = 0;
  for (DWORD index = 0; index < count; ++index) {
    PROCESS_HEAP_ENTRY entry{};
    while (HeapWalk(heaps[index], &entry) != 0) {
      if ((entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0) bytes += entry.cbData;
    }
  }
  return bytes;
}

std::size_t working_set() {
  PROCESS_MEMORY_COUNTERS counters{};
  GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters.WorkingSetSize;
}

DWORD open_handles() {
  DWORD count = 0;
  GetProcessHandleCount(GetCurrentProcess(), &count);
  return count;
}

struct Usage {
  std::size_t free_objects = free_gdi_objects();
  std::size_t heap = busy_bytes();
  std::size_t memory = working_set();
};

/// The measures themselves: each sees one thing left behind.
void check_measures() {
  const std::size_t objects = free_gdi_objects();
  const HGDIOBJ brush = CreateSolidBrush(kWhite);
  report("one GDI object left behind is seen", free_gdi_objects() == objects - 1 ? "" : "it is not");
  DeleteObject(brush);

  const std::size_t heap = busy_bytes();
  void* volatile block = std::malloc(100);
  report("a hundred bytes left behind are seen", busy_bytes() >= heap + 100 ? "" : "they are not");
  std::free(block);
}

/// A linear symbol is painted nowhere.
std::int16_t call_bit(HMODULE library) {
  const auto bit =
      reinterpret_cast<decltype(&Korvex_Bit)>(reinterpret_cast<void*>(GetProcAddress(library, "Korvex_Bit")));
  std::uint32_t bars[188], guards[188];
  char human_readable[23];
  const Bar_Ratio ratio{};
  const Bit_Data data{12, reinterpret_cast<const std::uint8_t*>("400638133393")};
  Bit_Result pattern{0, bars, guards, 0, human_readable, {}};
  return bit(3, 1, 1, &ratio, &data, &pattern);
}

void check_leaks(const std::vector<Painter>& painters, HMODULE library) {
  constexpr int kCalls = 10'000;
  constexpr int kPixelEvery = 200;  // painters that set pixels make tens of thousands of GDI calls each
  constexpr std::size_t kSlack = std::size_t{1} << 20;
  const Surface surface(kPlain);
  const auto call_all = [&](int round) {
    call_bit(library);
    for (const Painter& painter : painters) {
      Symbol_Size size{};
      if (painter.in_colors_of_context || round % kPixelEvery == 0) painter.paint(surface.context(), size);
    }
  };
  for (int round = 0; round < kPixelEvery; ++round) call_all(round);  // what is made once is made now
  const Usage before;
  for (int round = 0; round < kCalls; ++round) call_all(round);
  const Usage after;
  report("ten thousand calls of everything leave no GDI object behind",
         after.free_objects == before.free_objects
             ? ""
             : std::to_string(before.free_objects) + " could be made before, then " +
                   std::to_string(after.free_objects));
  report("ten thousand calls of everything leave nothing on the heap",
         after.heap <= before.heap ? "" : std::to_string(after.heap - before.heap) + " bytes");
  report("ten thousand calls of everything leave the working set as it was",
         after.memory <= before.memory + kSlack
             ? ""
             : std::to_string(after.memory - before.memory) + " bytes more");
}

// ---- When there is no memory ----

/// Counts the DLL's allocations down; the one at 0 fails, and all after it. Below 0 none fails.
int allocations_left = -1;

bool may_allocate() {
  if (allocations_left > 0) --allocations_left;
  return allocations_left != 0;
}
void* limited_malloc(std::size_t size) {
  return may_allocate() ? std::malloc(size) : nullptr;
}
void* limited_calloc(std::size_t count, std::size_t size) {
  return may_allocate() ? std::calloc(count, size) : nullptr;
}
void* limited_realloc(void* block, std::size_t size) {
  return may_allocate() ? std::realloc(block, size) : nullptr;
}
ULONG_PTR limited(std::string_view name) {
  if (name == "malloc") return reinterpret_cast<ULONG_PTR>(&limited_malloc);
  if (name == "calloc") return reinterpret_cast<ULONG_PTR>(&limited_calloc);
  if (name == "realloc") return reinterpret_cast<ULONG_PTR>(&limited_realloc);
  return 0;
}

using Call = std::function<std::int16_t()>;
struct Work {
  const Call& call;
  int allocations;
  std::int16_t result;
};
DWORD WINAPI work_on(void* argument) {
  auto& work = *static_cast<Work*>(argument);
  allocations_left = work.allocations;
  work.result = work.call();
  allocations_left = -1;
  return 0;
}
/// With so many allocations and no more. A thread's first exception is the one that needs most.
std::int16_t on_new_thread(const Call& call, int allocations) {
  Work work = {call, allocations, 0};
  const HANDLE thread = CreateThread(nullptr, 0, work_on, &work, 0, nullptr);
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  return work.result;
}

void check_without_memory(const std::string& name, const Call& call) {
  constexpr int kMost = 2000;
  int failed = 0;
  std::string why;
  for (int count = 0; why.empty(); ++count) {
    const std::int16_t result = on_new_thread(call, count);
    if (result == KORVEX_OK) break;
    ++failed;
    if (result != KORVEX_NO_SYMBOL || count == kMost) {
      why = std::to_string(result) + " after allocation " + std::to_string(count);
    }
  }
  if (failed == 0) why = "it never fails";
  if (on_new_thread(call, -1) != KORVEX_OK) why = "it stays broken";
  report(name + " without memory", why);
}

void check_without_memory(const std::vector<Painter>& painters, HMODULE library) {
  const Surface surface(kPlain);
  const korvex::cli::call::Imports imports("msvcrt.dll", limited);
  const bool takes_none = on_new_thread([library] { return call_bit(library); }, 0) == KORVEX_OK;
  report("Korvex_Bit without memory", takes_none ? "" : "it takes some");
  for (std::size_t index = 2; index < painters.size(); ++index) {
    const Painter& painter = painters[index];
    check_without_memory(painter.name, [&] {
      Symbol_Size size{};
      return painter.paint(surface.context(), size);
    });
  }
}

// ---- Loaded and unloaded ----

/// A round as a script host makes it, with a call that runs out of memory.
void load_call_unload(const Surface& surface) {
  const HMODULE library = LoadLibraryA("KORVEX32.dll");
  {
    const korvex::cli::call::Imports imports("msvcrt.dll", limited);
    const Painter painter = all_painters(library)[2];
    Symbol_Size size{};
    painter.paint(surface.context(), size);
    allocations_left = 1;
    painter.paint(surface.context(), size);
    allocations_left = -1;
    call_bit(library);
  }
  FreeLibrary(library);
}

/// Requires that nobody else holds the DLL.
void check_loads() {
  constexpr int kRounds = 100;
  const Surface surface(kPlain);
  for (int round = 0; round < 10; ++round) load_call_unload(surface);
  const bool gone = GetModuleHandleA("KORVEX32.dll") == nullptr;
  const std::size_t heap = busy_bytes();
  const DWORD handles = open_handles();
  for (int round = 0; round < kRounds; ++round) load_call_unload(surface);
  const std::size_t more = busy_bytes() - heap;
  const DWORD more_handles = open_handles() - handles;
  report("a hundred loads, calls and unloads leave nothing behind",
         !gone ? "the DLL stays loaded"
         : more == 0 && more_handles == 0
             ? ""
             : std::to_string(more) + " bytes, " + std::to_string(more_handles) + " handles");
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc == 2 ? argv[1] : "";
  const HMODULE library = LoadLibraryA("KORVEX32.dll");
  if (library == nullptr) {
    std::fprintf(stderr, "KORVEX32.dll does not load: error %lu\n", GetLastError());
    return 1;
  }
  const std::vector<Painter> painters = all_painters(library);
  if (what == "destinations") {
    for (std::size_t index = 0; index < painters.size(); ++index)
      check_destinations(painters[index], index < 2);
  } else if (what == "leaks") {
    check_measures();
    check_leaks(painters, library);
    check_without_memory(painters, library);
    FreeLibrary(library);
    check_loads();
  } else {
    std::fprintf(stderr, "usage: painting.exe destinations | leaks\n");
    return 2;
  }
  return failures == 0 ? 0 : 1;
}
