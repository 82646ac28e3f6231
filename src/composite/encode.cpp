// The C++ interface: options are checked, texts brought into plain form, the symbol built and handed over.
#include <optional>
#include <string>
#include <utility>

#include "composite/encodation.hpp"
#include "composite/symbologies.hpp"
#include "core/element_string.hpp"
#include "korvex/composite.hpp"
#include "korvex/gs1.hpp"

namespace korvex::composite {
namespace {

constexpr int kMostLinearHeight = 32767;
constexpr int kMostSegments = 32767;

Error parameter(std::string message) {
  return {Code::bad_parameter, std::move(message)};
}

std::optional<Error> check_options(const Options& options) {
  if (options.symbology > Symbology::gs1_128_cc_c) return parameter("The symbology is not one of the list.");
  if (options.dialect > Dialect::korvex32) return parameter("The dialect is not one of the list.");
  if (options.linear_height < 1 || options.linear_height > kMostLinearHeight) {
    return parameter("A linear component of " + std::to_string(options.linear_height) +
                     " modules in height is out of range; 1 to 32767 are allowed.");
  }
  if (options.segments_per_row < 1 || options.segments_per_row > kMostSegments) {
    return parameter(std::to_string(options.segments_per_row) +
                     " segments a row are out of range; at least 1 must be, and 22 are all there can be.");
  }
  return std::nullopt;
}

bool takes_element_strings(Symbology symbology) {
  return symbology == Symbology::databar_expanded || symbology == Symbology::gs1_128 ||
         symbology == Symbology::gs1_128_cc_c;
}

bool is_ean_upc(Symbology symbology) {
  return symbology >= Symbology::ean13 && symbology <= Symbology::ean8;
}

constexpr char kSeparator = static_cast<char>(kFnc1);

Result<std::string> plain_linear_text(Symbology symbology, std::string_view text) {
  const BracketedText part{"linear component's text", text};
  if (!gs1::is_bracketed(text)) return std::string(text);
  if (takes_element_strings(symbology)) return plain_element_string(part, kSeparator);
  Result<std::string> number = plain_item_number(part);
  if (!number || !is_ean_upc(symbology)) return number;
  // The fourteen digits of an EAN/UPC number begin with a zero that is not drawn.
  if (number->front() != '0') {
    return Error{Code::bad_data,
                 "EAN/UPC symbols hold item numbers whose 14 digits begin with 0; this one begins with " +
                     std::string(1, number->front()) + "."};
  }
  return number->substr(1);
}

Result<std::string> plain_component_text(std::string_view text) {
  if (!gs1::is_bracketed(text)) return std::string(text);
  return plain_element_string({"2D component's text", text}, kSeparator);
}

/// Both texts in plain form, with a vertical bar between them.
Result<std::string> plain_text(const Options& options, std::string_view data) {
  const std::size_t bar = data.find('|');
  Result<std::string> plain = plain_linear_text(options.symbology, data.substr(0, bar));
  if (!plain || bar == std::string_view::npos) return plain;
  const Result<std::string> component = plain_component_text(data.substr(bar + 1));
  if (!component) return component.error();
  return *plain + '|' + *component;
}

Result<Symbol> encode_with_details(const Options& options, std::string_view data, Details* details) {
  if (std::optional<Error> error = check_options(options)) return *std::move(error);
  if (options.dialect == Dialect::standard && (data.empty() || data.front() == '|')) {
    return Error{Code::bad_data, "There is no data for the linear component; it needs at least a character."};
  }
  std::string plain;
  if (options.dialect == Dialect::standard && data.find('(') != std::string_view::npos) {
    Result<std::string> text = plain_text(options, data);
    if (!text) return text.error();
    plain = *std::move(text);
    data = plain;
  }
  if (data.size() > static_cast<std::size_t>(kMaxTextBytes)) {
    return Error{Code::no_symbol, "The data has " + std::to_string(data.size()) + " bytes; at most " +
                                      std::to_string(kMaxTextBytes) + " are allowed."};
  }
  Request request{.symbology = options.symbology,
                  .dialect = options.dialect,
                  .linear = {},
                  .component = {},
                  .segments_per_row = options.segments_per_row,
                  .linear_height = options.linear_height};
  split_text({reinterpret_cast<const std::uint8_t*>(data.data()), data.size()}, request);
  Symbol symbol;
  if (const Fault fault = build(request, symbol, details)) return describe(fault, request);
  return symbol;
}

}  // namespace

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode_with_details(options, data, nullptr);
}

Result<Details> explain(const Options& options, std::string_view data) {
  Details details;
  const Result<Symbol> symbol = encode_with_details(options, data, &details);
  if (!symbol) return symbol.error();
  return details;
}

QuietZones quiet_zones(const Options& options) {
  // Beyond the seven light modules at each end of an EAN/UPC symbol (ISO/IEC 15420). DataBar needs none, and
  // GS1-128 brings its ten.
  switch (options.symbology) {
    case Symbology::ean13:
      return {4, 0};
    case Symbology::upca:
      return {2, 2};
    case Symbology::upce:
      return {2, 0};
    default:
      return {0, 0};
  }
}

}  // namespace korvex::composite
