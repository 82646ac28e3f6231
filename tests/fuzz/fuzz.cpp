// The fuzz target of the export that KORVEX_FUZZED names: any record, any bytes. What must hold whatever it
// is called with is checked here; reads and writes out of bounds are the sanitizers' to find.
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "fuzz/input.hpp"

namespace {

using namespace korvex::cli::call;
using korvex::fuzz::read_call;

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s: %s\n", KORVEX_FUZZED, what);
  std::abort();
}

const Exports kExports = load_exports();

// ---- Korvex_Bit ----

constexpr std::size_t kWords = 188;
constexpr int kModulesMost = 5984;
constexpr std::size_t kTextBytes = 23;

/// What a caller has afterwards, in blocks of exactly the sizes that it must give.
struct Bits {
  std::int16_t code = 0;
  Bit_Result result{};
  std::unique_ptr<std::uint32_t[]> bars = std::make_unique<std::uint32_t[]>(kWords);
  std::unique_ptr<std::uint32_t[]> guards = std::make_unique<std::uint32_t[]>(kWords);
  std::unique_ptr<char[]> text = std::make_unique<char[]>(kTextBytes);

  explicit Bits(const Export& target, std::span<const std::uint8_t> input) {
    result.bars = bars.get();
    result.guards = guards.get();
    result.text = text.get();
    const Request request = read_call(target, input);
    code = target.bits(kExports, request.record, result);
  }
  [[nodiscard]] bool dark(int module) const {
    return (bars[static_cast<std::size_t>(module / 32)] >> (31 - module % 32) & 1U) != 0;
  }
  [[nodiscard]] bool same(const Bits& other) const {
    return code == other.code && result.bit_count == other.result.bit_count &&
           result.text_length == other.result.text_length &&
           std::equal(bars.get(), bars.get() + kWords, other.bars.get()) &&
           std::equal(guards.get(), guards.get() + kWords, other.guards.get()) &&
           std::equal(text.get(), text.get() + kTextBytes, other.text.get()) &&
           std::ranges::equal(result.text_groups, other.result.text_groups);
  }
};

/// The second call is the twin's.
void check_bits(const Export& target, const Export& twin, std::span<const std::uint8_t> input) {
  const Bits first(target, input);
  require(first.same(Bits(twin, input)), "the same call gives another answer");
  if (first.code != KORVEX_OK) {
    require(first.code == KORVEX_BAD_PARAMETER || first.code == KORVEX_BAD_DATA, "an unknown result code");
    return;
  }
  const int modules = first.result.bit_count;
  require(modules > 0 && modules <= kModulesMost, "a symbol without modules, or with too many");
  for (int module = modules; module < (modules / 32 + 1) * 32; ++module) {
    require(!first.dark(module), "bars behind the symbol");
  }
  const int length = first.result.text_length;
  require(length >= 0 && length < static_cast<int>(kTextBytes), "text that is too long for its buffer");
}

// ---- the exports that paint ----

/// No size, so that one that was written is seen.
constexpr std::int16_t kUnwritten = -12345;
constexpr std::int64_t kPixelsMost = 1 << 20;  // of a picture that is looked at pixel by pixel

/// A call and what it left behind.
struct Painted {
  std::int16_t code = 0;
  Symbol_Size size{kUnwritten, kUnwritten};
  Request request;
  std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device{nullptr, &korvex_device_destroy};

  /// `side`: of a square picture; 0 for one that grows.
  Painted(const Export& target, std::span<const std::uint8_t> input, int side)
      : request(read_call(target, input)), device(korvex_device_create(side, side), &korvex_device_destroy) {
    code = target.draw(kExports, device.get(), request.record, size);
  }
  [[nodiscard]] std::int64_t pixels() const { return std::int64_t{size.width} * size.height; }
  struct Extent {
    std::int32_t width = 0;
    std::int32_t height = 0;
  };
  [[nodiscard]] Extent painted() const {
    Extent extent;
    korvex_device_painted_size(device.get(), &extent.width, &extent.height);
    return extent;
  }
  /// A composite symbol may be larger than 16 bits tell: few are wider or higher, but for their linear
  /// component, than so many modules.
  [[nodiscard]] bool is_beyond_its_size() const {
    constexpr int kMostModules = 700;
    const CC_Params& composite = request.record.cc;
    return request.target->name.starts_with("CC_") &&
           composite.module_size * (kMostModules + composite.linear_height) > INT16_MAX;
  }
  [[nodiscard]] bool same(const Painted& other) const {
    if (code != other.code || size.width != other.size.width || size.height != other.size.height)
      return false;
    if (request.target->is_qr && request.record.qr.version_used != other.request.record.qr.version_used) {
      return false;
    }
    if (!std::ranges::equal(request.bytes("data"), other.request.bytes("data"))) return false;
    const Extent extent = painted();
    const Extent extent_of_other = other.painted();
    if (extent.width != extent_of_other.width || extent.height != extent_of_other.height) return false;
    for (int y = 0; y < extent.height; ++y) {
      for (int x = 0; x < extent.width; ++x) {
        if (korvex_device_pixel(device.get(), x, y) != korvex_device_pixel(other.device.get(), x, y)) {
          return false;
        }
      }
    }
    return true;
  }
};

