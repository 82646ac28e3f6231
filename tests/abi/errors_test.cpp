// What the C++ interface says of options and data that it refuses: a code, and a sentence that names what was
// given and what is allowed.
#include <gtest/gtest.h>

#include <functional>
#include <string>

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
              std::string(60, 'a')),
       bad_data, "at most 74 digits, or 41"},
      {of(databar, "0950110153000|10\x7F"), bad_data, "The 2D component cannot hold"},
      {of(databar, "0950110153000|17A61231"), bad_data, "is no digit"},
      {of(gs1_128, std::string(3000, '1')), bad_data, "3000 bytes; at most 2436"},
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
      {linear({.symbology = linear::Symbology::code39}, std::string(513, '1')), bad_data,
       "513 bytes; at most 512"},
      {linear({.symbology = linear::Symbology::code128_segments, .segments = 2}, "B02B02abcd"), bad_data,
       "neighbours must differ"},
      {linear({.symbology = linear::Symbology::code128_segments, .segments = 2},
              "B20A20" + std::string(40, 'A')),
       bad_data, "add up to 40; at most 30"},
      {linear({.symbology = linear::Symbology::code128_segments, .segments = 2}, "B02A05abAB"), bad_data,
       "ends inside segment 2"},
      {linear({.symbology = linear::Symbology::code39,
               .widths =
                   linear::ElementWidths{
                       .narrow_space = 99, .narrow_bar = 99, .wide_space = 99, .wide_bar = 99}},
              "0123456789"),
       bad_data, "too wide; at most 5984 modules"},
      {qr({.type = qr::SymbolType::micro, .level = qr::Level::low, .private_data = secret}, "1"),
       bad_parameter, "Micro QR cannot carry private data"},
      {qr({.type = qr::SymbolType::rmqr, .append = qr::StructuredAppend{1, 2, 0}}, "1"), bad_parameter,
       "rMQR has no structured append"},
      {qr({.mode = qr::Mode::alphanumeric}, "AB#"), bad_data, "packs 0-9, A-Z, the space"},
      {qr({}, std::string(7367, '1')), bad_parameter, "more than 7366 characters"},
      {qr({}, alternating), bad_parameter, "more than 200 segments"},
      {pdf417({.kind = pdf417::Kind::micro, .columns = 5}), bad_parameter, "5 columns are out of range"},
      {pdf417({.kind = pdf417::Kind::micro, .rows = 5}), bad_parameter, "does not have 5 rows"},
      {pdf417({.kind = pdf417::Kind::micro, .columns = 1, .rows = 44}), bad_parameter, "44"},
  });
}

}  // namespace
}  // namespace korvex
