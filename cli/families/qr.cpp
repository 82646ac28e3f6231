// QR Code: Model 1 and 2, GS1 QR Code, Micro QR Code and rMQR.
#include "korvex/qr.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "encoding.hpp"
#include "failure.hpp"
#include "families/families.hpp"
#include "families/gs1_data.hpp"
#include "korvex/gs1.hpp"
#include "words.hpp"

namespace korvex::cli::families {
namespace {

using qr::Level;
using qr::Mode;
using qr::SymbolType;

constexpr int kMostSymbols = 16;

const Option kLevel{"--level",
                    "",
                    "error correction level: about 7, 15, 25 or 30 percent of the symbol may be damaged",
                    {"L", "M", "Q", "H"},
                    "M"};
const Option kMicroLevel{
    "--level", "", "error correction level; M1 only detects errors", {"L", "M", "Q"}, "L"};
const Option kRmqrLevel{"--level", "", "error correction level", {"M", "H"}, "M"};
const Option kVersion{"--version", "N", "version, 1 to 40: the symbol's size; the smallest when not given"};
const Option kMicroVersion{"--version", "NAME", "version, M1 to M4; the smallest when not given"};
const Option kRmqrVersion{"--version", "NAME",
                          "version, R7x43 to R17x139; the one of the fewest modules when not given"};
const Option kRows{
    "--rows", "", "module rows; as wide as the data asks for", {"7", "9", "11", "13", "15", "17"}};
const Option kMode{
    "--mode", "", "all data in this mode", {"auto", "numeric", "alphanumeric", "byte", "kanji"}, "auto"};
const Option kEncoding{
    "--encoding",
    "",
    "what becomes of text beyond ASCII: Shift JIS (for Kanji mode), Latin-1, or its bytes as "
    "they are; auto takes Shift JIS for text that it can hold",
    {"auto", "shift-jis", "latin-1", "bytes"},
    "auto"};
const Option kAppend{"--append", "", "split data that is too long over up to 16 linked symbols"};
const Option kSymbols{"--symbols", "N", "split the data over 2 to 16 linked symbols"};
const Option kPrivate{"--private", "TEXT", "a second text, enciphered; needs --key"};
const Option kKey{"--key", "HEX", "key of the private text: 16 hexadecimal digits"};
const Option kDialect{"--dialect",
                      "",
                      "the published form, or what QR_Encode draws to the module",
                      {"standard", "korvex32"},
                      "standard"};

int version_count(SymbolType type) {
  return type == SymbolType::micro ? 4 : type == SymbolType::rmqr ? 32 : 40;
}

/// A version by its name or its number; 0 when none is given.
int version_of(SymbolType type, const OptionValues& values) {
  const std::string text = values.text(kVersion).value_or("");
  if (text.empty()) return 0;
  const auto lower = [](std::string word) {
    std::ranges::transform(word, word.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
    return word;
  };
  for (int version = 1; version <= version_count(type); ++version) {
    if (lower(qr::version_name(type, version)) == lower(text)) return version;
  }
  if (type != SymbolType::rmqr || text.front() != 'R') {
    return whole_number(kVersion.name, text, 1, version_count(type));
  }
  throw UsageError("There is no rMQR symbol " + printable(text) + "; they run from R7x43 to R17x139.");
}

std::optional<Mode> mode_of(const OptionValues& values) {
  constexpr std::array<std::string_view, 4> kNames = {"numeric", "alphanumeric", "byte", "kanji"};
  const auto* const found = std::ranges::find(kNames, values.text(kMode).value_or("auto"));
  if (found == kNames.end()) return std::nullopt;
  return static_cast<Mode>(found - kNames.begin());
}

std::string_view name_of(Mode mode) {
  constexpr std::array<std::string_view, 4> kNames = {"numeric", "alphanumeric", "byte", "Kanji"};
  return kNames[static_cast<std::size_t>(mode)];
}

std::array<std::uint8_t, 8> key_of(const OptionValues& values) {
  const std::string digits = values.text(kKey).value_or("");
  std::array<std::uint8_t, 8> key{};
  bool right = digits.size() == 2 * key.size();
  for (std::size_t i = 0; right && i < digits.size(); ++i) {
    const int value = hexadecimal_value(digits[i]);
    right = value >= 0;
    if (right) key[i / 2] = static_cast<std::uint8_t>(key[i / 2] << 4 | value);
  }
  if (!right) throw UsageError("--private needs --key with 16 hexadecimal digits.");
  return key;
}

/// The bytes to encode. Readers take what is no Kanji for Latin-1 or UTF-8, whichever it looks like.
std::string encoded(const DrawRequest& request) {
  const std::string encoding = request.options.text(kEncoding).value_or("bytes");
  const bool is_ascii = std::ranges::all_of(request.data, [](char c) { return (c & 0x80) == 0; });
  if (encoding == "bytes" || is_ascii || (encoding == "auto" && request.is_bytes)) return request.data;
  const bool latin = encoding == "latin-1";
  if (auto text = latin ? latin_1_of(request.data) : shift_jis_of(request.data)) return *std::move(text);
  if (encoding == "auto") return request.data;
  throw Failure(std::string("The data is no UTF-8 text of characters that ") +
                (latin ? "ISO/IEC 8859-1" : "Shift JIS") + " has; --encoding bytes takes any bytes.");
}

/// The korvex32 dialect knows no brackets.
Result<std::string> data_of(const qr::Options& options, const DrawRequest& request) {
  if (options.type != SymbolType::gs1) return encoded(request);
  if (options.dialect == Dialect::standard || !gs1::is_bracketed(request.data)) return request.data;
  return gs1::element_string(request.data);
}

qr::Options options_of(SymbolType type, const OptionValues& values) {
  qr::Options options;
  options.type = type;
  options.level =
      static_cast<Level>(std::string_view("LMQH").find(*values.text(type == SymbolType::micro  ? kMicroLevel
                                                                    : type == SymbolType::rmqr ? kRmqrLevel
                                                                                               : kLevel)));
  options.version = version_of(type, values);
  options.mode = mode_of(values);
  options.rmqr_rows = values.number(kRows, 7, 17).value_or(0);
  if (options.rmqr_rows != 0 && options.version != 0) {
    throw UsageError("--version says how many rows there are; --rows does not go with it.");
  }
  options.dialect = values.text(kDialect) == "korvex32" ? Dialect::korvex32 : Dialect::standard;
  options.gs1_checking = gs1_checking(values);
  return options;
}

std::vector<std::string> notes_of(const qr::Symbol& symbol) {
  std::vector<std::string> notes = {"version " + qr::version_name(symbol.type, symbol.version) + ", " +
                                    std::to_string(symbol.modules.columns()) + " x " +
                                    std::to_string(symbol.modules.rows()) + " modules, level " +
                                    "LMQH"[static_cast<std::size_t>(symbol.level)] + ", mask " +
                                    std::to_string(symbol.mask)};
  for (const qr::Segment& segment : symbol.segments) {
    const int last = segment.offset + segment.length;
    std::string bytes =
        segment.length == 1 ? "byte " : "bytes " + std::to_string(segment.offset + 1) + " to ";
    notes.push_back(bytes + std::to_string(last) + " in " + std::string(name_of(segment.mode)) + " mode");
  }
  return notes;
}

Picture picture_of(const qr::Symbol& symbol) {
  Picture picture;
  picture.modules = symbol.modules;
  picture.row_heights.assign(static_cast<std::size_t>(symbol.modules.rows()), 1);
  const bool small = symbol.type == SymbolType::micro || symbol.type == SymbolType::rmqr;
  const double quiet = small ? 2 : 4;
  picture.quiet_zone = {quiet, quiet, quiet, quiet};
  return picture;
}

Result<std::vector<qr::Symbol>> encode(const qr::Options& options, const OptionValues& values,
                                       const std::string& data) {
  const int symbols = values.number(kSymbols, 2, kMostSymbols).value_or(0);
  if (symbols != 0 || values.flag(kAppend)) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(data.data());
    return qr::encode_series(options, {bytes, data.size()}, symbols);
  }
  Result<qr::Symbol> symbol = qr::encode(options, data);
  if (!symbol) {
    Error error = symbol.error();
    constexpr std::string_view kWay = "structured append";  // to more data; here it has a name
    if (const std::size_t at = error.message.find(kWay); at != std::string::npos) {
      error.message.replace(at, kWay.size(), kAppend.name);
    }
    return error;
  }
  return std::vector{std::move(symbol).value()};
}

Result<Drawing> draw(SymbolType type, const DrawRequest& request) {
  qr::Options options = options_of(type, request.options);
  const std::string secret = request.options.text(kPrivate).value_or("");
  if (!secret.empty()) {
    const auto* const bytes = reinterpret_cast<const std::uint8_t*>(secret.data());
    options.private_data = qr::PrivateData{{bytes, secret.size()}, key_of(request.options)};
  } else if (request.options.text(kKey)) {
    throw UsageError("--key needs a --private text.");
  }
  const Result<std::string> data = data_of(options, request);
  if (!data) return data.error();
  const Result<std::vector<qr::Symbol>> symbols = encode(options, request.options, *data);
  if (!symbols) return symbols.error();

  Drawing drawing;
  if (type == SymbolType::gs1) drawing.warnings = gs1_warnings(*data, options.gs1_checking);
  for (const qr::Symbol& symbol : *symbols) {
    drawing.pictures.push_back(picture_of(symbol));
    const std::string place = symbols->size() == 1 ? ""
                                                   : "symbol " + std::to_string(drawing.pictures.size()) +
                                                         " of " + std::to_string(symbols->size()) + ": ";
    for (const std::string& note : notes_of(symbol)) drawing.notes.push_back(place + note);
  }
  return drawing;
}

Symbology symbology(SymbolType type, std::string_view name, std::string_view title, std::string_view takes,
                    Example example, std::vector<Option> options) {
  options.push_back(kDialect);
  return {name,
          title,
          type == SymbolType::rmqr ? "ISO/IEC 23941" : "ISO/IEC 18004",
          takes,
          std::move(example),
          std::move(options),
          [type](const DrawRequest& request) { return draw(type, request); }};
}

}  // namespace

std::vector<Symbology> qr() {
  return {
      symbology(SymbolType::model2, "qr", "QR Code",
                "any bytes, up to 7089 digits, 4296 capitals and digits, 2953 others, 1817 Kanji",
                {"https://example.org/korvex"},
                {kLevel, kVersion, kMode, kEncoding, kAppend, kSymbols, kPrivate, kKey}),
      symbology(SymbolType::model1, "qr-model1", "QR Code Model 1",
                "any bytes, up to 1167 digits, 707 capitals and digits, 486 others, 299 Kanji",
                {"QR MODEL 1"}, {kLevel, kVersion, kMode, kEncoding, kAppend, kSymbols, kPrivate, kKey}),
      symbology(SymbolType::micro, "micro-qr", "Micro QR Code",
                "up to 35 digits, 21 capitals and digits, 15 others, 9 Kanji", {"MICRO QR"},
                {kMicroLevel, kMicroVersion, kMode, kEncoding}),
      symbology(SymbolType::gs1, "gs1-qr", "GS1 QR Code", "element strings such as (01)09501101530003(10)AB",
                {"(01)09501101530003(10)AB-123"}, {kLevel, kVersion, kPrivate, kKey, gs1_checking_option()}),
      symbology(SymbolType::rmqr, "rmqr", "Rectangular Micro QR Code",
                "up to 361 digits, 219 capitals and digits, 150 others, 92 Kanji", {"RECTANGULAR MICRO QR"},
                {kRmqrLevel, kRmqrVersion, kRows, kMode, kEncoding}),
  };
}

}  // namespace korvex::cli::families
