// Data Matrix: small, mixed and binary payloads, and messages that keep two schemes level for long.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <random>
#include <string>

#include "bench.hpp"
#include "korvex/datamatrix.hpp"
#include "korvex/korvex32.h"

namespace {

using korvex::datamatrix::Options;

std::string repeated(const std::string& text, int times) {
  std::string all;
  while (times-- > 0) all += text;
  return all;
}

std::string random_bytes(int count) {
  std::mt19937 random(16022);
  std::string bytes;
  while (static_cast<int>(bytes.size()) < count) bytes += static_cast<char>(random() & 0xFF);
  return bytes;
}

std::string without_tildes(std::string bytes) {
  for (char& byte : bytes) {
    if (byte == '~') byte = '-';
  }
  return bytes;
}

void add(const std::string& name, const Options& options, const std::string& data) {
  const auto encode = [=] {
    const auto symbol = korvex::datamatrix::encode(options, data);
    if (!symbol) std::abort();
    benchmark::DoNotOptimize(symbol->modules.rows());
  };
  const auto paint = [=, payload = without_tildes(data)] {
    // One picture a process: its memory is the caller's.
    static const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(
        korvex_device_create(600, 600), korvex_device_destroy);
    DATA_Params params{};
    params.module_width = 4;
    params.module_height = 4;
    params.columns = static_cast<std::int16_t>(options.columns);
    params.rows = static_cast<std::int16_t>(options.rows);
    params.fnc1_escape = options.fnc1_escape ? 1 : 0;
    params.data = reinterpret_cast<const std::uint8_t*>(payload.data());
    params.length = static_cast<std::int16_t>(payload.size());
    Symbol_Size size{};
    if (DATA_Encode(device.get(), &params, &size) != KORVEX_OK) std::abort();
    benchmark::DoNotOptimize(size);
  };
  korvex::bench::add(name, encode, paint);
}

const korvex::bench::Family kDataMatrix([] {
  const Options largest{.rows = 144, .columns = 144};
  add("20 digits", {}, "01234567890123456789");
  add("20 ASCII characters", {}, "Korvex-2024/07:a(b)!");
  add("20 capitals", {}, "KORVEX DATA MATRIX 2");
  add("16x48, 30 characters", {.rows = 16, .columns = 48}, "Serial no. 00-4711-KORVEX/2024");
  add("100 mixed characters", {},
      "The KORVEX-42 reads 0123456789 on pallets, ORDER NO. 2024/0815, weight 12.5 kg; caf\xE9 cr\xE8me: "
      "3,99 "
      "EUR!");
  add("1500 bytes, 144x144", largest, random_bytes(1500));
  add("3116 digits, 144x144", largest, repeated("01234567", 389) + "0123");
  // Between them these two draw on nearly every test for as long as it can go.
  add("level: control characters and digits", {},
      repeated("\x01"
               "1",
               700));
  add("level: spaces, then digits", {}, repeated(" ", 500) + repeated("1", 1100));
});

}  // namespace
