#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "korvex/datamatrix.hpp"
#include "korvex/korvex32.h"

namespace {

struct Call {
  int module_width = 1;
  int module_height = 1;
  int columns = 0;
  int rows = 0;
  int fnc1_escape = 0;
  std::string data = "ABC";
  int length = -100;  // all of it
};

using Device = std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)>;

struct Answer {
  int result = 0;
  Symbol_Size size{-7, -7};
  Device device{korvex_device_create(0, 0), korvex_device_destroy};
};

Answer answer(const Call& call, decltype(&DATA_Encode) function = DATA_Encode) {
  DATA_Params params{};
  params.module_width = static_cast<std::int16_t>(call.module_width);
  params.module_height = static_cast<std::int16_t>(call.module_height);
  params.columns = static_cast<std::int16_t>(call.columns);
  params.rows = static_cast<std::int16_t>(call.rows);
  params.fnc1_escape = static_cast<std::int16_t>(call.fnc1_escape);
  params.data = reinterpret_cast<const std::uint8_t*>(call.data.data());
  params.length =
      static_cast<std::int16_t>(call.length == -100 ? static_cast<int>(call.data.size()) : call.length);
  Answer result;
  result.result = function(result.device.get(), &params, &result.size);
  return result;
}

TEST(DataMatrixEntry, AnswersWithCodeAndSize) {
  const struct {
    const char* what;
    Call call;
    int result;
    int width;
    int height;
  } cases[] = {
      {"three letters", {.module_width = 4, .module_height = 4}, 0, 40, 40},
      {"rectangle", {.module_width = 2, .module_height = 3, .columns = 26, .rows = 12}, 0, 52, 36},
      {"automatic width", {.rows = 8, .data = "ABCDE"}, 0, 18, 8},
      {"automatic width, too much for the narrower", {.rows = 8, .data = "ABC.;:"}, 0, 32, 8},
      {"a tilde written as two", {.columns = 10, .rows = 10, .data = "A~~B"}, 0, 10, 10},
      {"a single tilde", {.data = "A~B"}, -1, -7, -7},
      {"a tilde at the end", {.data = "AB~"}, -1, -7, -7},
      {"three tildes", {.data = "~~~"}, -1, -7, -7},
      {"no pixels across", {.module_width = 0}, -1, -7, -7},
      {"no pixels down", {.module_height = -1}, -1, -7, -7},
      {"no pixels before no such size", {.module_width = 0, .columns = 11, .rows = 11}, -1, -7, -7},
      {"a single tilde before no such size", {.columns = 11, .rows = 11, .data = "~"}, -1, -7, -7},
      {"no such square", {.columns = 11, .rows = 11}, -2, -7, -7},
      {"no such height", {.columns = 18, .rows = 0}, -2, -7, -7},
      {"no such width", {.columns = 26, .rows = 8}, -2, -7, -7},
      {"too much for the size", {.columns = 10, .rows = 10, .data = "ABCD"}, -2, -7, -7},
      {"too much for any size", {.data = std::string(3117, '1')}, -2, -7, -7},
      {"as long as the encoder takes", {.data = std::string(4158, '1')}, -2, -7, -7},
      {"longer", {.data = std::string(4159, '1')}, -1, -7, -7},
      {"longer, with pairs of tildes, but not without", {.data = std::string(4200, '~')}, -2, -7, -7},
      {"a bad escape",
       {.fnc1_escape = 1,
        .data = "\x1B"
                "2"},
       -2,
       -7,
       -7},
      {"the same as data",
       {.fnc1_escape = 2,
        .data = "\x1B"
                "2"},
       0,
       10,
       10},
      {"an escaped tilde", {.fnc1_escape = 1, .data = "\x1B~~"}, -2, -7, -7},
      {"no bytes", {.data = "~", .length = 0}, 0, 10, 10},
      {"fewer than none", {.data = "~", .length = -1}, 0, 10, 10},
      {"a width that the size can tell", {.module_width = 3276}, 0, 32760, 10},
      {"a wider one", {.module_width = 3277}, -1, -7, -7},
      {"a higher one", {.module_height = 3277}, -1, -7, -7},
  };
  for (const auto& [what, call, result, width, height] : cases) {
    for (const auto function : {DATA_Encode, DATA_Encode_x64}) {
      const Answer got = answer(call, function);
      EXPECT_EQ(got.result, result) << what;
      EXPECT_EQ(got.size.width, width) << what;
      EXPECT_EQ(got.size.height, height) << what;
      if (result != 0) {
        EXPECT_EQ(korvex_device_width(got.device.get()), 0) << what << ": painted";
      }
    }
  }
}

TEST(DataMatrixEntry, PaintsTheModulesOfTheEncoder) {
  const Answer got =
      answer({.module_width = 2, .module_height = 3, .columns = 36, .rows = 16, .data = "Korvex ~~ 2024"});
  const auto symbol = korvex::datamatrix::encode({.rows = 16, .columns = 36}, "Korvex ~ 2024");
  ASSERT_TRUE(symbol);
  ASSERT_EQ(got.result, 0);
  for (int y = 0; y < got.size.height; ++y) {
    for (int x = 0; x < got.size.width; ++x) {
      ASSERT_EQ(korvex_device_pixel(got.device.get(), x, y) == 0, symbol->modules.dark(y / 3, x / 2))
          << x << ", " << y;
    }
  }
}

TEST(DataMatrixEntry, RefusesMissingRecords) {
  DATA_Params params{};
  params.module_width = params.module_height = 1;
  Symbol_Size size{-7, -7};
  const Device device{korvex_device_create(0, 0), korvex_device_destroy};
  EXPECT_EQ(DATA_Encode(device.get(), nullptr, &size), -1);
  EXPECT_EQ(DATA_Encode(device.get(), &params, &size), -1) << "no data";
  params.data = reinterpret_cast<const std::uint8_t*>("A");
  EXPECT_EQ(DATA_Encode(device.get(), &params, nullptr), -1);
  EXPECT_EQ(size.width, -7);
}

}  // namespace
