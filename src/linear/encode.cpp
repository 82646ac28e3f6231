// The C++ interface: options are checked, the request is drawn, the symbol handed over.
#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "korvex/linear.hpp"
#include "linear/request.hpp"
#include "linear/symbologies.hpp"
#include "linear/text.hpp"

namespace korvex::linear {
namespace {

constexpr int kMaxElementModules = 99;

/// The row of kTypeRules.
constexpr int type_of(Symbology symbology) {
  switch (symbology) {
    case Symbology::codabar:
      return 0;
    case Symbology::code39:
      return 1;
    case Symbology::itf:
      return 2;
    case Symbology::ean13:
    case Symbology::upca:
      return 3;
    case Symbology::ean8:
      return 4;
    case Symbology::industrial25:
      return 5;
    case Symbology::code25_3bar:
      return 6;
    case Symbology::sscc18:
      return 8;
    case Symbology::code128:
    case Symbology::code128_inband:
      return 9;
    case Symbology::msi:
      return 10;
    case Symbology::code11:
      return 11;
    case Symbology::code93:
      return 12;
    case Symbology::code128_segments:
      return 13;
    case Symbology::upce:
      return 14;
    case Symbology::addon:
      return 15;
  }
  return 18;
}

bool offers(Symbology symbology, CheckCharacters check) {
  using enum CheckCharacters;
  switch (check) {
    case none:
      return true;
    case mod10:
      return symbology == Symbology::msi || symbology == Symbology::itf ||
             symbology == Symbology::industrial25 || symbology == Symbology::code25_3bar;
    case mod10_mod10:
    case mod11:
    case mod11_mod10:
      return symbology == Symbology::msi;
    case mod43:
      return symbology == Symbology::code39;
    case mod16:
      return symbology == Symbology::codabar;
    case one:
    case two:
      return symbology == Symbology::code11;
  }
  return false;
}

/// The type's rules, with those on that the caller asks for. MSI and Codabar have usual ones of their own.
CheckRules rules_for(const Options& options) {
  CheckRules rules = kTypeRules[static_cast<std::size_t>(type_of(options.symbology))];
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
        "The symbology does not offer this check; offered are mod10 for MSI and the 2 of 5 codes, "
        "mod10_mod10, mod11 and "
        "mod11_mod10 for MSI, mod43 for Code 39, mod16 for Codabar, one and two for Code 11.");
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

ModuleRow module_row(const BarWriter& bars) {
  const int modules = bars.module_count();
  return {std::vector<std::uint32_t>(bars.words(), bars.words() + (modules + 31) / 32), modules};
}

}  // namespace

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  if (Error error = check_options(options); !error.message.empty()) return error;
  if (data.size() > static_cast<std::size_t>(kMaxDataBytes)) {
    return Error{Code::bad_data, "The data has " + std::to_string(data.size()) + " bytes; at most " +
                                     std::to_string(kMaxDataBytes) + " are allowed."};
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
  return Symbol{.bars = module_row(drawing.bars),
                .guards = module_row(drawing.guards),
                .text = plain_text(request, drawing.values),
                .text_groups = grouped_text(request, drawing.values).groups};
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()));
}

QuietZones quiet_zones(const Options& options) {
  // In narrow elements, of which the 5:2 ratio and chosen widths make several modules.
  constexpr int kTen = 10;
  switch (options.symbology) {
    case Symbology::ean13:
      return {11, 7};  // ISO/IEC 15420, 4.3.4
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
  int narrow = 1;
  if (has_two_widths(options.symbology)) {
    if (options.widths) {
      narrow = std::max(options.widths->narrow_bar, options.widths->narrow_space);
    } else if (options.ratio == Ratio::five_to_two) {
      narrow = 2;
    }
  }
  return {kTen * narrow, kTen * narrow};
}

}  // namespace korvex::linear
