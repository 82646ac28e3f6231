// What the C++ interface says of options and data that it refuses: a code, and a sentence that names what was
// given and what is allowed.
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>
#include <string>
#include <vector>

#include "korvex/korvex.hpp"

namespace korvex {
namespace {

struct Case {
  std::function<Error()> error;
  Code code;
  const char* part;  ///< of the sentence
};

/// The error of an encoding, which must be one.
template <class T>
Error error_of(const Result<T>& result) {
  return result ? Error{Code{}, "(encoded)"} : result.error();
}

void check(const std::vector<Case>& cases) {
  for (const Case& refused : cases) {
    const Error error = refused.error();
    EXPECT_EQ(error.code, refused.code) << error.message;
    EXPECT_NE(error.message.find(refused.part), std::string::npos)
        << error.message << " lacks " << refused.part;
    EXPECT_TRUE(error.message.ends_with('.')) << error.message;
  }
}

TEST(Errors, OfComposite) {
  using namespace composite;
  const auto of = [](Symbology symbology, std::string data, int segments = 22, int height = 50,
                     Dialect dialect = Dialect::standard) {
    return [=] {
      return error_of(encode({symbology, dialect, segments, height, gs1::Checking::lenient}, data));
    };
  };
  using enum Symbology;
  using enum Code;
  check({
      {of(databar_expanded, "0109501101530003", 0), bad_parameter, "0 segments a row"},
      {of(gs1_128, "0109501101530003", 22, 32768), bad_parameter, "32768 modules in height"},
      {of(databar_expanded, "0109501101530003|99A", 3), bad_parameter, "four segments; 3 segments a row"},
      {of(databar, "123456789012X"), bad_data, "'X' (0x58) at position 13; it takes 13 digits"},
      {of(ean13, "12345678901X"), bad_data, "EAN-13 has no character for"},
      {of(databar_limited, "2000000000000"), bad_data, "up to 1999999999999"},
      {of(databar_expanded, "01095011015300033103\x80"), bad_data, "byte 0x80 at position 21"},
      {of(databar_expanded,
          "0109501101530003"
          "10" +
              std::string(54, 'a')),
       no_symbol, "72 characters needs more than the 21 data characters"},
      {of(databar, "0950110153000|10\x7F"), bad_data, "The 2D component cannot hold"},
      {of(databar, "0950110153000|17A61231"), bad_data, "is no digit"},
      {of(gs1_128, std::string(3000, '1')), no_symbol, "3000 bytes; at most 2436"},
      {of(gs1_128, std::string(49, '1')), no_symbol, "at most 48 characters"},
      {of(databar, ""), bad_data, "no data"},
      {of(ean13, "|10A"), bad_data, "no data"},
      {of(databar, "0950110153000|90" + std::string(600, 'A')), no_symbol, "2D component"},
  });
}

TEST(Errors, OfTheOtherFamilies) {
  using enum Code;
  const auto linear = [](linear::Options options, std::string data) {
    return [=] { return error_of(linear::encode(options, data)); };
  };
  const auto qr = [](qr::Options options, std::string data) {
    return [=] { return error_of(qr::encode(options, data)); };
  };
  const auto pdf417 = [](pdf417::Options options) {
    return [=] { return error_of(pdf417::encode(options, "PDF")); };
  };
  const qr::PrivateData secret{.data = std::span(reinterpret_cast<const std::uint8_t*>("x"), 1), .key = {}};
  std::string alternating;  // a run of its own for every character
  for (int i = 0; i < 400; ++i) alternating += i % 2 == 0 ? "12345678901234" : "abcdefghij";
  check({
      {linear({.symbology = linear::Symbology::code39}, std::string(513, '1')), no_symbol,
       "513 bytes; at most 512"},
      {linear({.symbology = linear::Symbology::code128_segments, .segments = 2}, "B02B02abcd"), bad_data,
       "neighbours must differ"},
      {linear({.symbology = linear::Symbology::code128_segments, .segments = 2},
              "B20A20" + std::string(40, 'A')),
       no_symbol, "add up to 40; at most 30"},
      {linear({.symbology = linear::Symbology::code128_segments, .segments = 2}, "B02A05abAB"), bad_data,
       "ends inside segment 2"},
      {linear({.symbology = linear::Symbology::code39,
               .widths =
                   linear::ElementWidths{
                       .narrow_space = 99, .narrow_bar = 99, .wide_space = 99, .wide_bar = 99}},
              "0123456789"),
       no_symbol, "too wide; at most 5984 modules"},
      {qr({.type = qr::SymbolType::micro, .level = qr::Level::low, .private_data = secret}, "1"),
       bad_parameter, "Micro QR cannot carry private data"},
      {qr({.type = qr::SymbolType::rmqr, .append = qr::StructuredAppend{1, 2, 0}}, "1"), bad_parameter,
       "rMQR has no structured append"},
      {qr({.mode = qr::Mode::alphanumeric}, "AB#"), bad_data, "packs 0-9, A-Z, the space"},
      {qr({}, alternating), no_symbol, "more than 200 segments"},
      {pdf417({.kind = pdf417::Kind::micro, .columns = 5}), bad_parameter, "5 columns are out of range"},
      {pdf417({.kind = pdf417::Kind::micro, .rows = 5}), bad_parameter, "does not have 5 rows"},
      {pdf417({.kind = pdf417::Kind::micro, .columns = 1, .rows = 44}), bad_parameter, "44"},
  });
}

template <class Enumeration>
constexpr Enumeration unlisted() {
  return static_cast<Enumeration>(99);
}

// Enumerations can hold any number.
TEST(Errors, OfValuesThatNoListHas) {
  using enum Code;
  const auto of = [](const auto& options) {
    return [=] { return error_of(encode(options, std::string_view("1234567"))); };
  };
  const auto dialect = unlisted<Dialect>();
  check({
      {of(linear::Options{.symbology = unlisted<linear::Symbology>()}), bad_parameter, "symbology"},
      {of(linear::Options{.dialect = dialect}), bad_parameter, "dialect"},
      {of(linear::Options{.ratio = unlisted<linear::Ratio>()}), bad_parameter, "ratio"},
      {of(linear::Options{.symbology = linear::Symbology::msi, .check = unlisted<linear::CheckCharacters>()}),
       bad_parameter, "check"},
      {of(qr::Options{.type = unlisted<qr::SymbolType>()}), bad_parameter, "symbol type"},
      {of(qr::Options{.level = unlisted<qr::Level>()}), bad_parameter, "level"},
      {of(qr::Options{.mode = unlisted<qr::Mode>()}), bad_parameter, "mode"},
      {of(qr::Options{.dialect = dialect}), bad_parameter, "dialect"},
      {of(pdf417::Options{.kind = unlisted<pdf417::Kind>()}), bad_parameter, "kind"},
      {of(datamatrix::Options{.shape = unlisted<datamatrix::Shape>()}), bad_parameter, "shape"},
      {of(maxicode::Options{.mode = unlisted<maxicode::Mode>()}), bad_parameter, "mode is 99"},
      {of(maxicode::Options{.dialect = dialect}), bad_parameter, "dialect"},
      {of(composite::Options{.symbology = unlisted<composite::Symbology>()}), bad_parameter, "symbology"},
      {of(composite::Options{.dialect = dialect}), bad_parameter, "dialect"},
      {of(veri::Options{.correction = unlisted<veri::Correction>()}), bad_parameter,
       "99 check bytes a block"},
  });
}

// What stands beside encode() takes any argument too.
TEST(Errors, HelpersAnswerForAnyArgument) {
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const int size : {-kMost, 0, 2, 93, kMost}) {
    EXPECT_LT(veri::capacity_bytes(size, veri::Correction::none), 0) << size;
  }
  EXPECT_LT(veri::capacity_bytes(92, unlisted<veri::Correction>()), 0);
  const auto zones = [](int width) {
    return linear::quiet_zones({.symbology = linear::Symbology::itf,
                                .widths = linear::ElementWidths{.narrow_space = width, .narrow_bar = width}})
        .left;
  };
  EXPECT_EQ(zones(kMost), 990);
  EXPECT_EQ(zones(-kMost), 10);
  EXPECT_EQ(linear::quiet_zones({.symbology = unlisted<linear::Symbology>()}).left, 10);
  EXPECT_EQ(composite::quiet_zones({.symbology = unlisted<composite::Symbology>()}).left, 0);
  EXPECT_EQ(qr::version_name(qr::SymbolType::rmqr, 33) + qr::version_name(qr::SymbolType::micro, 0), "");
  EXPECT_EQ(qr::version_name(unlisted<qr::SymbolType>(), 1), "");

