#include "call/answer.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <vector>

#include "call/surface.hpp"

namespace korvex::cli::call {
namespace {

constexpr int kPatternWords = 188;   // the largest pattern and the word that is always copied behind it
constexpr int kTextBytes = 23;       // "(00)", 18 digits and the NUL
constexpr std::uint16_t kGs1Qr = 4;  // symbol_type whose data is translated in place
constexpr std::string_view kHexadecimal = "0123456789abcdef";

void append_hexadecimal(std::string& text, std::span<const std::uint8_t> bytes) {
  for (const std::uint8_t byte : bytes) {
    text += kHexadecimal[byte >> 4];
    text += kHexadecimal[byte & 0xF];
  }
}

/// An object under way: members in the order they are added.
class Answer {
 public:
  explicit Answer(const Request& request) {
    if (!request.id.empty()) add("id", request.id);
  }

  /// `json` is written as it is.
  void add(std::string_view key, std::string_view json) {
    text_ += text_.size() > 1 ? ", \"" : "\"";
    text_ += key;
    text_ += "\": ";
    text_ += json;
  }
  void add(std::string_view key, int number) { add(key, std::to_string(number)); }
  void add_string(std::string_view key, std::string_view text) { add(key, json_string(text)); }
  /// `append(text, index)` writes each of the `count` items of a list.
  template <class Append>
  void add_list(std::string_view key, int count, Append append) {
    add(key, "[");
    for (int index = 0; index < count; ++index) {
      if (index > 0) text_ += ", ";
      append(text_, index);
    }
    text_ += "]";
  }
  void add_hexadecimal(std::string_view key, std::span<const std::uint8_t> bytes) {
    add(key, "\"");
    append_hexadecimal(text_, bytes);
    text_ += "\"";
  }
  /// Module 0 is the most significant bit of the first word.
  void add_modules(std::string_view key, std::span<const std::uint32_t> words, int count) {
    add(key, "\"");
    for (int module = 0; module < count; ++module) {
      text_ += (words[static_cast<std::size_t>(module / 32)] >> (31 - module % 32) & 1U) != 0 ? '1' : '0';
    }
    text_ += "\"";
  }

  std::string finish() && {
    text_ += "}";
    return std::move(text_);
  }

