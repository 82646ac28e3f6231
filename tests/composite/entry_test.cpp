// CC_Encode: result codes, the size pair, rows on the device, and the message.
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "korvex/korvex32.h"

namespace korvex::composite {
namespace {

using DevicePointer = std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)>;

struct Call {
  int type = 1;
  int module_size = 1;
  int linear_height = 1;
  int segments_per_row = 1;
  std::string data;
};

struct Answer {
  int result;
  int width;  // -1 when the pair was not touched
  int height;
  std::string console;
  DevicePointer device{nullptr, korvex_device_destroy};
};

Answer make(const Call& call) {
  Answer answer{};
  answer.device.reset(korvex_device_create(0, 0));
  korvex_device_record(answer.device.get(), 1);
  const CC_Params params{.type = static_cast<std::int16_t>(call.type),
                         .module_size = static_cast<std::int16_t>(call.module_size),
                         .linear_height = static_cast<std::int16_t>(call.linear_height),
                         .data = reinterpret_cast<const std::uint8_t*>(call.data.data()),
                         .length = static_cast<std::int16_t>(call.data.size()),
                         .segments_per_row = static_cast<std::int16_t>(call.segments_per_row)};
  Symbol_Size size{-1, -1};
  testing::internal::CaptureStdout();
  answer.result = CC_Encode(answer.device.get(), &params, &size);
  answer.console = testing::internal::GetCapturedStdout();
  answer.width = size.width;
  answer.height = size.height;
  return answer;
}

const std::string kItem = "0109501101530003";

TEST(CompositeEntry, SizesFollowTheFormulas) {
  struct Row {
    Call call;
    int width;
    int height;
  };
  // "|" alone has the smallest CC-A, of 5, 4 or 3 rows of two modules; 30 letters make a CC-B.
  const std::string cc_b = "|10ABCDEFGHIJKLMNOPQRST#21ABCDEF";
  for (const Row& row : {
           Row{{1, 1, 0, 0, ""}, 96, 33},
           Row{{1, 2, 0, 0, "1|"}, 202, 2 * (33 + 6) + 2},
           Row{{2, 1, 0, 0, "1"}, 96, 13},
           Row{{2, 1, 0, 0, "1|"}, 101, 13 + 6 + 1},
           Row{{3, 3, 0, 0, "1"}, 150, 3 * 13},
           Row{{3, 1, 0, 0, "1|"}, 57, 12 + 10 + 2},
           Row{{4, 1, 0, 0, "1"}, 50, 69},
           Row{{4, 1, 0, 0, "1|"}, 57, 66 + 10 + 4},
           Row{{5, 1, 0, 0, "1"}, 74, 10},
           Row{{5, 1, 0, 0, "1|"}, 74, 10 + 8 + 1},
           Row{{5, 1, 0, 0, "1" + cc_b}, 84, 10 + 30 + 1},
           Row{{6, 1, 0, 22, kItem}, 2 * 49 + 32 + 4, 34},  // four data characters and the check character
           Row{{6, 1, 0, 4, kItem + "|"}, 102, 2 * 34 + 3 + 6 + 1},
           Row{{6, 2, 0, 2, kItem}, 106, 2 * (3 * 34 + 6)},  // a fifth data character: no row of one alone
           Row{{6, 1, 0, 1, kItem}, 36, 5 * 34 + 12},
           Row{{6, 1, 0, 3, kItem}, 85, 2 * 34 + 3},
           Row{{7, 1, 0, 0, "400638133393"}, 109, 74},
           Row{{7, 1, 0, 0, "400638133393|"}, 109, 80 + 6},
           Row{{9, 1, 0, 0, "412345678901|"}, 109, 80 + 6},
           Row{{8, 1, 0, 0, "1234000005"}, 65, 74},
           Row{{8, 1, 0, 0, "1234000005|"}, 65, 80 + 10},
           Row{{10, 1, 0, 0, "9638507"}, 81, 60},
           Row{{10, 1, 0, 0, "9638507|"}, 81, 66 + 8},
           Row{{10, 1, 0, 0, "9638507" + cc_b}, 89, 66 + 30},
           Row{{11, 2, 7, 0, "12"}, 2 * (5 * 11 + 22), 14},
           Row{{11, 1, 7, 0, "123456789012|"}, 11 * 11 + 22, 7 + 6 + 1},
           Row{{12, 1, 7, 0, "12345678|"}, 9 * 11 + 22, 7 + 3 * 6 + 1},
       }) {
    const Answer answer = make(row.call);
    EXPECT_EQ(answer.result, KORVEX_OK) << row.call.type << ' ' << row.call.data;
    EXPECT_EQ(answer.width, row.width) << row.call.type << ' ' << row.call.data;
    EXPECT_EQ(answer.height, row.height) << row.call.type << ' ' << row.call.data;
    int width = 0;
    int height = 0;
    korvex_device_painted_size(answer.device.get(), &width, &height);
    EXPECT_EQ(width, (row.width + 31) / 32 * 32);  // rows are whole 32 pixels
    EXPECT_EQ(height, row.height);
    for (int x = row.width; x < width; ++x)
      EXPECT_EQ(korvex_device_pixel(answer.device.get(), x, 0), 0xFFFFFFU);
  }
}

TEST(CompositeEntry, AMovedLastRowOverhangsWhereRowsHaveOneCharacterEach) {
  // The seventh row begins at character 6, so it would be drawn from its other end; being odd it is moved.
  const Answer answer = make({6, 8, 0, 1, "018720202574301721y"});
  EXPECT_EQ(answer.width, 36 * 8);
  EXPECT_EQ(answer.height, (7 * 34 + 6 * 3) * 8);
  const auto pixel = [&](int module, int line_from_below) {
    return korvex_device_pixel(answer.device.get(), module * 8, answer.height - line_from_below);
  };
  EXPECT_EQ(pixel(36, 1), 0U);         // the last guard module
  EXPECT_EQ(pixel(36, 34 * 8), 0U);    // all of its height
  EXPECT_EQ(pixel(39, 1), 0xFFFFFFU);  // 37 * 8 pixels are padded to 320
  EXPECT_EQ(korvex_device_is_painted(answer.device.get(), 36 * 8, 0), 0);
}

TEST(CompositeEntry, FaultsHaveTheirCodesAndPaintNothing) {
  struct Row {
    Call call;
    int result;
  };
  for (const Row& row : {
           Row{{13, 1, 1, 1, std::string(2437, '1')}, KORVEX_BAD_DATA},  // the length is looked at first
           Row{{13, 0, 1, 1, std::string(2436, '1')}, KORVEX_NO_SYMBOL},
           Row{{0, 1, 1, 1, "1"}, KORVEX_NO_SYMBOL},
           Row{{1, 0, 1, 1, "1"}, KORVEX_BAD_PARAMETER},
           Row{{1, 1, 1, 1, "12345678901234"}, KORVEX_BAD_PARAMETER},
           Row{{1, 1, 1, 1, "12A"}, KORVEX_BAD_PARAMETER},
           Row{{1, 1, 1, 1, "1|\x7F"}, KORVEX_BAD_PARAMETER},
           Row{{3, 1, 1, 1, "1|" + std::string(200, 'A')}, KORVEX_BAD_PARAMETER},
           Row{{6, 1, 1, 0, kItem}, KORVEX_BAD_PARAMETER},
           Row{{6, 1, 1, 2, kItem + "|"}, KORVEX_BAD_PARAMETER},
           Row{{6, 1, 1, 22, "02" + kItem.substr(2)}, KORVEX_BAD_PARAMETER},
           Row{{6, 1, 1, 22, kItem + "10^"}, KORVEX_BAD_PARAMETER},
           Row{{6, 1, 1, 22, kItem + std::string(26, 'A')}, KORVEX_BAD_PARAMETER},  // 42 characters
           Row{{6, 1, 1, 22, kItem + std::string(59, '1')}, KORVEX_BAD_PARAMETER},  // 75 digits
           Row{{6, 1, 1, 21, kItem + std::string(58, '1')}, KORVEX_BAD_PARAMETER},  // 22 data characters
           Row{{7, 1, 1, 1, "4006381333931"}, KORVEX_BAD_PARAMETER},
           Row{{8, 1, 1, 1, "001234500004"}, KORVEX_BAD_PARAMETER},
           Row{{11, 1, 0, 1, "12"}, KORVEX_BAD_PARAMETER},
           Row{{11, 1, 1, 1, "\x85"}, KORVEX_BAD_PARAMETER},
           Row{{11, 1, 1, 1, std::string(49, 'A')}, KORVEX_BAD_PARAMETER},
           Row{{11, 1, 1, 1, "12|"}, KORVEX_BAD_PARAMETER},  // six symbol characters of nine
           Row{{12, 1, 1, 1, "12|"}, KORVEX_BAD_PARAMETER},
       }) {
    const Answer answer = make(row.call);
    EXPECT_EQ(answer.result, row.result) << row.call.type << ' ' << row.call.data;
    EXPECT_EQ(answer.width, -1) << row.call.type << ' ' << row.call.data;
    EXPECT_EQ(korvex_device_operation_count(answer.device.get()), 0);
    EXPECT_EQ(answer.console, "");
  }
  Symbol_Size size{};
  CC_Params params{
      .type = 1, .module_size = 1, .linear_height = 1, .data = nullptr, .length = -1, .segments_per_row = 1};
  EXPECT_EQ(CC_Encode(nullptr, &params, &size), KORVEX_BAD_DATA);
  params.length = 1;
  EXPECT_EQ(CC_Encode(nullptr, &params, &size), KORVEX_BAD_PARAMETER);
  EXPECT_EQ(CC_Encode(nullptr, nullptr, &size), KORVEX_BAD_PARAMETER);
}

TEST(CompositeEntry, LimitedSaysOnStandardOutputThatItsValueIsTooLarge) {
  EXPECT_EQ(make({5, 1, 0, 0, "1999999999999"}).result, KORVEX_OK);
  const Answer answer = make({5, 1, 0, 0, "2000000000000"});
  EXPECT_EQ(answer.result, KORVEX_BAD_PARAMETER);
  EXPECT_EQ(answer.console, "\nerror occurred, exiting.");
  EXPECT_EQ(answer.width, -1);
}

TEST(CompositeEntry, AZeroByteEndsTheTextAndABarSplitsItOnce) {
  EXPECT_EQ(make({1, 1, 0, 0, std::string("12\0A|", 5)}).width, 96);
  EXPECT_EQ(make({1, 1, 0, 0, "12|A|B"}).result, KORVEX_BAD_PARAMETER);  // no bar in element strings
}

TEST(CompositeEntry, EachRowIsABitmapFromTheLowestUp) {
  const Answer answer = make({3, 2, 0, 0, "1"});
  std::vector<std::string> operations;
  for (int i = 0; i < korvex_device_operation_count(answer.device.get()); ++i) {
    operations.emplace_back(korvex_device_operation(answer.device.get(), i, nullptr));
  }
  std::vector<std::string> expected;
  for (int row = 0; row < 3; ++row) {
    for (const char* name :
         {"CreateBitmap", "CreateCompatibleDC", "SelectObject", "BitBlt", "DeleteDC", "DeleteObject"}) {
      expected.emplace_back(name);
    }
  }
  EXPECT_EQ(operations, expected);
  // The first elements of the lower row are dark, light; of the upper one light, dark.
  EXPECT_EQ(korvex_device_pixel(answer.device.get(), 0, 0), 0xFFFFFFU);
  EXPECT_EQ(korvex_device_pixel(answer.device.get(), 2, 9), 0U);
  EXPECT_EQ(korvex_device_pixel(answer.device.get(), 0, 12), 0U);
  EXPECT_EQ(korvex_device_pixel(answer.device.get(), 1, 25), 0U);
  EXPECT_EQ(korvex_device_pixel(answer.device.get(), 2, 25), 0xFFFFFFU);
}

TEST(CompositeEntry, RowsTooWideForTheirBufferAreNotPaintedButMeasured) {
  // 7016 bytes are 56128 pixels: 108 for each of 517 modules. The size pair has sixteen bits.
  const std::string text(48, 'A');
  const Answer widest = make({11, 108, 1, 0, text});
  EXPECT_EQ(widest.result, KORVEX_OK);
  EXPECT_EQ(widest.width, 108 * 517 - 65536);
  EXPECT_EQ(widest.height, 108);
  const Answer wider = make({11, 109, 1, 0, text});
  EXPECT_EQ(wider.result, KORVEX_BAD_PARAMETER);
  EXPECT_EQ(wider.width, 109 * 517 - 65536);
  EXPECT_EQ(wider.height, 109);
  EXPECT_EQ(korvex_device_operation_count(wider.device.get()), 0);
}

}  // namespace
}  // namespace korvex::composite
