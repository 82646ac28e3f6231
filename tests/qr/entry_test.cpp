#include <gtest/gtest.h>

#include <cstring>
#include <functional>
#include <memory>

#include "korvex/korvex32.h"
#include "support.hpp"

namespace korvex::qr {
namespace {

using test::Bytes;
using test::bytes;

/// A record that draws, and the memory that it points to.
struct Call {
  Bytes data = bytes("12345678");
  Bytes private_data = bytes("secret");
  QR_Params params = {};
  Symbol_Size size = {-7, -7};
  bool painted = false;

  Call() {
    params.ecc_level = 2;
    params.module_size = 1;
    params.symbol_type = 2;
    params.rmqr_rows = 1;
    params.version_used = 999;
    std::memcpy(params.private_key, "0123456789abCDEF", 16);
    own(data);
    params.private_data = private_data.data();
    params.private_length = static_cast<std::int16_t>(private_data.size());
  }
  Call(const Call&) = delete;

  void own(const Bytes& bytes) {
    data = bytes;
    params.data = data.data();
    params.data_length = static_cast<std::int16_t>(data.size());
  }
  std::int16_t run(decltype(QR_Encode)* function = QR_Encode) {
    const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                  korvex_device_destroy);
    const std::int16_t code = function(device.get(), &params, &size);
    std::int32_t width = 0;
    std::int32_t height = 0;
    korvex_device_painted_size(device.get(), &width, &height);
    painted = width > 0;
    if (code == KORVEX_OK) {
      EXPECT_EQ(width, size.width);
      EXPECT_EQ(height, size.height);
    }
    return code;
  }
};

struct Change {
  const char* what;
  std::function<void(QR_Params&)> make;
};

// The checks in their order; all give -1 but the one of GS1 with a fixed mode, which comes after the
// structured-append fields and before the data. Two at once: the earlier one's code.
TEST(QrEntry, FirstFailedCheckDecides) {
  const auto set = [](std::int16_t QR_Params::*field, std::int16_t value) {
    return [=](QR_Params& params) { params.*field = value; };
  };
  const auto append = [](std::int16_t count, std::int16_t index, std::int16_t parity, std::int16_t type) {
    return [=](QR_Params& params) {
      params.append_flag = 1;
      params.append_count = count;
      params.append_index = index;
      params.append_parity = parity;
      params.symbol_type = type;
    };
  };
  const Change bad_parameters[] = {
      {"level 0", set(&QR_Params::ecc_level, 0)},
      {"level 5", set(&QR_Params::ecc_level, 5)},
      {"no rMQR rows, of any type", set(&QR_Params::rmqr_rows, 0)},
      {"rMQR rows 7", set(&QR_Params::rmqr_rows, 7)},
      {"no data", set(&QR_Params::data_length, 0)},
      {"module size 0", set(&QR_Params::module_size, 0)},
      {"module size 100", set(&QR_Params::module_size, 100)},
      {"symbol type 0", set(&QR_Params::symbol_type, 0)},
      {"symbol type 6", set(&QR_Params::symbol_type, 6)},
      {"version -1", set(&QR_Params::version, -1)},
      {"version 41", set(&QR_Params::version, 41)},
      {"M5", [](QR_Params& p) { p.symbol_type = 3, p.version = 5; }},
      {"rMQR version 33", [](QR_Params& p) { p.symbol_type = 5, p.version = 33; }},
      {"series of 0", append(0, 1, 0, 2)},
      {"series of 17", append(17, 1, 0, 2)},
      {"symbol 0", append(2, 0, 0, 2)},
      {"symbol 3 of 2", append(2, 3, 0, 2)},
      {"parity -1", append(2, 1, -1, 2)},
      {"parity 256", append(2, 1, 256, 2)},
      {"series of GS1", append(2, 1, 0, 4)},
      {"series of rMQR", append(2, 1, 0, 5)},
  };
  const Change later[] = {
      {"GS1 in a fixed mode", [](QR_Params& p) { p.symbol_type = 4, p.fixed_mode_flag = 1; }},
      {"null data", [](QR_Params& p) { p.data = nullptr; }},
      {"bad key", [](QR_Params& p) { p.private_flag = 1, p.private_key[15] = 'G'; }},
      {"null private data", [](QR_Params& p) { p.private_flag = 1, p.private_data = nullptr; }},
      {"private data of Micro QR", [](QR_Params& p) { p.private_flag = 1, p.symbol_type = 3; }},
      {"no private data", [](QR_Params& p) { p.private_flag = 1, p.private_length = 0; }},
      {"rMQR without level", [](QR_Params& p) { p.symbol_type = 5, p.ecc_level = 1; }},
      {"too much for M1", [](QR_Params& p) { p.symbol_type = 3, p.version = 1, p.ecc_level = 1; }},
  };
  const std::int16_t later_codes[] = {-8, -1, -1, -1, -1, -1, -2, -2};
  const auto code_of = [](const Change& first, const Change* second) {
    Call call;
    first.make(call.params);
    if (second != nullptr) second->make(call.params);
    const std::int16_t code = call.run();
    EXPECT_FALSE(call.painted) << first.what;
    EXPECT_EQ(call.params.version_used, code == KORVEX_NO_SYMBOL ? 0 : 999) << first.what;
    EXPECT_EQ(call.size.width, -7) << first.what;
    return code;
  };
  for (const Change& change : bad_parameters) EXPECT_EQ(code_of(change, nullptr), -1) << change.what;
  for (std::size_t i = 0; i < std::size(later); ++i)
    EXPECT_EQ(code_of(later[i], nullptr), later_codes[i]) << later[i].what;
  // Together with a number out of range every later fault gives -1.
  for (const Change& change : later) {
    EXPECT_EQ(code_of(change, &bad_parameters[0]), -1) << change.what;
    EXPECT_EQ(code_of(change, &bad_parameters[11 - 1]), -1) << change.what;
  }
  // GS1 with a fixed mode comes before null data and a bad key, those before a symbol that does not exist.
  EXPECT_EQ(code_of(later[0], &later[1]), -8);
  EXPECT_EQ(code_of(later[0], &later[2]), -8);
  EXPECT_EQ(code_of(later[6], &later[1]), -1);
  EXPECT_EQ(code_of(later[7], &later[5]), -1);

  Call null_size;
  EXPECT_EQ(QR_Encode(nullptr, &null_size.params, nullptr), -1);
  EXPECT_EQ(null_size.params.version_used, 999);
  null_size.params.version = 1;
  null_size.own(Bytes(100, 'a'));
  EXPECT_EQ(QR_Encode(nullptr, &null_size.params, nullptr), -2)
      << "the data does not fit, before the size is needed";
  EXPECT_EQ(QR_Encode(nullptr, nullptr, nullptr), -1);
}

TEST(QrEntry, WritesVersionAndSizeAndPaints) {
  const struct {
    std::int16_t type, level, rows, version, module_size;
    std::uint16_t version_used;
    std::int16_t width, height;
  } cases[] = {
      {2, 2, 1, 0, 1, 1, 21, 21}, {2, 2, 6, 40, 1, 40, 177, 177}, {2, 2, 1, 1, 99, 1, 21 * 99, 21 * 99},
      {1, 2, 1, 0, 3, 1, 63, 63}, {3, 1, 1, 0, 1, 2, 13, 13},     {4, 2, 1, 0, 1, 1, 21, 21},
      {5, 2, 1, 0, 2, 1, 86, 14}, {5, 4, 3, 0, 1, 11, 27, 11},    {5, 2, 1, 32, 1, 32, 139, 17},
  };
  for (const auto& [type, level, rows, version, module_size, version_used, width, height] : cases) {
    for (const auto function : {QR_Encode, QR_Encode_x64}) {
      Call call;
      call.params.symbol_type = type;
      call.params.ecc_level = level;
      call.params.rmqr_rows = rows;
      call.params.version = version;
      call.params.module_size = module_size;
      EXPECT_EQ(call.run(function), KORVEX_OK);
      EXPECT_EQ(call.params.version_used, version_used) << "type " << type << ", version " << version;
      EXPECT_EQ(call.size.width, width);
      EXPECT_EQ(call.size.height, height);
      EXPECT_TRUE(call.painted);
    }
  }
}

// The record's numbers are not those of the C++ enumerations, so mixing them up shows.
TEST(QrEntry, FixedModesAndSeriesDrawWhatTheirOptionsDraw) {
  const struct {
    const char* what;
    std::function<void(QR_Params&)> record;
    std::function<void(Options&)> options;
  } cases[] = {
      {"numeric", [](QR_Params& p) { p.fixed_mode = 1; }, [](Options& o) { o.mode = Mode::numeric; }},
      {"alphanumeric", [](QR_Params& p) { p.fixed_mode = 2; },
       [](Options& o) { o.mode = Mode::alphanumeric; }},
      {"Kanji", [](QR_Params& p) { p.fixed_mode = 3; }, [](Options& o) { o.mode = Mode::kanji; }},
      {"byte", [](QR_Params& p) { p.fixed_mode = 4; }, [](Options& o) { o.mode = Mode::byte; }},
      {"no mode of the list", [](QR_Params& p) { p.fixed_mode = -9; },
       [](Options& o) { o.mode = Mode::alphanumeric; }},
      {"symbol 2 of 5",
       [](QR_Params& p) {
         p.fixed_mode_flag = 0;
         p.append_flag = 7;
         p.append_count = 5;
         p.append_index = 2;
         p.append_parity = 0xA9;
       },
       [](Options& o) {
         o.append = StructuredAppend{2, 5, 0xA9};
       }},
  };
  for (const auto& [what, change_record, change_options] : cases) {
    Call call;
    call.params.fixed_mode_flag = 1;
    change_record(call.params);
    Options options;
    options.dialect = Dialect::korvex32;
    change_options(options);
    const auto symbol = encode(options, call.data);
    ASSERT_TRUE(symbol) << what;

    const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                  korvex_device_destroy);
    ASSERT_EQ(QR_Encode(device.get(), &call.params, &call.size), KORVEX_OK) << what;
    ASSERT_EQ(call.size.width, symbol->modules.columns()) << what;
    for (int row = 0; row < symbol->modules.rows(); ++row) {
      for (int column = 0; column < symbol->modules.columns(); ++column) {
        ASSERT_EQ(korvex_device_pixel(device.get(), column, row) == 0, symbol->modules.dark(row, column))
            << what;
      }
    }
  }
}