  const ModuleMatrix bulls_eye = maxicode::raster(ModuleMatrix(33, 30));
  ModuleMatrix larger(40, 100);
  larger.set_dark(39, 99, true);
  EXPECT_EQ(maxicode::raster(larger), bulls_eye);
  EXPECT_EQ(maxicode::raster({}), bulls_eye);
  EXPECT_THROW(ModuleMatrix(-1, 1), std::length_error);
  EXPECT_THROW(ModuleMatrix(1, -1), std::length_error);
}

// A sentence stays one whatever it is about.
TEST(Errors, ShowLittleOfLongData) {
  const std::string escapes(100'000, '\x1B');
  const std::vector<std::string> texts = {"(01)" + escapes, "(10)" + escapes, "(17)" + escapes, escapes,
                                          "[21]A\u202E"};
  for (const std::string& text : texts) {
    const std::string message = error_of(gs1::element_string(text)).message;
    EXPECT_LE(message.size(), 300U);
    EXPECT_TRUE(std::ranges::all_of(message, [](char c) { return c >= ' ' && c <= '~'; })) << message;
  }
  const std::string postal_code(3000, '\x1B');
  const Error error = error_of(maxicode::encode({.mode = maxicode::Mode::carrier_alphanumeric,
                                                 .postal_code = postal_code,
                                                 .country_code = 1,
                                                 .service_class = 1},
                                                "x"));
  EXPECT_LE(error.message.size(), 300U);
  EXPECT_NE(error.message.find("\\x1B...\" (3000 bytes)"), std::string::npos) << error.message;
}

}  // namespace
}  // namespace korvex
