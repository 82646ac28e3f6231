// The C++ interface: options are checked, the request is drawn, the symbol handed over.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "core/element_string.hpp"
#include "korvex/linear.hpp"
#include "linear/request.hpp"
#include "linear/symbologies.hpp"
#include "linear/text.hpp"
#include "linear/types.hpp"

namespace korvex::linear {
namespace {

constexpr int kMaxElementModules = 99;

/// Whether the symbology knows such check characters.
bool offers(Symbology symbology, CheckCharacters check) {
  using enum CheckCharacters;
  if (check == none) return true;
  switch (symbology) {
    case Symbology::codabar:
      return check == mod16;
    case Symbology::code39:
      return check == mod43;
    case Symbology::code11:
      return check == one || check == two;
    case Symbology::msi:
      return check >= mod10 && check <= mod11_mod10;
    case Symbology::itf:
    case Symbology::industrial25:
    case Symbology::code25_3bar:
      return check == mod10;
    default:
      return false;
  }
}

/// The type's rules, with those on that the caller asks for. MSI and Codabar have usual ones of their own.
CheckRules rules_for(const Options& options) {
  CheckRules rules = rules_of(options.symbology);
  if (options.symbology == Symbology::msi || options.symbology == Symbology::codabar) return rules;
  if (options.check != CheckCharacters::none) rules.first.enabled = 1;
  if (options.check == CheckCharacters::two) rules.second.enabled = 1;
  return rules;
}

/// Code 11's narrow elements are one module whatever the ratio says of others; the gap is as narrow.
int gap_for(const Options& options) {
  const bool standard = options.dialect == Dialect::standard;
  if (options.symbology == Symbology::code93) return 0;
  if (options.symbology == Symbology::msi && standard) return 0;
  if (options.symbology == Symbology::code11 && standard) return 1;
  if (options.widths) return options.widths->narrow_space;
  return options.ratio == Ratio::five_to_two ? 2 : 1;
}

Error parameter(std::string message) {
  return {Code::bad_parameter, std::move(message)};
}

/// The first option that is out of range; no message: none is.
Error check_options(const Options& options) {
  if (options.symbology > Symbology::code93) return parameter("The symbology is not one of the list.");
  if (options.ratio > Ratio::five_to_two) return parameter("The ratio is not one of the list.");
  if (options.dialect > Dialect::korvex32) return parameter("The dialect is not one of the list.");
  if (options.widths) {
    const ElementWidths& widths = *options.widths;
    for (const int width : {widths.narrow_space, widths.narrow_bar, widths.wide_space, widths.wide_bar}) {
      if (width < 1 || width > kMaxElementModules) {
        return parameter("An element width of " + std::to_string(width) +
                         " modules is out of range; 1 to 99 are allowed.");
      }
    }
  }
  if (!offers(options.symbology, options.check)) {
    return parameter(
        "The symbology does not offer this check; there are mod10 for the 2 of 5 codes, mod10, mod10_mod10, "
        "mod11 and mod11_mod10 for MSI, mod43 for Code 39, mod16 for Codabar, one and two for Code 11.");
  }
  if (options.gs1 && options.symbology != Symbology::code128) {
    return parameter("The gs1 option goes with code128 only; SSCC-18 is GS1 data without it.");
  }
  if (options.segments != 0 && options.symbology != Symbology::code128_segments) {
    return parameter("The number of segments goes with code128_segments only.");
  }
  if (options.segments < 0) {
    return parameter("The number of segments is " + std::to_string(options.segments) +
                     "; it must be at least 1.");
  }
  return {};
}

ModuleRow module_row(const Bars& bars) {
  const std::uint32_t* const words = bars.words.data();
  return {std::vector<std::uint32_t>(words, words + (bars.module_count + 31) / 32), bars.module_count};
}

}  // namespace

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  if (Error error = check_options(options); !error.message.empty()) return error;
  if (data.size() > static_cast<std::size_t>(kMaxDataBytes)) {
    return Error{Code::no_symbol, "The data has " + std::to_string(data.size()) + " bytes; at most " +
                                      std::to_string(kMaxDataBytes) + " are allowed."};
  }
  std::string plain;
  if (options.gs1 && options.dialect == Dialect::standard) {
    Result<std::string> read = plain_element_string(data, options.gs1_checking);
    if (!read) return read.error();
    plain = *std::move(read);
    data = std::span(reinterpret_cast<const std::uint8_t*>(plain.data()), plain.size());
  }

  ExplicitWidths widths;
  if (options.widths) {
    widths = {options.widths->narrow_space, options.widths->narrow_bar, options.widths->wide_space,
              options.widths->wide_bar};
  }
  const Request request{
      .symbology = options.symbology,
      .dialect = options.dialect,
      .data = data,
      .ratio = options.ratio,
      .widths = options.widths ? &widths : nullptr,
      .gap = gap_for(options),
      .rules = rules_for(options),
      .check = options.check,
      .guards = true,
      .gs1 = options.gs1,
      .segments = options.segments,
  };
  Drawing drawing;
  if (const Fault fault = draw(request, drawing)) return describe(fault, request);
  const GroupedText grouped = grouped_text(request, drawing.values);
  return Symbol{
      .bars = module_row(drawing.bars),
      .guards = module_row(drawing.guards),
      .text = grouped.length > 0 ? std::string(grouped.view()) : plain_text(request, drawing.values),
      .text_groups = grouped.groups};
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()));
}

QuietZones quiet_zones(const Options& options) {
  switch (options.symbology) {
    case Symbology::ean13:
      return {11, 7};  // ISO/IEC 15420
    case Symbology::upca:
      return {9, 9};
    case Symbology::ean8:
      return {7, 7};
    case Symbology::upce:
      return {9, 7};
    case Symbology::addon:
      return {7, 5};
    case Symbology::msi:
      return {12, 12};
    default:
      break;
  }
  // The others ask for ten narrow elements, which are several modules with the ratio 5:2 or chosen widths.
  constexpr int kNarrowElements = 10;
  int narrow = 1;
  if (has_two_widths(options.symbology)) {
    if (options.widths) {
      narrow = std::max(options.widths->narrow_bar, options.widths->narrow_space);
      narrow = std::clamp(narrow, 1, kMaxElementModules);
    } else if (options.ratio == Ratio::five_to_two) {
      narrow = 2;
    }
  }
  return {kNarrowElements * narrow, kNarrowElements * narrow};
}

}  // namespace korvex::linear
