// The fuzz target of the part of the C++ interface that KORVEX_FUZZED names: options of any value, in both
// dialects, and any data. A call hands out a symbol of a size that exists or an error with a sentence, the
// same ones each time; reads and writes out of bounds are the sanitizers' to find.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <set>
#include <string>
#include <string_view>

#include "korvex/korvex.hpp"

namespace korvex::fuzz {
namespace {

void require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "%s: %s\n", KORVEX_FUZZED, what);
  std::abort();
}

/// The bytes of an input, zeros behind them.
class Input {
 public:
  Input(const std::uint8_t* bytes, std::size_t size) : rest_(reinterpret_cast<const char*>(bytes), size) {}

  int byte() {
    if (rest_.empty()) return 0;
    const auto first = static_cast<unsigned char>(rest_.front());
    rest_.remove_prefix(1);
    return first;
  }
  bool flag() { return byte() % 2 != 0; }
  /// Small numbers, and some that are none of the small ones.
  int number() {
    const int value = byte();
    return value < 192 ? value : value < 224 ? value - 224 : (value - 240) * 0x0777'7777;
  }
  /// One of the `listed` values, or one beyond them.
  template <class Enumeration>
  Enumeration any(int listed) {
    const int value = byte() % (listed + 1);
    return static_cast<Enumeration>(value < listed ? value : listed + byte() % (256 - listed));
  }
  Dialect dialect() { return any<Dialect>(2); }
  std::string_view text(std::size_t size) {
    const std::string_view text = rest_.substr(0, size);
    rest_.remove_prefix(text.size());
    return text;
  }
  [[nodiscard]] std::string_view rest() const { return rest_; }

 private:
  std::string_view rest_;
};

