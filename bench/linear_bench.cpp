// Every linear symbology: korvex32/ through Korvex_Bit into the caller's arrays, cpp/ through the C++
// interface.
#include <benchmark/benchmark.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "bench.hpp"
#include "korvex/korvex32.h"
#include "korvex/linear.hpp"

namespace {

using korvex::linear::Options;
using korvex::linear::Symbology;

void add_export(const std::string& name, std::uint16_t type, const std::string& payload,
                std::int16_t selector = 1, std::uint16_t text_option = 0) {
  korvex::bench::add("korvex32/" + name, [=] {
    // Cleared once a process, not once a call: a caller's arrays are there already.
    static std::array<std::uint32_t, 188> bars;
    static std::array<std::uint32_t, 188> guards;
    static std::array<char, 23> text;
    const Bar_Ratio ratio{selector, 1, 1, 3, 3};
    const Bit_Data data{static_cast<std::int16_t>(payload.size()),
                        reinterpret_cast<const std::uint8_t*>(payload.data())};
    Bit_Result result{};
    result.bars = bars.data();
    result.guards = guards.data();
    result.text = text.data();
    if (Korvex_Bit(type, 1, text_option, &ratio, &data, &result) != KORVEX_OK) std::abort();
    benchmark::DoNotOptimize(bars);
  });
}

void add_cpp(const std::string& name, Options options, const std::string& payload) {
  korvex::bench::add("cpp/" + name, [=] {
    const auto symbol = korvex::linear::encode(options, payload);
    if (!symbol) std::abort();
    benchmark::DoNotOptimize(symbol->bars.size());
  });
}

const korvex::bench::Family kLinear([] {
  add_export("codabar/12 characters", 0, "A1234567890B");
  add_export("code39/20 characters", 1, "*KORVEX-LINEAR-0042*");
  add_export("code39/20 characters, own widths", 1, "*KORVEX-LINEAR-0042*", 3);
  add_export("itf/20 digits", 2, "01234567890123456789");
  add_export("ean13/12 digits", 3, "400638133393");
  add_export("ean13/12 digits with text", 3, "400638133393", 1, 1);
  add_export("ean8/7 digits", 4, "9638507");
  add_export("industrial25/10 digits", 5, "0123456789");
  add_export("code25-3bar/10 digits", 6, "0123456789");
  add_export("sscc18/17 digits with text", 8, "00614141123456789", 1, 1);
  add_export("code128-inband/21 characters", 9, "Korvex linear 012345X");
  add_export("code128-inband/20 digits", 9, ">I01234567890123456789");
  add_export("msi/10 digits", 10, "0123456789");
  add_export("code11/10 characters", 11, "012345-678");
  add_export("code93/20 characters", 12, "KORVEX LINEAR 00042X");
  add_export("code128-segments/21 characters", 13, "B13C08KORVEX-LINEAR01234567", 1, 2);
  add_export("upce/6 digits", 14, "123455");
  add_export("addon/5 digits", 15, "12345");

  add_cpp("codabar/10 characters", {.symbology = Symbology::codabar}, "1234567890");
  add_cpp("code39/18 characters", {.symbology = Symbology::code39}, "KORVEX-LINEAR-0042");
  add_cpp("itf/20 digits", {.symbology = Symbology::itf}, "01234567890123456789");
  add_cpp("ean13/12 digits", {.symbology = Symbology::ean13}, "400638133393");
  add_cpp("upca/11 digits", {.symbology = Symbology::upca}, "03600029145");
  add_cpp("ean8/7 digits", {.symbology = Symbology::ean8}, "9638507");
  add_cpp("upce/6 digits", {.symbology = Symbology::upce}, "123455");
  add_cpp("addon/5 digits", {.symbology = Symbology::addon}, "12345");
  add_cpp("industrial25/10 digits", {.symbology = Symbology::industrial25}, "0123456789");
  add_cpp("code25-3bar/10 digits", {.symbology = Symbology::code25_3bar}, "0123456789");
  add_cpp("sscc18/17 digits", {.symbology = Symbology::sscc18}, "00614141123456789");
  add_cpp("code128/21 characters", {.symbology = Symbology::code128}, "Korvex linear 012345X");
  add_cpp("code128/21 characters, Latin-1", {.symbology = Symbology::code128},
          "caf\xE9 cr\xE8me \xE0 la carte");
  add_cpp("code128/GS1, 30 characters", {.symbology = Symbology::code128, .gs1 = true},
          "0104006381333931211234\x1D"
          "10ABCD");
  add_cpp("msi/10 digits, mod 10",
          {.symbology = Symbology::msi, .check = korvex::linear::CheckCharacters::mod10}, "0123456789");
  add_cpp("code11/10 characters, C and K",
          {.symbology = Symbology::code11, .check = korvex::linear::CheckCharacters::two}, "012345-678");
  add_cpp("code93/20 characters", {.symbology = Symbology::code93}, "KORVEX LINEAR 00042X");
});

}  // namespace
