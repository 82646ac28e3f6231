// DataBar and composite symbols: in memory through the C++ interface, painted through CC_Encode.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

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

/// `count` characters: AI 91, 92 and so on, their data as long as may be and made of `characters` over again.
std::string long_element_string(std::size_t count, std::string_view characters) {
  constexpr std::size_t kElement = 2 + 90;
  std::string text;
  for (char ai = '1'; text.size() < count; ++ai) {
    text.append(text.empty() ? "9" : "#9").push_back(ai);
    for (std::size_t i = 2; i < kElement && text.size() < count; ++i) {
      text.push_back(characters[text.size() % characters.size()]);
    }
  }
  return text;
}
constexpr std::string_view kMixed = "KORVEX-2026/12345678.COMPOSITE*0042";

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
      "0109501101530003172612313103001750|" + long_element_string(100, kMixed));
  add("ean13/12 digits", {.symbology = Symbology::ean13}, "400638133393");
  add("ean13/with CC-A", {.symbology = Symbology::ean13}, "400638133393" + date_and_batch);
  add("upce/with CC-A", {.symbology = Symbology::upce}, "01234000005" + date_and_batch);
  add("gs1-128/with CC-A", {.symbology = Symbology::gs1_128}, "0109501101530003" + date_and_batch);
  add("gs1-128-cc/with CC-C of 300 characters", {.symbology = Symbology::gs1_128_cc_c},
      "010950110153000310ABC123|" + long_element_string(300, kMixed));
  add("gs1-128-cc/with CC-C of 300 digits", {.symbology = Symbology::gs1_128_cc_c},
      "010950110153000310ABC123|" + long_element_string(300, "7"));
});

}  // namespace
