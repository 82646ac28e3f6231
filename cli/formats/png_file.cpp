#include "formats/png_file.hpp"

#include <zlib.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <string_view>
#include <utility>

#include "failure.hpp"

namespace korvex::cli {
namespace {

constexpr std::string_view kSignature = "\x89PNG\r\n\x1a\n";
constexpr double kMetresPerInch = 0.0254;

void put_32(std::string& bytes, std::uint32_t number) {
  for (const int shift : {24, 16, 8, 0}) bytes += static_cast<char>(number >> shift & 0xFF);
}

/// ISO/IEC 15948, 5.3: length, type, data, and a CRC over type and data.
void put_chunk(std::string& file, std::string_view type, std::string_view data) {
  put_32(file, static_cast<std::uint32_t>(data.size()));
  const std::size_t begin = file.size();
  file += type;
  file += data;
  const auto* const checked = reinterpret_cast<const Bytef*>(file.data() + begin);
  put_32(file, static_cast<std::uint32_t>(crc32_z(0, checked, file.size() - begin)));
}

std::string image_header(const Shades& shades, int bits) {
  constexpr char kPalette = 3;
  std::string data;
  put_32(data, static_cast<std::uint32_t>(shades.width));
  put_32(data, static_cast<std::uint32_t>(shades.height));
  data += static_cast<char>(bits);
  data += kPalette;
  data.append(3, '\0');  // deflate, the usual filters, not interlaced
  return data;
}

std::string physical_size(double dots_per_inch) {
  const auto dots_per_metre = static_cast<std::uint32_t>(std::lround(dots_per_inch / kMetresPerInch));
  std::string data;
  put_32(data, dots_per_metre);
  put_32(data, dots_per_metre);
  data += '\1';  // the unit is the metre
  return data;
}

/// Colours from background to foreground, and their opacities when the background is transparent.
struct Palette {
  std::string colors;
  std::string opacities;
};

Palette palette(const Style& style, int entries) {
  Palette palette;
  const Color from = style.background.value_or(style.foreground);
  for (int entry = 0; entry < entries; ++entry) {
    const auto between = [&](int begin, int end) {
      return static_cast<char>(begin + (end - begin) * entry / (entries - 1));
    };
    palette.colors += between(from.red, style.foreground.red);
    palette.colors += between(from.green, style.foreground.green);
    palette.colors += between(from.blue, style.foreground.blue);
    if (!style.background) palette.opacities += between(0, 255);
  }
  return palette;
}

/// A row's pixels, `bits` each, leftmost pixel in the most significant bits.
void pack_row(const std::uint8_t* shades, int width, int bits, char* packed) {
  const int most = (1 << bits) - 1;
  const int pixels_per_byte = 8 / bits;
  for (int x = 0; x < width;) {
    int byte = 0;
    for (int end = x + pixels_per_byte, shift = 8 - bits; x < end && x < width; ++x, shift -= bits) {
      byte |= (shades[x] * most + 127) / 255 << shift;
    }
    *packed++ = static_cast<char>(byte);
  }
}

/// Rows as PNG has them: a filter byte (none), then the pixels.
std::string packed_rows(const Shades& shades, int bits) {
  const auto row_bytes = 1 + static_cast<std::size_t>((shades.width * bits + 7) / 8);
  std::string rows(static_cast<std::size_t>(shades.height) * row_bytes, '\0');
  for (int y = 0; y < shades.height; ++y) {
    char* const to = rows.data() + static_cast<std::size_t>(y) * row_bytes;
    const bool is_repeated =
        y > 0 && std::equal(shades.row(y), shades.row(y) + shades.width, shades.row(y - 1));
    if (is_repeated) {
      std::copy_n(to - row_bytes, row_bytes, to);
    } else {
      pack_row(shades.row(y), shades.width, bits, to + 1);
    }
  }
  return rows;
}

/// Keeps what compressing takes, a quarter of a megabyte, from picture to picture.
class Deflater {
 public:
  Deflater() {
    if (deflateInit(&stream_, Z_DEFAULT_COMPRESSION) != Z_OK) throw std::bad_alloc();
  }
  ~Deflater() { deflateEnd(&stream_); }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;

  std::string deflated(std::string bytes) {
    deflateReset(&stream_);
    std::string packed(deflateBound(&stream_, static_cast<uLong>(bytes.size())), '\0');
    stream_.next_in = reinterpret_cast<Bytef*>(bytes.data());
    stream_.avail_in = static_cast<uInt>(bytes.size());
    stream_.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream_.avail_out = static_cast<uInt>(packed.size());
    if (deflate(&stream_, Z_FINISH) != Z_STREAM_END) throw Failure("The picture cannot be compressed.");
    packed.resize(stream_.total_out);
    return packed;
  }

 private:
  z_stream stream_{};
};

std::string deflated(std::string bytes) {
  thread_local Deflater deflater;
  return deflater.deflated(std::move(bytes));
}

}  // namespace

std::string png_file(const Shades& shades, bool has_shades, const Style& style) {
  const int bits = has_shades ? 4 : 1;
  const Palette colors = palette(style, 1 << bits);
  std::string file(kSignature);
  put_chunk(file, "IHDR", image_header(shades, bits));
  if (style.module.dots_per_inch) put_chunk(file, "pHYs", physical_size(*style.module.dots_per_inch));
  put_chunk(file, "PLTE", colors.colors);
  if (!colors.opacities.empty()) put_chunk(file, "tRNS", colors.opacities);
  put_chunk(file, "IDAT", deflated(packed_rows(shades, bits)));
  put_chunk(file, "IEND", {});
  return file;
}

}  // namespace korvex::cli