std::span<const std::uint8_t> bytes_of(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void check(const Error& error) {
  const std::string& sentence = error.message;
  require(!sentence.empty() && sentence.size() <= 300, "a sentence of no length, or a long one");
  require(sentence.ends_with('.'), "a sentence without an end");
  require(std::ranges::all_of(sentence, [](char c) { return c >= ' ' && c <= '~'; }),
          "a sentence with bytes that do not print");
  require(error.code == Code::bad_parameter || error.code == Code::no_symbol ||
              error.code == Code::bad_data || error.code == Code::gs1_fixed_mode,
          "an unknown code");
}

/// Makes a call twice and gives its value to `look` if it has one.
template <class Call, class Look>
void check(Call call, Look look) {
  const auto first = call();
  const auto second = call();
  require(first.has_value() == second.has_value(), "an error at times");
  if (!first) {
    check(first.error());
    require(first.error().message == second.error().message, "another sentence the second time");
    return;
  }
  look(*first, *second);
}

/// The same for symbols made of modules.
template <class Call, class Look>
void check_symbol(Call call, Look look) {
  check(call, [&](const auto& symbol, const auto& again) {
    require(symbol.modules == again.modules, "another symbol the second time");
    look(symbol);
  });
}

void check_linear(Input& in) {
  linear::Options options;
  options.symbology = in.any<linear::Symbology>(17);
  options.dialect = in.dialect();
  options.ratio = in.any<linear::Ratio>(3);
  options.check = in.any<linear::CheckCharacters>(9);
  options.gs1 = in.flag();
  options.segments = in.number();
  if (in.flag()) options.widths = linear::ElementWidths{in.number(), in.number(), in.number(), in.number()};
  const auto zones = linear::quiet_zones(options);
  require(zones.left > 0 && zones.left <= 990 && zones.right > 0 && zones.right <= 990, "odd quiet zones");
  check([&] { return linear::encode(options, in.rest()); },
        [&](const linear::Symbol& symbol, const linear::Symbol& again) {
          require(std::ranges::equal(symbol.bars.words(), again.bars.words()) && symbol.text == again.text,
                  "another symbol the second time");
          require(symbol.bars.size() <= 5984, "too many modules");
          require(symbol.guards.size() == 0 || symbol.guards.size() == symbol.bars.size(), "odd guards");
          for (int i = 0; i < symbol.guards.size(); ++i) {
            require(!symbol.guards.bar(i) || symbol.bars.bar(i), "a guard bar where no bar is");
          }
        });
}

void check_qr(Input& in) {
  qr::Options options;
  options.type = in.any<qr::SymbolType>(5);
  options.level = in.any<qr::Level>(4);
  options.version = in.flag() ? in.number() : 0;
  options.dialect = in.dialect();
  options.rmqr_rows = in.flag() ? in.number() : 0;
  if (in.byte() % 4 == 0) options.mode = in.any<qr::Mode>(4);
  if (in.byte() % 4 == 1) options.append = qr::StructuredAppend{in.number(), in.number(), 0xA5};
  if (in.byte() % 4 == 1) {
    options.private_data = qr::PrivateData{bytes_of(in.text(static_cast<std::size_t>(in.byte()))), {1, 2, 3}};
  }
  const int symbols = in.flag() ? in.number() : 1;
  const auto look = [&](const qr::Symbol& symbol) {
    const std::string size =
        std::to_string(symbol.modules.rows()) + "x" + std::to_string(symbol.modules.columns());
    const int side = symbol.type == qr::SymbolType::micro ? 2 * symbol.version + 9 : 4 * symbol.version + 17;
    const bool is_rmqr = symbol.type == qr::SymbolType::rmqr;
    const std::string wanted = is_rmqr ? qr::version_name(symbol.type, symbol.version)
                                       : "R" + std::to_string(side) + "x" + std::to_string(side);
    require("R" + size == wanted, "a size that is not the version's");
    require(options.version == 0 || options.version == symbol.version, "another version than asked for");
    int end = 0;
    for (const qr::Segment& segment : symbol.segments) {
      require(segment.offset == end && segment.length > 0, "segments with a gap");
      end += segment.length;
    }
  };
  if (symbols == 1) return check_symbol([&] { return qr::encode(options, in.rest()); }, look);
  check([&] { return qr::encode_series(options, bytes_of(in.rest()), symbols); },
        [&](const auto& series, const auto& again) {
          require(series.size() == again.size() && series.size() <= 16, "an odd series");
          for (std::size_t i = 0; i < series.size(); ++i) {
            require(series[i].modules == again[i].modules, "another symbol the second time");
            require(series[i].version == series[0].version, "a series of several sizes");
            look(series[i]);
          }
        });
}

void check_pdf417(Input& in) {
  pdf417::Options options;
  options.kind = in.any<pdf417::Kind>(3);
  options.columns = in.flag() ? in.number() : 0;
  options.rows = in.flag() ? in.number() : 0;
  options.ecc_level = in.number() % 12;
  options.byte_only = in.flag();
  check_symbol([&] { return pdf417::encode(options, in.rest()); },
               [&](const pdf417::Symbol& symbol) {
                 const int rows = symbol.modules.rows();
                 const auto sizes = pdf417::micro_sizes();
                 const bool listed =
                     options.kind == pdf417::Kind::micro
                         ? std::ranges::any_of(sizes,
                                               [&](const pdf417::MicroSize& size) {
                                                 return size.columns == symbol.columns && size.rows == rows;
                                               })
                         : symbol.columns >= 1 && symbol.columns <= 30 && rows >= 3 && rows <= 90;
                 require(listed, "a size that no list has");
                 require(symbol.data_codewords + symbol.pad_codewords + symbol.check_codewords ==
                             symbol.columns * rows,
                         "codewords that do not fill the symbol");
                 const auto codewords = pdf417::codewords(options, in.rest());
                 require(codewords &&
                             codewords->values.size() == static_cast<std::size_t>(symbol.columns * rows) &&
                             codewords->pad_codewords == symbol.pad_codewords,
                         "codewords of another symbol");
                 const auto text = pdf417::row_pattern_text(options, in.rest());
                 require(text && std::ranges::count(*text, '\n') == rows, "a text of another symbol");
               });
}

void check_datamatrix(Input& in) {
  datamatrix::Options options;
  options.rows = in.flag() ? in.number() : 0;
  options.columns = in.flag() ? in.number() : 0;
  options.shape = in.any<datamatrix::Shape>(2);
  options.gs1 = in.flag();
  options.fnc1_escape = in.flag();
  check_symbol([&] { return datamatrix::encode(options, in.rest()); },
               [](const datamatrix::Symbol& symbol) {
                 static const std::set<int> kSides = {10, 12, 14, 16, 18, 20, 22, 24, 26,  32,  36,  40,
                                                      44, 48, 52, 64, 72, 80, 88, 96, 104, 120, 132, 144};
                 static const std::set<std::pair<int, int>> kRectangles = {{8, 18},  {8, 32},  {12, 26},
                                                                           {12, 36}, {16, 36}, {16, 48}};
                 const int rows = symbol.modules.rows();
                 const int columns = symbol.modules.columns();
                 require(rows == columns ? kSides.contains(rows) : kRectangles.contains({rows, columns}),
                         "a size that no list has");
                 require(symbol.pad_codewords >= 0 && symbol.pad_codewords <= symbol.data_codewords,
                         "odd pads");
               });
}

void check_maxicode(Input& in) {
  maxicode::Options options;
  options.mode =
      in.flag() ? static_cast<maxicode::Mode>(in.byte()) : static_cast<maxicode::Mode>(2 + in.byte() % 5);
  options.dialect = in.dialect();
  options.country_code = in.flag() ? in.number() : 840;
  options.service_class = in.flag() ? in.number() : 1;
  options.position = in.flag() ? in.number() : 1;
  options.total = in.flag() ? in.number() : 1;
  options.postal_code = in.text(static_cast<std::size_t>(in.byte()));
  check_symbol([&] { return maxicode::encode(options, in.rest()); },
               [](const maxicode::Symbol& symbol) {
                 require(symbol.modules.rows() == 33 && symbol.modules.columns() == 30,
                         "a size that there is not");
                 require(std::ranges::all_of(symbol.codewords, [](int codeword) { return codeword < 64; }),
                         "a codeword of more than six bits");
                 require(maxicode::raster(symbol.modules).rows() == 200, "an odd picture");
               });
}

void check_composite(Input& in) {
  composite::Options options;
  options.symbology = in.any<composite::Symbology>(12);
  options.dialect = in.dialect();
  options.segments_per_row = in.flag() ? in.number() : 22;
  options.linear_height = in.flag() ? in.number() : 50;
  const auto zones = composite::quiet_zones(options);
  require(zones.left >= 0 && zones.right >= 0, "odd quiet zones");
  check_symbol([&] { return composite::encode(options, in.rest()); },
               [&](const composite::Symbol& symbol) {
                 require(symbol.modules.rows() >= 1 && symbol.modules.columns() >= 1, "a symbol of no size");
                 require(symbol.row_heights.size() == static_cast<std::size_t>(symbol.modules.rows()),
                         "rows without height");
                 require(symbol.component_rows < symbol.modules.rows(),
                         "a 2D component without the linear one");
                 require((symbol.component == composite::Component::none) == (symbol.component_rows == 0),
                         "odd 2D rows");
                 const auto details = composite::explain(options, in.rest());
                 require(details.has_value(), "a symbol without details");
                 require(details->check_codewords <= static_cast<int>(details->codewords.size()),
                         "odd check codewords");
               });
}

void check_veri(Input& in) {
  veri::Options options;
  options.size = in.flag() ? in.number() : 0;
  options.correction = static_cast<veri::Correction>(in.byte() % 6 == 0 ? in.byte() : 2 * (in.byte() % 3));
  check_symbol([&] { return veri::encode(options, in.rest()); },
               [&](const veri::Symbol& symbol) {
                 const int side = symbol.modules.rows();
                 require(side == symbol.modules.columns() && side >= veri::kMinSize && side <= veri::kMaxSize,
                         "a size that there is not");
                 require(symbol.capacity_bytes == veri::capacity_bytes(side, options.correction) &&
                             static_cast<std::size_t>(symbol.capacity_bytes) >= in.rest().size(),
                         "more data than there is room");
               });
}

void check_gs1(Input& in) {
  check([&] { return gs1::element_string(in.rest()); },
        [&](const std::string& plain, const std::string& again) {
          require(plain == again, "another text the second time");
          require(!plain.empty(), "an element string of nothing");
          require(plain.empty() || plain.back() != gs1::kSeparator, "a separator at the end");
          require(plain.size() <= in.rest().size(), "a plain form longer than the bracketed one");
        });
}

using Target = void (*)(Input&);
const std::map<std::string_view, Target> kTargets = {
    {"linear", check_linear},     {"qr", check_qr},
    {"pdf417", check_pdf417},     {"datamatrix", check_datamatrix},
    {"maxicode", check_maxicode}, {"composite", check_composite},
    {"veri", check_veri},         {"gs1", check_gs1},
};

}  // namespace
}  // namespace korvex::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  static const auto target = korvex::fuzz::kTargets.at(KORVEX_FUZZED);
  korvex::fuzz::Input in(bytes, size);
  target(in);
  return 0;
}
