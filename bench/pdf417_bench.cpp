// PDF417, truncated PDF417 and MicroPDF417, from text, digits and bytes to the largest symbols.
#include "korvex/pdf417.hpp"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>

#include "bench.hpp"

namespace {

using korvex::pdf417::Kind;
using korvex::pdf417::Options;

/// At 4 pixels a module, rows three (micro two) modules high.
void paint(const Options& options, const std::string& payload) {
  PDF_Params params{};
  params.module_width = 4;
  params.row_height = static_cast<std::int16_t>(4 * korvex::pdf417::row_height(options.kind));
  params.ecc_level = static_cast<std::int16_t>(options.ecc_level);
  params.columns = static_cast<std::int16_t>(options.columns);
  params.rows = static_cast<std::int16_t>(options.rows);
  params.truncated = options.kind == Kind::truncated;
  params.data = reinterpret_cast<const std::uint8_t*>(payload.data());
  params.length = static_cast<std::int16_t>(payload.size());
  params.micro = options.kind == Kind::micro;
  Korvex_Device* const device = korvex_device_create(0, 0);
  Symbol_Size size{};
  if (PDF_Encode(device, &params, &size) != KORVEX_OK) std::abort();
  benchmark::DoNotOptimize(size);
  korvex_device_destroy(device);
}

void add(const std::string& name, const Options& options, const std::string& payload) {
  const auto encode = [=] {
    const auto symbol = korvex::pdf417::encode(options, payload);
    if (!symbol) std::abort();
    benchmark::DoNotOptimize(symbol->modules.rows());
  };
  if (options.kind == Kind::micro && options.rows == 0) {
    korvex::bench::add(name, encode);  // the export does not choose the size
  } else {
    korvex::bench::add(name, encode, [=] { paint(options, payload); });
  }
}

std::string repeated(const std::string& text, std::size_t length) {
  std::string result;
  while (result.size() < length) result += text;
  result.resize(length);
  return result;
}

std::string random_bytes(std::size_t length) {
  std::mt19937 random(417);
  std::string result(length, '\0');
  for (char& byte : result) byte = static_cast<char>(random());
  return result;
}

const korvex::bench::Family kPdf417([] {
  const std::string prose = "The quick brown fox jumps over the lazy dog; Order No. 4711/B, 25 kg. ";
  add("normal/empty, level 0", {.ecc_level = 0}, "");
  add("normal/100 text, level 2", {.ecc_level = 2}, repeated(prose, 100));
  add("normal/100 capitals, level 2", {.ecc_level = 2}, repeated("KORVEX DRAWS PDF417 ", 100));
  add("normal/1000 bytes, level 4", {.ecc_level = 4}, random_bytes(1000));
  add("normal/2000 digits, level 5", {.ecc_level = 5}, repeated("0123456789", 2000));
  add("normal/1800 text, level 0, full", {.ecc_level = 0}, repeated("KORVEX ", 1800));
  add("normal/400 text, level 8", {.ecc_level = 8}, repeated(prose, 400));
  add("truncated/100 text, level 2", {.kind = Kind::truncated, .ecc_level = 2}, repeated(prose, 100));
  add("micro/60 text, 4 x 15", {.kind = Kind::micro, .columns = 4, .rows = 15}, repeated(prose, 60));
  add("micro/60 text, size chosen", {.kind = Kind::micro}, repeated(prose, 60));
  add("micro/360 digits, 4 x 44", {.kind = Kind::micro, .columns = 4, .rows = 44},
      repeated("0123456789", 360));
});

}  // namespace