TEST(QrEntry, TranslatesGs1DataInTheCallersBuffer) {
  const struct {
    std::string data;
    std::string after;  // as far as it was written; what follows stays
    bool drawn;
  } cases[] = {
      {"01@110AB",
       "01\x1D"
       "10ABB",
       true},
      {"@@@1@x", "@\x1Dx1@x", true},
      {"12@", "12@", true},  // nothing to stand for
      {"@@@", "@@@", true},
  };
  for (const auto& [data, after, drawn] : cases) {
    Call call;
    call.own(bytes(data));
    call.params.symbol_type = 4;
    EXPECT_EQ(call.run(), KORVEX_OK);
    EXPECT_EQ(std::string(call.data.begin(), call.data.end()), after);
    EXPECT_EQ(call.params.data_length, static_cast<std::int16_t>(data.size()));
  }
  // Checks before the translation leave the data alone, later faults do not.
  Call fixed_mode;
  fixed_mode.own(bytes("@@1"));
  fixed_mode.params.symbol_type = 4;
  fixed_mode.params.fixed_mode_flag = 1;
  EXPECT_EQ(fixed_mode.run(), KORVEX_GS1_FIXED_MODE);
  EXPECT_EQ(fixed_mode.data, bytes("@@1"));
  Call bad_key;
  bad_key.own(bytes("@@1"));
  bad_key.params.symbol_type = 4;
  bad_key.params.private_flag = 1;
  bad_key.params.private_key[0] = ' ';
  EXPECT_EQ(bad_key.run(), KORVEX_BAD_PARAMETER);
  EXPECT_EQ(bad_key.data, bytes("@11"));
}

}  // namespace
}  // namespace korvex::qr
