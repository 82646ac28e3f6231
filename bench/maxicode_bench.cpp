#include <benchmark/benchmark.h>

#include <string>

#include "bench.hpp"
#include "korvex/korvex32.h"
#include "korvex/maxicode.hpp"

namespace {

using korvex::maxicode::Mode;

void add(const std::string& name, const korvex::maxicode::Options& options, const std::string& message) {
  const auto encode = [=] { benchmark::DoNotOptimize(korvex::maxicode::encode(options, message)); };
  const auto paint = [=] {
    const MAXI_Params params{1,
                             1,
                             static_cast<std::int16_t>(options.mode),
                             options.postal_code.data(),
                             static_cast<std::int16_t>(options.service_class),
                             static_cast<std::int16_t>(options.country_code),
                             message.c_str()};
    Korvex_Device* const device = korvex_device_create(224, 200);
    Symbol_Size size{};
    benchmark::DoNotOptimize(MAXI_Encode(device, &params, &size));
    korvex_device_destroy(device);
  };
  korvex::bench::add(name, encode, paint);
}

const korvex::bench::Family kMaxiCode([] {
  add("mode 4, 8 characters", {}, "KORVEX 1");
  add("mode 4, 93 capitals", {}, std::string(93, 'K'));
  add("mode 4, 135 digits", {}, std::string(135, '7'));
  add("mode 2, carrier message",
      {.mode = Mode::carrier_numeric, .postal_code = "152382802", .country_code = 840, .service_class = 1},
      "[)>\x1E"
      "01\x1D"
      "961Z00004951\x1D"
      "ABCD\x1D"
      "06X610\x1D"
      "159\x1D"
      "1234567\x1D"
      "1/1\x1D\x1DY\x1D"
      "634 ALPHA DR\x1D"
      "PITTSBURGH\x1DPA\x1E\x04");
});

}  // namespace
