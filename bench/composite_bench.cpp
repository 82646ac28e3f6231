// DataBar and composite symbols: in memory through the C++ interface, painted through CC_Encode.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <string>

#include "bench.hpp"
#include "korvex/composite.hpp"
#include "korvex/korvex32.h"

namespace {

using korvex::composite::Options;
using korvex::composite::Symbology;

#if defined(_WIN32)
Korvex_Device_Context new_device() {
  return nullptr;
}
#else
Korvex_Device_Context new_device() {
  return korvex_device_create(2400, 2400);
}
#endif

void add(const std::string& name, Options options, const std::string& data) {
  const auto encode = [=] {
    const auto symbol = korvex::composite::encode(options, data);
    if (!symbol) std::abort();
    benchmark::DoNotOptimize(symbol->modules.rows());
  };
  const auto paint = [=] {
    static const Korvex_Device_Context device = new_device();
    const CC_Params params{
        .type = static_cast<std::int16_t>(static_cast<int>(options.symbology) + 1),
        .module_size = 4,
        .linear_height = static_cast<std::int16_t>(options.linear_height),
        .data = reinterpret_cast<const std::uint8_t*>(data.data()),
        .length = static_cast<std::int16_t>(data.size()),
        .segments_per_row = static_cast<std::int16_t>(options.segments_per_row),
    };
    Symbol_Size size;
    if (CC_Encode(device, &params, &size) != KORVEX_OK) std::abort();
    benchmark::DoNotOptimize(size);
  };
  korvex::bench::add(name, encode, paint);
}

/// An element string of AI 91 with `count` characters of data by turns letters and digits.
std::string long_element_string(int count) {
  constexpr char kCharacters[] = "KORVEX-2026/12345678.COMPOSITE*0042";
  std::string text = "91";
  for (int i = 0; i < count; ++i) text.push_back(kCharacters[i % (static_cast<int>(sizeof kCharacters) - 1)]);
  return text;
}

const korvex::bench::Family kComposite([] {
  const std::string date_and_batch = "|1726123110ABC123";
  add("databar/13 digits", {.symbology = Symbology::databar}, "0950110153000");
  add("databar-stacked-omni/13 digits", {.symbology = Symbology::databar_stacked_omni}, "0950110153000");
  add("databar/with CC-A", {.symbology = Symbology::databar}, "0950110153000" + date_and_batch);
  add("databar-limited/13 digits", {.symbology = Symbology::databar_limited}, "0950110153000");
  add("databar-expanded/40 characters", {.symbology = Symbology::databar_expanded},
      "010950110153000317261231"
      "10AB-1234567890X");
  add("databar-expanded/74 digits in rows of 4",
      {.symbology = Symbology::databar_expanded, .segments_per_row = 4},
      "01095011015300031726123131010017501526123191123456789012345678901234567890");
  add("databar-expanded/in rows of 4, with CC-B of 100 characters",
      {.symbology = Symbology::databar_expanded, .segments_per_row = 4},
      "0109501101530003172612313103001750|" + long_element_string(98));
  add("ean13/12 digits", {.symbology = Symbology::ean13}, "400638133393");
  add("ean13/with CC-A", {.symbology = Symbology::ean13}, "400638133393" + date_and_batch);
  add("upce/with CC-A", {.symbology = Symbology::upce}, "001234000006" + date_and_batch);
  add("gs1-128/with CC-A", {.symbology = Symbology::gs1_128}, "0109501101530003" + date_and_batch);
  add("gs1-128-cc/with CC-C of 300 characters", {.symbology = Symbology::gs1_128_cc_c},
      "010950110153000310ABC123|" + long_element_string(298));
  add("gs1-128-cc/with CC-C of 300 digits", {.symbology = Symbology::gs1_128_cc_c},
      "010950110153000310ABC123|91" + std::string(298, '7'));
});

}  // namespace
