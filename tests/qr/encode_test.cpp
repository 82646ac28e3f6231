#include <gtest/gtest.h>

#include <climits>

#include "model1_reader.hpp"
#include "support.hpp"

namespace korvex::qr {
namespace {

using test::Bytes;
using test::bytes;

/// The version chosen, or the code of the error.
int version_of(const Options& options, std::string_view data) {
  const Result<Symbol> symbol = encode(options, data);
  return symbol ? symbol->version : static_cast<int>(symbol.error().code);
}

constexpr int kNoSymbol = static_cast<int>(Code::no_symbol);

// ISO/IEC 18004:2015, Table 7, and ISO/IEC 23941:2022: the most characters of a version, and one more.
TEST(QrEncode, VersionsHoldWhatTheStandardsSay) {
  const struct {
    Options options;
    char character;
    int most;
    int version;
    int next;
  } cases[] = {
      {{.level = Level::low}, '1', 41, 1, 2},
      {{.level = Level::high}, 'A', 10, 1, 2},
      {{.level = Level::medium}, 'a', 14, 1, 2},
      {{.level = Level::low}, '1', 552, 9, 10},
      {{.level = Level::low}, 'a', 230, 9, 10},
      {{.level = Level::quartile}, 'A', 1094, 26, 27},
      {{.level = Level::low}, 'a', 1367, 26, 27},
      {{.level = Level::low}, '1', 7089, 40, kNoSymbol},
      {{.level = Level::high}, 'a', 1273, 40, kNoSymbol},
      {{.type = SymbolType::micro, .level = Level::low}, '1', 5, 1, 2},
      {{.type = SymbolType::micro, .level = Level::low}, '1', 23, 3, 4},
      {{.type = SymbolType::micro, .level = Level::low}, 'A', 6, 2, 3},
      {{.type = SymbolType::micro, .level = Level::low}, 'a', 9, 3, 4},
      {{.type = SymbolType::micro, .level = Level::quartile}, '1', 21, 4, kNoSymbol},
      {{.type = SymbolType::micro, .level = Level::high}, '1', 0, 0, kNoSymbol},
      {{.type = SymbolType::rmqr, .rmqr_rows = 7}, '1', 12, 1, 2},
      {{.type = SymbolType::rmqr, .level = Level::high, .rmqr_rows = 17}, 'a', 74, 32, kNoSymbol},
      {{.type = SymbolType::rmqr, .level = Level::low, .rmqr_rows = 17}, '1', 0, 0, kNoSymbol},
      {{.type = SymbolType::model1, .level = Level::low},
       '1',
       40,
       1,
       2},  // 152 bits, 4 + 14 of them no digits
      {{.type = SymbolType::model1, .level = Level::high},
       'a',
       207,
       14,
       kNoSymbol},  // 210 codewords, 24 bits
      // A version above the last that is chosen by itself does not help Model 1.
      {{.type = SymbolType::model1, .level = Level::high, .version = 20}, 'a', 207, 20, kNoSymbol},
  };
  for (const auto& [options, character, most, version, next] : cases) {
    SCOPED_TRACE(std::to_string(most) + " times " + character);
    if (most > 0) {
      EXPECT_EQ(version_of(options, std::string(static_cast<std::size_t>(most), character)), version);
    }
    EXPECT_EQ(version_of(options, std::string(static_cast<std::size_t>(most + 1), character)), next);
  }
}

// 230 bytes fill version 9-L to four bits. Counted with the eight-bit count of version 9, two digits more
// exceed it by less than a codeword; version 10, with its longer counts, must hold what is drawn.
TEST(QrEncode, CountsWithTheIndicatorsOfTheVersionDrawn) {
  for (int length = 220; length <= 280; ++length) {
    const Result<Symbol> symbol =
        encode({.level = Level::low, .mode = Mode::byte}, std::string(static_cast<std::size_t>(length), 'a'));
    const int bits = 4 + (length > 230 ? 16 : 8) + 8 * length;
    EXPECT_EQ(symbol->version, length <= 230     ? 9 - (length <= 192 ? 1 : 0)
                               : bits <= 274 * 8 ? 10
                                                 : 11)
        << length;
  }
}

TEST(QrEncode, AnOutOfReachVersionIsRefused) {
  EXPECT_EQ(version_of({.version = 1}, "123456789012345678901234567890123456"), kNoSymbol);
  EXPECT_EQ(version_of({.version = 40}, "1"), 40);
  EXPECT_EQ(version_of({.type = SymbolType::micro, .level = Level::low, .version = 1}, "A"), kNoSymbol);
  EXPECT_EQ(version_of({.type = SymbolType::rmqr, .version = 32, .rmqr_rows = 7}, "1"), 32);
}

// A requested rMQR version decides the height; the data is still split for the rows that were given.
TEST(QrEncode, RmqrRowsSplitTheDataOfARequestedVersion) {
  const Options options = {.type = SymbolType::rmqr, .level = Level::high, .version = 23, .rmqr_rows = 7};
  Options fitting_rows = options;
  fitting_rows.rmqr_rows = 15;
  const auto symbol = encode(options, "60p");
  EXPECT_EQ(symbol->modules.rows(), 15);
  EXPECT_EQ(symbol->segments.size(), 2);
  EXPECT_EQ(encode(fitting_rows, "60p")->segments.size(), 1);
}

TEST(QrEncode, FewestModulesOfAllRmqrHeights) {
  for (const char* data :
       {"1", "12345678", "A longer text of lower case letters", "0123456789012345678901234567890123456789"}) {
    int fewest = INT_MAX;
    for (const int rows : kRmqrRows) {
      const auto symbol = encode({.type = SymbolType::rmqr, .rmqr_rows = rows}, data);
      if (symbol) fewest = std::min(fewest, symbol->modules.rows() * symbol->modules.columns());
    }
    const auto chosen = encode({.type = SymbolType::rmqr}, data);
    EXPECT_EQ(chosen->modules.rows() * chosen->modules.columns(), fewest) << data;
  }
}

TEST(QrEncode, ErrorsSayWhatWasWrong) {
  const struct {
    Options options;
    std::string data;
    Code code;
    const char* part;
  } cases[] = {
      {{}, "", Code::bad_parameter, "no data"},
      {{.version = 41}, "1", Code::bad_parameter, "Version 41 is not one of QR Code; there are 1 to 40"},
      {{.type = SymbolType::micro, .version = 5},
       "1",
       Code::bad_parameter,
       "Version 5 is not one of Micro QR; there are 1 to 4"},
      {{.type = SymbolType::rmqr, .rmqr_rows = 8},
       "1",
       Code::bad_parameter,
       "8 rows; there are 7, 9, 11, 13, 15, 17"},
      {{.append = StructuredAppend{3, 2, 0}}, "1", Code::bad_parameter, "Position 3 is not in a series of 2"},
      {{.append = StructuredAppend{1, 17, 0}}, "1", Code::bad_parameter, "17 symbols; it has 1 to 16"},
      {{.type = SymbolType::micro, .append = StructuredAppend{1, 2, 0}},
       "1",
       Code::bad_parameter,
       "Micro QR has no"},
      {{.type = SymbolType::gs1, .mode = Mode::byte}, "1", Code::gs1_fixed_mode, "fixed mode"},
      {{.private_data = PrivateData{}}, "1", Code::bad_parameter, "private data is empty; it needs"},
      {{.mode = Mode::numeric}, "12a", Code::bad_data, "byte 'a' (0x61) at position 3"},
      {{.version = 1},
       std::string(100, 'a'),
       Code::no_symbol,
       "Version 1 does not hold the data at level M; the smallest that does is 6"},
      {{}, std::string(3000, 'a'), Code::no_symbol, "level M"},
      {{}, std::string(7367, '1'), Code::bad_parameter, "7366 characters"},
  };
  for (const auto& [options, data, code, part] : cases) {
    const Result<Symbol> symbol = encode(options, data);
    ASSERT_FALSE(symbol) << part;
    EXPECT_EQ(symbol.error().code, code) << part;
    EXPECT_NE(symbol.error().message.find(part), std::string::npos) << symbol.error().message;
  }
}

test::Model1Layout model1_layout(int version, int level) {
  const Capacity parts = capacity(SymbolType::model1, version, static_cast<Level>(level));
  return {parts.data_codewords, parts.total_codewords, parts.blocks};
}

TEST(QrEncode, ReaderReadsEveryModel1Symbol) {
  std::mt19937 random(20);
  const std::string text =
      "Model 1 12345678901234 ABCDEFGHIJK \x88\x9F\x93\x5F\x88\x9F\x93\x5F\x88\x9F\x93\x5F";
  for (int version = 1; version <= 40; ++version) {
    for (const Level level : {Level::low, Level::medium, Level::quartile, Level::high}) {
      SCOPED_TRACE(std::to_string(version) + ", level " + std::to_string(static_cast<int>(level)));
      const int room = capacity(SymbolType::model1, std::min(version, 14), level).data_codewords - 7;
      Bytes data = bytes(std::string_view(text).substr(0, room < 50 ? 1 : text.size()));
      const bool append = room >= 50 && version % 2 == 0;
      while (static_cast<int>(data.size()) < room - 60)
        data.push_back(static_cast<std::uint8_t>('a' + random() % 26));
      Options options{.type = SymbolType::model1, .level = level, .version = version};
      if (append) options.append = StructuredAppend{3, 7, 0xA5};
      const Result<Symbol> symbol = encode(options, std::span<const std::uint8_t>(data));
      ASSERT_TRUE(symbol) << symbol.error().message;
      const auto content = test::read_model1(symbol->modules, model1_layout);
      ASSERT_TRUE(content);
      EXPECT_EQ(content->data, data);
      EXPECT_EQ(content->level, static_cast<int>(level));
      EXPECT_EQ(content->mask, symbol->mask);
      EXPECT_EQ(content->sequence, append ? 0x26 : -1);
      EXPECT_EQ(content->parity, append ? 0xA5 : -1);
    }
  }
}

TEST(QrSeries, SplitsDataWithTheParityOfTheWhole) {
  Bytes data;
  for (int i = 0; i < 150; ++i) data.insert(data.end(), {0x88, 0x9F});
  const Options options{.type = SymbolType::model1, .level = Level::low, .version = 4};
  const auto series = encode_series(options, data);
  ASSERT_TRUE(series) << series.error().message;
  ASSERT_EQ(series->size(), 4U);  // 80 codewords: 640 - 4 - 20 - 12 bits are 46 characters
  Bytes read;
  for (std::size_t i = 0; i < series->size(); ++i) {
    const auto content = test::read_model1((*series)[i].modules, model1_layout);
    ASSERT_TRUE(content);
    EXPECT_EQ(content->sequence, static_cast<int>(i * 16 + 3));
    EXPECT_EQ(content->parity, 0);  // 150 times 0x88 ^ 0x9F
    EXPECT_EQ(content->data.size() % 2, 0U) << "no character is torn apart";
    read.insert(read.end(), content->data.begin(), content->data.end());
  }
  EXPECT_EQ(read, data);
  EXPECT_EQ(append_parity(bytes("abc")), 'a' ^ 'b' ^ 'c');
}

TEST(QrSeries, TakesAsFewSymbolsAsHoldTheData) {
  const auto count = [](const Options& options, std::size_t length, int symbols = 0) {
    const Bytes data(length, 'a');
    const auto series = encode_series(options, data, symbols);
    if (!series) return static_cast<int>(series.error().code);
    for (const Symbol& symbol : *series) EXPECT_EQ(symbol.version, series->front().version);
    return static_cast<int>(series->size());
  };
  const Options one_l{.level = Level::low, .version = 1};  // 17 bytes alone, 15 in a series
  EXPECT_EQ(count(one_l, 17), 1);
  EXPECT_EQ(count(one_l, 18), 2);
  EXPECT_EQ(count(one_l, 30), 2);
  EXPECT_EQ(count(one_l, 31), 3);
  EXPECT_EQ(count(one_l, 16 * 15), 16);
  EXPECT_EQ(count(one_l, 16 * 15 + 1), kNoSymbol);
  EXPECT_EQ(count({}, 16 * 2000), 14);  // more than one stream may have; 40-M holds 2328 in a series
  EXPECT_EQ(count({}, 30, 5), 5);
  EXPECT_EQ(count({}, 30, 17), static_cast<int>(Code::bad_parameter));
  EXPECT_EQ(count({}, 3, 4), static_cast<int>(Code::bad_parameter));
  EXPECT_EQ(count({.type = SymbolType::gs1}, 5000), static_cast<int>(Code::bad_data));
  EXPECT_EQ(count({.type = SymbolType::gs1, .gs1_checking = gs1::Checking::lenient}, 5000),
            static_cast<int>(Code::bad_parameter));
}

}  // namespace
}  // namespace korvex::qr
