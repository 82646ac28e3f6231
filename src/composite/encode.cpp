// The C++ interface: options are checked, texts brought into plain form, the symbol built and handed over.
#include <optional>
#include <string>
#include <utility>

#include "composite/code128.hpp"
#include "composite/encodation.hpp"
#include "composite/item_number.hpp"
#include "composite/symbologies.hpp"
#include "core/element_string.hpp"
#include "korvex/composite.hpp"

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

/// Appends both texts in plain form, with a vertical bar between them.
std::optional<Error> append_plain_texts(const Options& options, std::string_view data, std::string& plain,
                                        gs1::ElementString* findings) {
  if (const std::size_t zero = data.find('\0'); zero != std::string_view::npos) {
    return Error{Code::bad_data, "The data has a byte 0x00 at position " + std::to_string(zero + 1) +
                                     ", which no symbol of the kind holds."};
  }
  const std::size_t bar = data.find('|');
  const std::string_view linear = data.substr(0, bar);
  if (takes_element_strings(options.symbology) || bar != std::string_view::npos) plain.reserve(data.size());
  if (takes_element_strings(options.symbology)) {
    // GS1-128 has # as a character of data, and a byte of its own for FNC1; the others have # for FNC1 alone.
    const bool is_expanded = options.symbology == Symbology::databar_expanded;
    const Gs1Reading reading{.checking = options.gs1_checking,
                             .separator = static_cast<char>(is_expanded ? kFnc1 : code128::kFnc1),
                             .separator_is_no_data = is_expanded,
                             .findings = findings};
    const std::string_view name = bar == std::string_view::npos ? "data" : "linear component's text";
    if (auto error = append_plain({linear, name}, reading, plain)) return error;
  } else if (auto error = append_item_number(options.symbology, linear, plain)) {
    return error;
  }
  if (bar == std::string_view::npos) return std::nullopt;
  plain.push_back('|');
  const std::string_view component = data.substr(bar + 1);
  if (component.empty()) return std::nullopt;
  const Gs1Reading reading{.checking = options.gs1_checking,
                           .separator = static_cast<char>(kFnc1),
                           .separator_is_no_data = true,
                           .findings = findings};
  return append_plain({component, "2D component's text"}, reading, plain);
}

Result<Symbol> encode_with_details(const Options& options, std::string_view data, Details* details) {
  if (std::optional<Error> error = check_options(options)) return *std::move(error);
  if (options.dialect == Dialect::standard && (data.empty() || data.front() == '|')) {
    return Error{Code::bad_data, "There is no data for the linear component; it needs at least a character."};
  }
  std::string plain;
  if (options.dialect == Dialect::standard) {
    gs1::ElementString findings;
    if (auto error = append_plain_texts(options, data, plain, details == nullptr ? nullptr : &findings)) {
      return *std::move(error);
    }
    if (details != nullptr) details->warnings = std::move(findings.warnings);
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