 private:
  std::string text_ = "{";
};

void add_result(Answer& answer, std::int16_t result, Console& console) {
  answer.add("result", result);
  if (const std::string text = console.take(); !text.empty()) answer.add_string("console", text);
}

bool marks_guards(const Bit_Params& params) {
  return params.guard_option != 0 && (params.type == 3 || params.type == 4 || params.type == 14);
}

void call_bits(Answer& answer, const Exports& exports, const Request& request, Console& console) {
  // Blocks of exactly the documented size, as for the data.
  const auto bars = std::make_unique<std::array<std::uint32_t, kPatternWords>>();
  const auto guards = std::make_unique<std::array<std::uint32_t, kPatternWords>>();
  const auto text = std::make_unique<std::array<char, kTextBytes>>();
  Bit_Result result{};
  result.bars = bars->data();
  result.guards = guards->data();
  result.text = text->data();

  const std::int16_t code = request.target->bits(exports, request.record, result);
  add_result(answer, code, console);
  answer.add("text_length", result.text_length);
  if (code != KORVEX_OK) return;

  const int count = std::min<int>(result.bit_count, kPatternWords * 32);
  answer.add("bit_count", result.bit_count);
  answer.add_modules("bars", *bars, count);
  if (marks_guards(request.record.bit)) answer.add_modules("guards", *guards, count);
  if (result.text_length > 0) {
    const auto end = std::find(text->begin(), text->end(), '\0');
    answer.add_string("text", {text->data(), static_cast<std::size_t>(end - text->begin())});
    answer.add_list("text_groups", 5,
                    [&](std::string& list, int index) { list += std::to_string(result.text_groups[index]); });
  }
}

void add_rows(Answer& answer, const Surface& surface, Surface::Size painted) {
  std::vector<std::uint8_t> row(static_cast<std::size_t>((painted.width + 7) / 8));
  answer.add_list("rows", painted.height, [&](std::string& list, int y) {
    surface.read_row(y, row);
    list += '"';
    append_hexadecimal(list, row);
    list += '"';
  });
}

/// The most pixels of a picture: more than the largest QR Code symbol has with the largest modules that there
/// are, 17523 x 17523. In memory, and as text, it takes two gigabytes.
constexpr std::int64_t kMostPixels = 400'000'000;
/// In pixels: DATA_Encode paints no symbol with a longer side, and CC_Encode leaves out rows that are wider.
constexpr std::int64_t kLongestDataSide = std::numeric_limits<std::int16_t>::max();
constexpr std::int64_t kWidestCompositeRow = 56128;

struct Pixels {
  std::int64_t width = 0;
  std::int64_t height = 0;
};

/// What the same record paints with modules of one pixel; 0 x 0 when it paints nothing.
Pixels painted_modules(const Exports& exports, const Request& request, Record record, Console& console) {
  const Surface surface(false);
  Symbol_Size size{0, 0};
  const std::int16_t code = request.target->draw(exports, surface.context(), record, size);
  console.take();  // what it said is said again by the call itself
  return code == KORVEX_OK ? Pixels{size.width, surface.painted().height} : Pixels{};
}

/// The picture of an export whose modules may be of any size, when it could be too large; 0 x 0 else.
Pixels large_picture(const Exports& exports, const Request& request, Console& console) {
  Record record = request.record;
  if (request.target->name.starts_with("DATA_")) {
    constexpr std::int64_t kMostModules = 144;  // a side
    const Pixels module{record.data.module_width, record.data.module_height};
    if (module.width * module.height * kMostModules * kMostModules <= kMostPixels) return {};
    record.data.module_width = record.data.module_height = 1;
    const Pixels modules = painted_modules(exports, request, record, console);
    const Pixels pixels{modules.width * module.width, modules.height * module.height};
    return std::max(pixels.width, pixels.height) > kLongestDataSide ? Pixels{} : pixels;
  }
  if (request.target->name.starts_with("CC_")) {
    constexpr std::int64_t kMostModules = 1000;  // a side, but for the linear component's height
    constexpr std::int64_t kUnit = 32;           // rows are whole words of pixels
    const std::int64_t module = record.cc.module_size;
    const std::int64_t height = kMostModules + record.cc.linear_height;
    if (module * module * kMostModules * height <= kMostPixels) return {};
    record.cc.module_size = 1;
    const Pixels modules = painted_modules(exports, request, record, console);
    const std::int64_t width = (modules.width * module + kUnit - 1) / kUnit * kUnit;
    return width > kWidestCompositeRow ? Pixels{} : Pixels{width, modules.height * module};
  }
  return {};
}

void refuse_large_picture(const Exports& exports, const Request& request, Console& console) {
  const Pixels pixels = large_picture(exports, request, console);
  if (pixels.width * pixels.height <= kMostPixels) return;
  throw BadLine("the picture would have " + std::to_string(pixels.width) + " x " +
                std::to_string(pixels.height) + " pixels; answers have up to " + std::to_string(kMostPixels));
}

void call_drawing(Answer& answer, const Exports& exports, Request& request, Console& console) {
  refuse_large_picture(exports, request, console);
  const Surface surface(request.trace);
  Symbol_Size size{-1, -1};
  const std::int16_t code = request.target->draw(exports, surface.context(), request.record, size);
  add_result(answer, code, console);
  if (surface.failed()) throw std::bad_alloc();

  const Surface::Size painted = surface.painted();
  answer.add("width", size.width);
  answer.add("height", size.height);
  answer.add("painted_width", painted.width);
  answer.add("painted_height", painted.height);
  add_rows(answer, surface, painted);
  if (request.target->is_qr) {
    answer.add("version_used", request.record.qr.version_used);
    if (request.record.qr.symbol_type == kGs1Qr) answer.add_hexadecimal("data_after", request.bytes("data"));
  }
  if (request.trace) {
    const std::vector<std::string> operations = surface.trace();
    answer.add_list("trace", static_cast<int>(operations.size()), [&](std::string& list, int index) {
      list += '"' + operations[static_cast<std::size_t>(index)] + '"';
    });
  }
}

}  // namespace

std::string answer(const Exports& exports, Request& request, Console& console) {
  Answer answer(request);
  if (request.target->draw != nullptr) {
    call_drawing(answer, exports, request, console);
  } else {
    call_bits(answer, exports, request, console);
  }
  return std::move(answer).finish();
}

std::string refusal(const Request& request, std::string_view sentence) {
  Answer answer(request);
  answer.add_string("error", sentence);
  return std::move(answer).finish();
}

}  // namespace korvex::cli::call
