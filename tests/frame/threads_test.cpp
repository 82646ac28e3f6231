// Every export may be called from any number of threads at once: eight threads make the same calls in
// different orders, and every answer is the one that a single thread got. The threads' stacks may be small.
#include <gtest/gtest.h>
#include <pthread.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <vector>

#include "korvex/korvex.hpp"

namespace korvex {
namespace {

using Answer = std::string;
using Call = std::function<Answer()>;

Call linear(std::uint16_t type, std::string_view data, std::int16_t selector = 0) {
  return [=] {
    std::array<std::uint32_t, 188> bars{};
    std::array<std::uint32_t, 188> guards{};
    std::array<char, 23> text{};
    const Bar_Ratio ratio{selector, 1, 1, 3, 3};
    const Bit_Data bytes{static_cast<std::int16_t>(data.size()),
                         reinterpret_cast<const std::uint8_t*>(data.data())};
    Bit_Result result{};
    result.bars = bars.data();
    result.guards = guards.data();
    result.text = text.data();
    const auto code = Korvex_Bit(type, 1, 1, &ratio, &bytes, &result);
    Answer answer = std::to_string(code) + ' ' + std::to_string(result.bit_count) + ' ' + text.data() + ' ';
    for (const auto* words : {&bars, &guards}) {
      for (const auto word : *words) answer += std::to_string(word) + ',';
    }
    return answer;
  };
}

/// What an export of a two-dimensional family returns, writes and paints. `set` completes its record.
template <class Params, class Set>
Call painted(std::int16_t (*encode)(Korvex_Device*, Params*, Symbol_Size*), std::string_view text, Set set) {
  return [=] {
    std::string bytes(text);  // GS1 data is translated in place
    std::remove_const_t<Params> params{};
    set(params, bytes);
    Symbol_Size size{};
    const std::unique_ptr<Korvex_Device, decltype(&korvex_device_destroy)> device(korvex_device_create(0, 0),
                                                                                  &korvex_device_destroy);
    Answer answer = std::to_string(encode(device.get(), &params, &size)) + ' ' + bytes + ' ';
    for (int y = 0; y < size.height; ++y) {
      for (int x = 0; x < size.width; ++x) answer += korvex_device_pixel(device.get(), x, y) == 0 ? '1' : '0';
    }
    return answer;
  };
}

const std::uint8_t* unsigned_bytes(const std::string& text) {
  return reinterpret_cast<const std::uint8_t*>(text.data());
}
std::int16_t length(const std::string& text) {
  return static_cast<std::int16_t>(text.size());
}

Call qr(std::int16_t type, std::string_view data, std::int16_t private_flag = 0) {
  return painted<QR_Params>(QR_Encode, data, [=](QR_Params& params, std::string& bytes) {
    static const std::string kSecret = "private";
    params.ecc_level = 2;
    params.module_size = 1;
    params.symbol_type = type;
    params.rmqr_rows = 4;
    params.data = reinterpret_cast<std::uint8_t*>(bytes.data());
    params.data_length = length(bytes);
    params.private_flag = private_flag;
    std::copy_n("0123456789ABCDEF", sizeof params.private_key, params.private_key);
    params.private_data = unsigned_bytes(kSecret);
    params.private_length = length(kSecret);
  });
}

Call pdf417(std::int16_t micro, std::string_view data) {
  return painted<const PDF_Params>(PDF_Encode, data, [=](PDF_Params& params, const std::string& bytes) {
    params.module_width = 1;
    params.row_height = 3;
    params.micro = micro;
    params.columns = micro == 0 ? 0 : 2;
    params.rows = micro == 0 ? 0 : 11;
    params.data = unsigned_bytes(bytes);
    params.length = length(bytes);
  });
}

Call datamatrix(std::int16_t size, std::string_view data) {
  return painted<const DATA_Params>(DATA_Encode, data, [=](DATA_Params& params, const std::string& bytes) {
    params.module_width = params.module_height = 1;
    params.columns = params.rows = size;
    params.data = unsigned_bytes(bytes);
    params.length = length(bytes);
  });
}

Call maxicode(std::int16_t mode, std::string_view message) {
  return painted<const MAXI_Params>(MAXI_Encode, message, [=](MAXI_Params& params, const std::string& text) {
    params.position = params.total = 1;
    params.mode = mode;
    params.postal_code = mode == 3 ? "B1050A" : "152382802";
    params.service_class = 1;
    params.country_code = 840;
    params.message = text.c_str();
  });
}

Call composite(std::int16_t type, std::string_view data) {
  return painted<const CC_Params>(CC_Encode, data, [=](CC_Params& params, const std::string& bytes) {
    params.type = type;
    params.module_size = 1;
    params.linear_height = 20;
    params.segments_per_row = 4;
    params.data = unsigned_bytes(bytes);
    params.length = length(bytes);
  });
}

Call veri(std::int16_t symbol_size, std::int16_t ecc_mode, std::string_view data) {
  return painted<const VERI_Params>(VERI_Encode, data, [=](VERI_Params& params, const std::string& bytes) {
    params.symbol_size = symbol_size;
    params.ecc_mode = ecc_mode;
    params.data = unsigned_bytes(bytes);
    params.data_length = length(bytes);
  });
}

// One call or more of every encoder.
const std::vector<Call> kCalls = {
    linear(0, "A1234B"),
    linear(1, "*KORVEX*", 1),
    linear(1, "*WIDE*", 5),
    linear(2, "12345", 2),
    linear(3, "400638133393"),
    linear(4, "9638507"),
    linear(5, "1234", 1),
    linear(6, "1234", 2),
    linear(8, "12345678901234567"),
    linear(9, "Korvex"),
    linear(10, "98765"),
    linear(11, "12-34"),
    linear(12, "Code 93"),
    linear(13, "B06Korvex"),
    linear(14, "123455"),
    linear(15, "12345"),
    qr(1, "Model 1"),
    qr(2, "https://example.org/a/longer/address?of=some&length=1234567890"),
    qr(2, "public", 1),
    qr(3, "12345"),
    qr(4, "0104912345123459@110ABC"),
    qr(5, "rMQR 12345"),
    pdf417(0, "Some text, 0123456789012345678901234567890 and \xff\xfe bytes"),
    pdf417(1, "Micro 12345"),
    datamatrix(0, "Some text, AIMAIMAIM 0123456789 and \xff\xfe bytes"),
    datamatrix(48, "AIM*AIM>123"),
    maxicode(2, "MESSAGE 2"),
    maxicode(3, "MESSAGE 3"),
    maxicode(4, "Any text, 123456789"),
    composite(6, "0190012345678908310303001750"),
    composite(1, "0090012345678|99Korvex"),
    composite(11, "0190012345678908|911A2B3C4D5E"),
    veri(20, 2, "VERI"),
    veri(40, 4, "A larger one"),
};

TEST(Threads, EveryAnswerIsTheOneOfASingleThread) {
  std::vector<Answer> expected;
  for (const Call& call : kCalls) {
    expected.push_back(call());
    EXPECT_EQ(expected.back().substr(0, 2), "0 ") << "call " << expected.size();
  }

  constexpr int kThreads = 8;
  constexpr int kRounds = 102;
  std::array<int, kThreads> wrong{};
  std::vector<std::thread> threads;
  for (int number = 0; number < kThreads; ++number) {
    threads.emplace_back([&, number] {
      for (int round = 0; round < kRounds; ++round) {
        const auto i = static_cast<std::size_t>(round * (2 * number + 1) + number) % kCalls.size();
        if (kCalls[i]() != expected[i]) ++wrong[static_cast<std::size_t>(number)];
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(wrong, (std::array<int, kThreads>{}));
}

// What takes the most stack: the largest symbols, whatever all families have in C++ besides.
template <class Encode>
Call encoded(Encode encode) {
  return [=] { return encode().has_value() ? Answer("0 ") : Answer("refused"); };
}
const std::string kBytes(2900, '\xFF');
const std::string kUndecided = "  " + std::string(1500, '7');  // Data Matrix looks far ahead
const std::string kMixed = [] {
  std::string mixed;
  while (mixed.size() < 900) mixed += "Mixed TEXT, 0123456789 ";
  return mixed;
}();
const std::string kElements = "0109501101530003|10" + std::string(20, 'A') + "#21" + std::string(18, 'A');
const std::vector<Call> kLargeCalls = {
    linear(9, std::string_view(kMixed).substr(0, 300)),
    qr(2, std::string_view(kBytes).substr(0, 2300)),
    pdf417(0, kMixed),
    datamatrix(0, kUndecided),
    datamatrix(0, std::string_view(kBytes).substr(0, 1500)),
    composite(12, kElements),
    veri(92, 0, kMixed),
    encoded([] { return linear::encode({}, kMixed.substr(0, 300)); }),
    encoded([] { return qr::encode({.level = qr::Level::low}, kBytes); }),
    encoded([] { return qr::encode_series({}, std::span(unsigned_bytes(kMixed), kMixed.size()), 16); }),
    encoded([] { return pdf417::row_pattern_text({}, kMixed); }),
    encoded([] { return pdf417::codewords({}, kMixed); }),
    encoded([] { return datamatrix::encode({}, kUndecided); }),
    encoded([] { return maxicode::encode({}, "Message"); }),
    encoded([] { return composite::encode({composite::Symbology::databar_expanded}, kElements); }),
    encoded([] { return composite::explain({composite::Symbology::gs1_128_cc_c}, kElements); }),
    encoded([] { return gs1::element_string("(01)09501101530003(10)AB-123"); }),
    encoded([] { return veri::encode({.correction = veri::Correction::none}, kMixed); }),
};

// What a build for finding faults adds to a frame is none of the library's business.
#ifdef NDEBUG
constexpr std::size_t kStackBytes = 64 * 1024;
#else
constexpr std::size_t kStackBytes = 1024 * 1024;
#endif

TEST(Threads, StacksOf64KilobytesAreEnough) {
  pthread_attr_t attributes;
  ASSERT_EQ(pthread_attr_init(&attributes), 0);
  ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackBytes), 0);
  for (const auto* calls : {&kCalls, &kLargeCalls}) {
    for (const Call& call : *calls) {
      std::pair<const Call&, Answer> task(call, "");
      const auto run = [](void* argument) -> void* {
        auto& [made, answer] = *static_cast<decltype(task)*>(argument);
        answer = made();
        return nullptr;
      };
      pthread_t thread{};
      ASSERT_EQ(pthread_create(&thread, &attributes, run, &task), 0);
      pthread_join(thread, nullptr);
      EXPECT_EQ(task.second.substr(0, 2), "0 ") << "call " << &call - calls->data();
    }
  }
  pthread_attr_destroy(&attributes);
}

}  // namespace
}  // namespace korvex
