#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "korvex/korvex32.h"
#include "korvex/pdf417.hpp"

namespace korvex::pdf417 {
namespace {

using DevicePointer = std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)>;

/// A record of which a test changes what it is about.
PDF_Params record(const std::string& message) {
  PDF_Params params{};
  params.module_width = 2;
  params.row_height = 3;
  params.data = reinterpret_cast<const std::uint8_t*>(message.data());
  params.length = static_cast<std::int16_t>(message.size());
  return params;
}

TEST(Pdf417Entry, ChecksInOrderAndLeavesWhatItHasWritten) {
  constexpr std::int16_t kUntouched = -7;
  const std::string message = "ABC";
  struct Case {
    const char* what;
    void (*change)(PDF_Params&);
    int result, width, height;
  };
  const Case cases[] = {
      {"drawn, shape chosen", [](PDF_Params& p) { p.ecc_level = 2; }, 0, 2 * 86, 3 * 11},
      {"drawn, truncated", [](PDF_Params& p) { p.ecc_level = 2, p.truncated = -1; }, 0, 2 * 52, 3 * 11},
      {"rows alone", [](PDF_Params& p) { p.rows = 3; }, 0, 2 * 103, 3 * 3},
      {"columns alone", [](PDF_Params& p) { p.columns = 30; }, 0, 2 * 579, 3 * 3},
      {"micro does not read level and truncated",
       [](PDF_Params& p) { p.micro = 1, p.columns = p.rows = 4, p.ecc_level = 12, p.truncated = 1; }, 0,
       2 * 99, 3 * 4},
      {"micro that is none of the sizes", [](PDF_Params& p) { p.micro = 1, p.columns = 4, p.rows = 5; }, -1,
       kUntouched, kUntouched},
      {"micro without a size", [](PDF_Params& p) { p.micro = 1; }, -1, kUntouched, kUntouched},
      {"level -1", [](PDF_Params& p) { p.ecc_level = -1; }, -1, kUntouched, kUntouched},
      {"level 9", [](PDF_Params& p) { p.ecc_level = 9; }, -1, kUntouched, kUntouched},
      {"-1 columns", [](PDF_Params& p) { p.columns = -1; }, -1, kUntouched, kUntouched},
      {"31 columns", [](PDF_Params& p) { p.columns = 31; }, -1, kUntouched, kUntouched},
      {"2 rows", [](PDF_Params& p) { p.rows = 2; }, -1, kUntouched, kUntouched},
      {"91 rows", [](PDF_Params& p) { p.rows = 91; }, -1, kUntouched, kUntouched},
      {"930 codewords", [](PDF_Params& p) { p.columns = 30, p.rows = 31; }, -1, kUntouched, kUntouched},
      {"no room beside the check codewords", [](PDF_Params& p) { p.columns = 1, p.rows = 3; }, -2, 0, 0},
      {"too long", [](PDF_Params& p) { p.columns = 1, p.rows = 4; }, -2, 0, 0},
      {"negative length", [](PDF_Params& p) { p.length = -1; }, -2, 0, 0},
      {"a bad level wins over a negative length", [](PDF_Params& p) { p.ecc_level = 9, p.length = -1; }, -1,
       kUntouched, kUntouched},
      {"too long wins over a bad module width",
       [](PDF_Params& p) { p.columns = 1, p.rows = 4, p.module_width = 0; }, -2, 0, 0},
      {"module width 0", [](PDF_Params& p) { p.module_width = 0, p.columns = 1; }, -1, 86, 5},
      {"module width 10", [](PDF_Params& p) { p.module_width = 10, p.columns = 1; }, -1, 86, 5},
      {"row height 0", [](PDF_Params& p) { p.row_height = 0, p.columns = 1; }, -1, 86, 5},
      {"row height 25", [](PDF_Params& p) { p.row_height = 25, p.columns = 1; }, -1, 86, 5},
      {"no data", [](PDF_Params& p) { p.data = nullptr; }, -1, kUntouched, kUntouched},
      {"no data of no length", [](PDF_Params& p) { p.data = nullptr, p.length = 0, p.columns = 1; }, 0, 172,
       9},
  };
  for (const auto& [what, change, result, width, height] : cases) {
    PDF_Params params = record(message);
    change(params);
    const DevicePointer device(korvex_device_create(0, 0), korvex_device_destroy);
    Symbol_Size size{kUntouched, kUntouched};
    EXPECT_EQ(PDF_Encode(device.get(), &params, &size), result) << what;
    EXPECT_EQ(size.width, width) << what;
    EXPECT_EQ(size.height, height) << what;
    EXPECT_EQ(korvex_device_width(device.get()), result == 0 ? width : 0) << what;
    EXPECT_EQ(korvex_device_height(device.get()), result == 0 ? height : 0) << what;
  }
  Symbol_Size size{};
  const PDF_Params params = record(message);
  EXPECT_EQ(PDF_Encode(nullptr, nullptr, &size), KORVEX_BAD_PARAMETER);
  EXPECT_EQ(PDF_Encode(nullptr, &params, nullptr), KORVEX_BAD_PARAMETER);
}

TEST(Pdf417Entry, PaintsTheModulesOfTheCppInterface) {
  const std::string message("1234567890 a\\\0b", 15);
  for (const Kind kind : {Kind::normal, Kind::truncated, Kind::micro}) {
    for (const bool byte_only : {false, true}) {
      const int rows = kind == Kind::micro ? 26 : 0;
      const auto symbol = encode({kind, 2, rows, 1, byte_only, Dialect::korvex32}, message);
      ASSERT_TRUE(symbol);
      PDF_Params params = record(message);
      params.ecc_level = 1;
      params.columns = 2;
      params.rows = static_cast<std::int16_t>(rows);
      params.truncated = kind == Kind::truncated;
      params.micro = kind == Kind::micro;
      params.byte_only = byte_only;
      const DevicePointer device(korvex_device_create(0, 0), korvex_device_destroy);
      Symbol_Size size{};
      ASSERT_EQ(PDF_Encode_x64(device.get(), &params, &size), KORVEX_OK);
      ASSERT_EQ(size.width, 2 * symbol->modules.columns());
      ASSERT_EQ(size.height, 3 * symbol->modules.rows());
      for (int y = 0; y < size.height; ++y) {
        for (int x = 0; x < size.width; ++x) {
          ASSERT_EQ(korvex_device_pixel(device.get(), x, y) == 0, symbol->modules.dark(y / 3, x / 2))
              << "(" << x << ", " << y << ")";
        }
      }
    }
  }
}

}  // namespace
}  // namespace korvex::pdf417
