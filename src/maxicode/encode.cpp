#include <algorithm>
#include <optional>
#include <string>

#include "core/shown.hpp"
#include "maxicode/request.hpp"

namespace korvex::maxicode {
namespace {

constexpr int kSeriesHeader = 33;  // then position and total, three bits each
constexpr char kHeaderSet = '\0';  // the header stands in no code set

// A postal code of the United States has nine digits; behind a ZIP code alone go zeros.
constexpr int kUnitedStates = 840;
constexpr std::size_t kZip = 5;
constexpr std::string_view kNoPlusFour = "0000";

Error bad(Code code, std::string message) {
  return {code, std::move(message)};
}

std::optional<Error> out_of_range(const char* what, int given, int lowest, int highest) {
  if (given >= lowest && given <= highest) return std::nullopt;
  return bad(Code::bad_parameter, std::string(what) + " is " + std::to_string(given) + "; allowed are " +
                                      std::to_string(lowest) + " to " + std::to_string(highest) + ".");
}

bool is_digit(char character) {
  return character >= '0' && character <= '9';
}

std::optional<Error> check_postal_code(const Options& options) {
  const std::string_view code = options.postal_code;
  const bool any = options.dialect == Dialect::korvex32;
  if (options.mode == Mode::carrier_numeric) {
    if (any) return std::nullopt;
    if (!code.empty() && code.size() <= 9 && std::ranges::all_of(code, is_digit)) return std::nullopt;
    return bad(Code::bad_data, "The postal code is " + quoted(code) + "; mode 2 takes one of 1 to 9 digits.");
  }
  const auto allowed = [](char character) {
    return is_digit(character) || (character >= 'A' && character <= 'Z') || character == ' ';
  };
  const bool fits =
      any ? code.size() == kPostalCharacters
          : !code.empty() && code.size() <= kPostalCharacters && std::ranges::all_of(code, allowed);
  if (fits) return std::nullopt;
  return bad(Code::bad_data,
             "The postal code is " + quoted(code) +
                 "; mode 3 takes one of 1 to 6 characters: capital letters, digits and spaces.");
}

std::optional<Error> check(const Options& options) {
  const bool carrier = options.mode == Mode::carrier_numeric || options.mode == Mode::carrier_alphanumeric;
  if (!carrier && options.mode != Mode::standard && options.mode != Mode::reader_programming) {
    return bad(Code::bad_parameter, "The mode is " + std::to_string(static_cast<int>(options.mode)) +
                                        "; there are 2, 3, 4 and 6.");
  }
  if (options.dialect > Dialect::korvex32) {
    return bad(Code::bad_parameter, "The dialect is not one of the list.");
  }
  if (auto error = out_of_range("The number of symbols", options.total, 1, 8)) return error;
  const int last = options.dialect == Dialect::korvex32 ? 8 : options.total;
  if (auto error = out_of_range("The position in the series", options.position, 1, last)) return error;
  if (carrier) {
    if (auto error = out_of_range("The country code", options.country_code, 1, 999)) return error;
    if (auto error = out_of_range("The class of service", options.service_class, 1, 999)) return error;
    if (auto error = check_postal_code(options)) return error;
  }
  return std::nullopt;
}

Request request_of(const Options& options, std::span<const std::uint8_t> message) {
  Request request;
  request.mode = options.mode;
  request.dialect = options.dialect;
  request.country_code = options.country_code;
  request.service_class = options.service_class;
  request.position = options.position;
  request.total = options.total;
  request.message = message;
  std::string code(options.postal_code);
  const bool zip_alone =
      options.mode == Mode::carrier_numeric && options.country_code == kUnitedStates && code.size() == kZip;
  if (zip_alone && options.dialect == Dialect::standard) code += kNoPlusFour;
  request.postal_characters.fill(' ');
  std::copy_n(code.begin(), std::min(code.size(), kPostalCharacters), request.postal_characters.begin());
  request.postal_length = static_cast<int>(code.size() & 63);
  request.postal_number = leading_number(code);
  return request;
}

std::string code_sets(const Codewords& message) {
  std::string sets;
  sets.reserve(static_cast<std::size_t>(message.count()));
  for (int i = 0; i < message.count(); ++i) {
    if (message.set(i) != kHeaderSet) sets += message.set(i);
  }
  return sets;
}

}  // namespace

Codewords message_codewords(const Request& request) {
  Codewords codewords(request.capacity());
  if (request.total > 1) {
    codewords.put(kSeriesHeader, kHeaderSet);
    codewords.put((request.position - 1) << 3 | (request.total - 1), kHeaderSet);
  }
  codewords.pads = append_message(request.message, request.dialect, codewords);
  return codewords;
}

AllCodewords all_codewords(const Request& request, const Codewords& message) {
  AllCodewords all = data_codewords(request, message);
  add_check_codewords(all);
  return all;
}

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> message) {
  if (auto error = check(options)) return *std::move(error);
  const Request request = request_of(options, message);
  const Codewords codewords = message_codewords(request);
  if (codewords.overflowed()) {
    return bad(Code::no_symbol, "The message of " + std::to_string(message.size()) +
                                    " bytes takes more than the " + std::to_string(request.capacity()) +
                                    " codewords that mode " + std::to_string(static_cast<int>(options.mode)) +
                                    " holds" +
                                    (options.total > 1 ? ", two of them for the series header." : "."));
  }
  Symbol symbol;
  symbol.codewords = all_codewords(request, codewords);
  symbol.modules = construct(symbol.codewords);
  symbol.code_sets = code_sets(codewords);
  return symbol;
}

Result<Symbol> encode(const Options& options, std::string_view message) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(message.data()), message.size()));
}

}  // namespace korvex::maxicode
