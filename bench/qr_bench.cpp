// QR Code family: the symbols and payloads that its speed is judged by.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>

#include "bench.hpp"
#include "korvex/qr.hpp"

namespace korvex::qr {
namespace {

constexpr std::int16_t kPixelsAModule = 4;

void add(const std::string& name, const Options& options, const std::string& data) {
  const auto encode_one = [=] {
    auto symbol = encode(options, data);
    benchmark::DoNotOptimize(symbol);
  };
  const auto paint_one = [=] {
    std::string buffer = data;
    QR_Params params = {};
    params.ecc_level = static_cast<std::int16_t>(static_cast<int>(options.level) + 1);
    params.module_size = kPixelsAModule;
    params.symbol_type = static_cast<std::int16_t>(static_cast<int>(options.type) + 1);
    params.version = static_cast<std::int16_t>(options.version);
    params.data = reinterpret_cast<std::uint8_t*>(buffer.data());
    params.data_length = static_cast<std::int16_t>(buffer.size());
    params.rmqr_rows = static_cast<std::int16_t>(options.rmqr_rows < 7 ? 1 : (options.rmqr_rows - 5) / 2);
    Symbol_Size size = {};
    Korvex_Device* const device = korvex_device_create(0, 0);
    QR_Encode(device, &params, &size);
    benchmark::DoNotOptimize(size);
    korvex_device_destroy(device);
  };
  bench::add(name, encode_one, paint_one);
}

/// Words, numbers, capitals, punctuation and a Kanji here and there, as in a delivery note.
std::string mixed_bytes(std::size_t length) {
  const std::string sentence =
      "Lot 4711-A, 25 pieces of M8x40 at 12.50 each; ship to \x8A\xBF\x8E\x9A, DOCK 7, order no. "
      "20261122334455. ";
  std::string data;
  while (data.size() < length) data += sentence;
  return data.substr(0, length);
}

std::string all_bytes(std::size_t length) {
  std::string data;
  std::uint32_t state = 1;
  for (std::size_t i = 0; i < length; ++i) {
    state = state * 1664525 + 1013904223;
    data += static_cast<char>(state >> 24);
  }
  return data;
}

std::string url(std::size_t length) {
  std::string data = "https://www.example.com/shop/item?id=4711&lang=en&ref=";
  while (data.size() < length) data += "abcdefghijklmnopqrstuvwxyz0123456789"[data.size() * 7 % 36];
  return data;
}

const bench::Family family([] {
  add("v1-M/16 digits", {.version = 1}, "1234567890123456");
  add("M/120-character URL", {}, url(120));
  add("M/1000 mixed bytes", {}, mixed_bytes(1000));
  add("M/1000 random bytes", {.mode = Mode::byte}, all_bytes(1000));
  add("40-L/2953 bytes", {.level = Level::low, .version = 40, .mode = Mode::byte}, all_bytes(2953));
  add("40-L/7089 digits", {.level = Level::low, .version = 40}, std::string(7089, '7'));
  add("Micro QR/12345", {.type = SymbolType::micro, .level = Level::low}, "12345");
  add("rMQR M/40 capitals and digits", {.type = SymbolType::rmqr, .rmqr_rows = 11},
      "KORVEX1234567890KORVEX1234567890KORVEX12");
  add("Model 1 14-M/300 bytes", {.type = SymbolType::model1, .version = 14}, mixed_bytes(300));
});

}  // namespace
}  // namespace korvex::qr