void check_failure(const Painted& call) {
  const std::string_view name = call.request.target->name;
  const bool has_written = call.size.width != kUnwritten || call.size.height != kUnwritten;
  if (name.starts_with("CC_")) {
    // The size is told before rows that are too wide are left out, and the others painted, or memory runs
    // out.
    if (has_written && call.code == KORVEX_BAD_PARAMETER) return;
    require(!has_written || call.code == KORVEX_NO_SYMBOL, "a size without a symbol");
  } else if (name.starts_with("PDF_")) {
    // No symbol: 0 x 0. A module of no size: the size in modules.
    if (call.code == KORVEX_NO_SYMBOL) require(call.pixels() == 0, "a size without a symbol");
  } else {
    require(!has_written, "a failing call wrote a size");
  }
  const Painted::Extent extent = call.painted();
  require(extent.width == 0 && extent.height == 0, "a failing call painted");
}

void check_success(const Painted& call) {
  if (call.is_beyond_its_size()) return;
  const Painted::Extent extent = call.painted();
  require(call.size.width > 0 && call.size.height > 0, "a symbol without a size");
  // Rows of composite symbols are bitmaps of whole 32-bit words, light past the symbol; the last row of
  // DataBar Expanded may be a module wider than the size says when the segments a row are odd.
  const bool is_composite = call.request.target->name.starts_with("CC_");
  const CC_Params& composite = call.request.record.cc;
  const int overhang =
      is_composite && composite.type == 6 && composite.segments_per_row % 2 != 0 ? composite.module_size : 0;
  const int beyond = is_composite ? 31 + overhang : 0;
  require(extent.width >= call.size.width && extent.width <= call.size.width + beyond &&
              extent.height == call.size.height,
          "the painted size is not the one that was told");
  int dark = 0;
  for (int y = 0; y < extent.height; ++y) {
    for (int x = 0; x < extent.width; ++x) {
      require(korvex_device_is_painted(call.device.get(), x, y) != 0, "a hole in the symbol");
      const std::uint32_t color = korvex_device_pixel(call.device.get(), x, y);
      require(color == 0 || color == 0xFFFFFF, "a pixel neither black nor white");
      dark += color == 0 ? 1 : 0;
      require(x < call.size.width + overhang || color != 0, "a dark pixel outside the symbol");
    }
  }
  require(dark > 0, "a symbol without a dark module");
}

/// The second call is the twin's where there is one.
void check_drawing(const Export& target, const Export& twin, std::span<const std::uint8_t> input) {
  constexpr int kSmall = 64;
  const Painted clipped(target, input, kSmall);
  if (clipped.code != KORVEX_OK) {
    require(clipped.code <= KORVEX_BAD_PARAMETER && clipped.code >= KORVEX_GS1_FIXED_MODE,
            "an unknown result code");
    check_failure(clipped);
    require(clipped.same(Painted(twin, input, kSmall)), "the same call gives another answer");
    return;
  }
  if (clipped.pixels() > kPixelsMost || clipped.is_beyond_its_size()) return;
  const Painted whole(target, input, 0);
  check_success(whole);
  require(whole.same(Painted(twin, input, 0)), "the same call gives another picture");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const Export& target = *find_export(KORVEX_FUZZED);
  static const Export* const found = find_export(KORVEX_FUZZED "_x64");
  static const Export& twin = found == nullptr ? target : *found;
  const std::span input(bytes, size);
  target.bits != nullptr ? check_bits(target, twin, input) : check_drawing(target, twin, input);
  return 0;
}
