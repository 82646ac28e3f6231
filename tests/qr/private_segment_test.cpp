#include "qr/private_segment.hpp"

#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>

#include "qr/des.hpp"
#include "support.hpp"

namespace korvex::qr {
namespace {

using test::Bytes;
using test::bytes;
using test::from_hex;

constexpr std::array<std::uint8_t, 8> kKey = {0x01, 0x23, 0x45, 0x67, 0x89, 0xAB, 0xCD, 0xEF};

TEST(QrPrivateSegment, DesMatchesKnownAnswers) {
  const struct {
    std::uint64_t key, plaintext, ciphertext;
  } cases[] = {
      {0x0123456789ABCDEF, 0x4E6F772069732074, 0x3FA40E8A984D4815},  // FIPS 81, electronic codebook
      {0x0101010101010101, 0x8000000000000000, 0x95F8A5E5DD31D900},  // NIST SP 800-17, variable plaintext
      // NIST SP 800-17, substitution tables: these reach every entry.
      {0x7CA110454A1A6E57, 0x01A1D6D039776742, 0x690F5B0D9A26939B},
      {0x0131D9619DC1376E, 0x5CD54CA83DEF57DA, 0x7A389D10354BD271},
      {0x07A1133E4A0B2686, 0x0248D43806F67172, 0x868EBB51CAB4599A},
      {0x3849674C2602319E, 0x51454B582DDF440A, 0x7178876E01F19B2A},
      {0x04B915BA43FEB5B6, 0x42FD443059577FA2, 0xAF37FB421F8C4095},
      {0x0113B970FD34F2CE, 0x059B5E0851CF143A, 0x86A560F10EC6D85B},
      {0x0170F175468FB5E6, 0x0756D8E0774761D2, 0x0CD3DA020021DC09},
      {0x43297FAD38E373FE, 0x762514B829BF486A, 0xEA676B2CB7DB2B7A},
      {0x07A7137045DA2A16, 0x3BDD119049372802, 0xDFD64A815CAF1A0F},
      {0x04689104C2FD3B2F, 0x26955F6835AF609A, 0x5C513C9C4886C088},
      {0x37D06BB516CB7546, 0x164D5E404F275232, 0x0A2AEEAE3FF4AB77},
      {0x1F08260D1AC2465E, 0x6B056E18759F5CCA, 0xEF1BF03E5DFA575A},
      {0x584023641ABA6176, 0x004BD6EF09176062, 0x88BF0DB6D70DEE56},
      {0x025816164629B007, 0x480D39006EE762F2, 0xA1F9915541020B56},
      {0x49793EBC79B3258F, 0x437540C8698F3CFA, 0x6FBF1CAFCFFD0556},
      {0x4FB05E1515AB73A7, 0x072D43A077075292, 0x2F22E49BAB7CA1AC},
      {0x49E95D6D4CA229BF, 0x02FE55778117F12A, 0x5A6B612CC26CCE4A},
      {0x018310DC409B26D6, 0x1D9D5C5018F728C2, 0x5F4C038ED12B2E41},
      {0x1C587F1C13924FEF, 0x305532286D6F295A, 0x63FAC0D034D9F793},
  };
  Des::RoundOutputs outputs;
  for (const auto& [key, plaintext, ciphertext] : cases) {
    EXPECT_EQ(Des(key).encipher(plaintext, outputs), ciphertext) << std::hex << key;
  }
}

// Whole blocks are cipher block chaining from zeros (the first case agrees with OpenSSL). The rest of the
// second and third case was worked out with a bit-by-bit DES of its own.
TEST(QrPrivateSegment, ChainsBlocksAndCoversTheRest) {
  const struct {
    const char* plaintext;
    const char* ciphertext;
  } cases[] = {
      {"Now is the time for all ", "3F A4 0E 8A 98 4D 48 15 0B 2E 73 F8 8D C5 85 6A 70 A3 06 40 CC 76 DD 8B"},
      {"Now is the time", "3F A4 0E 8A 98 4D 48 15 38 6D FF 1A 9E 8C FC"},
      {"Now is t!", "3F A4 0E 8A 98 4D 48 15 71"},
  };
  for (const auto& [plaintext, ciphertext] : cases) {
    Bytes text = bytes(plaintext);
    encipher(text, kKey);
    EXPECT_EQ(test::to_hex(text), ciphertext);
  }
}

TEST(QrPrivateSegment, CheckValueIsCrc16Arc) {
  EXPECT_EQ(crc16_arc(bytes("123456789")), 0xBB3D);
  EXPECT_EQ(crc16_arc(bytes("6789"), crc16_arc(bytes("12345"))), 0xBB3D);
}

/// Data codewords with a private segment of `text`, public data "7".
std::string codewords(Options options, int version, std::string_view text) {
  const Bytes public_data = bytes("7");
  const Bytes private_data = bytes(text);
  options.private_data = PrivateData{private_data, kKey};
  const auto stream_of = [&](const Bytes& data) {
    Stream stream;
    stream.data = data;
    EXPECT_EQ(analyse(options, data, stream.segments), Analysis::done);
    stream.size = stream_size(options, stream.segments.all(), data);
    return stream;
  };
  const Stream public_stream = stream_of(public_data);
  const Stream private_stream = stream_of(private_data);
  CodewordBuffer buffer;
  write_data_codewords(options, version, public_stream, &private_stream, buffer);
  const int count = capacity(options.type, version, options.level).data_codewords;
  return test::to_hex(std::span(buffer).first(static_cast<std::size_t>(count)));
}

// Public 10 05 C0, then 0110, length 8, and the enciphered 10 05 C0 00 00 00 and their check value B8 67. Up
// to version 9 the length has eight bits, so bytes lie across codewords.
TEST(QrPrivateSegment, FollowsTheTerminatorOfThePublicData) {
  EXPECT_EQ(codewords({}, 1, "7"), "10 05 C0 60 8B 7E 85 5C 49 62 F5 3E D0 EC 11 EC");
  // From version 10 on counts have two bits more, the length twelve: the private stream is 10 01 70 there.
  Bytes text = from_hex("10 01 70 00 00 00");
  const std::uint16_t check = crc16_arc(kKey, crc16_arc(text));
  text.push_back(static_cast<std::uint8_t>(check));
  text.push_back(static_cast<std::uint8_t>(check >> 8));
  encipher(text, kKey);
  const std::string start = "10 01 70 60 08 " + test::to_hex(text) + " EC 11";
  EXPECT_EQ(codewords({}, 10, "7").substr(0, start.size()), start);
  // GS1 and Model 1 repeat their prefix in the private stream: 51 00 5C.
  EXPECT_EQ(codewords({.type = SymbolType::gs1}, 1, "7"), "51 00 5C 00 60 8F EC 8F 80 F9 28 09 19 00 EC 11");
}

TEST(QrPrivateSegment, VersionHoldsBothStreams) {
  const auto version = [](const Options& options, std::string_view text) {
    Options with_data = options;
    const Bytes data = bytes(text);
    with_data.private_data = PrivateData{data, kKey};
    const Result<Symbol> symbol = encode(with_data, "7");
    return symbol ? symbol->version : static_cast<int>(symbol.error().code);
  };
  // 3 codewords of public data, 2 of header, 8: thirteen, as many as 1-Q has.
  EXPECT_EQ(version({.level = Level::quartile}, "7"), 1);
  EXPECT_EQ(version({.level = Level::quartile}, "7777777777777"), 2) << "seven bytes";
  EXPECT_EQ(version({.level = Level::high}, "7"), 2);
  // A structured-append header stands in both streams: 6 + 2 + 7 + 2 codewords in place of the 16 of 1-M.
  const Options append{.append = StructuredAppend{1, 2, 0}};
  EXPECT_EQ(version(append, "7777"), 1);
  EXPECT_EQ(version(append, "77777"), 2);
  Options fixed_version = append;
  fixed_version.version = 1;
  EXPECT_EQ(version(fixed_version, "77777"), static_cast<int>(Code::no_symbol));
}

// The key schedule of 133457799BBCDFF1, which textbooks work out step by step. Its halves are the same at the
// end as at the beginning. Calls run on a stack of ours, and afterwards nothing of all this is there.
TEST(QrPrivateSegment, LeavesNoKeyOnTheStack) {
  constexpr std::uint64_t kLeft = 0b1111000011001100101010101111;
  constexpr std::uint64_t kRight = 0b0101010101100110011110001111;
  const struct {
    std::uint64_t value;
    std::size_t bytes;
  } secrets[] = {
      {0x133457799BBCDFF1, 8},
      {0xF1DFBC9B79573413, 8},
      {kLeft, 4},
      {kRight, 4},
      {kLeft << 28 | kRight, 7},
      {0b000110110000001011101111111111000111000001110010, 6},  // round 1
      {0b110010110011110110001011000011100001011111110101, 6},  // round 16
  };
  using Call = void (*)(const Options&);
  for (const Call call :
       {+[](const Options& options) { EXPECT_TRUE(encode(options, "public")); },
        +[](const Options& options) { EXPECT_TRUE(encode_series(options, Bytes(200, 'A'), 2)); }}) {
    const auto key = from_hex("13 34 57 79 9B BC DF F1");
    const Bytes text = bytes("private");
    Options options{.private_data = PrivateData{.data = text}};
    std::ranges::copy(key, options.private_data->key.begin());
    std::pair<Call, const Options&> task(call, options);
    alignas(4096) static std::array<std::uint8_t, 1 << 20> stack;
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstack(&attributes, stack.data(), stack.size()), 0);
    const auto run = [](void* argument) -> void* {
      const auto& [made, given] = *static_cast<decltype(task)*>(argument);
      made(given);
      return nullptr;
    };
    pthread_t thread{};
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &task), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    EXPECT_NE(std::ranges::count(stack, 0), std::ssize(stack)) << "another stack was used";
    for (const auto& secret : secrets) {
      const auto* const bytes = reinterpret_cast<const std::uint8_t*>(&secret.value);
      const auto found = std::search(stack.begin(), stack.end(), bytes, bytes + secret.bytes);
      EXPECT_EQ(found, stack.end()) << std::hex << secret.value;
    }
  }
}

}  // namespace
}  // namespace korvex::qr
