#include "linear/entry.hpp"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "linear/layout.hpp"
#include "linear/request.hpp"
#include "linear/symbologies.hpp"
#include "linear/text.hpp"
#include "linear/types.hpp"

namespace korvex::linear {
namespace {

constexpr ValueTable kBase36Values = value_table("0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ");

bool wants_text(Symbology symbology, int text_option) {
  if (symbology == Symbology::sscc18) return text_option == 1 || text_option == 2;
  return (symbology == Symbology::ean13 || symbology == Symbology::ean8) && text_option != 0;
}

bool has_guards(Symbology symbology) {
  return symbology == Symbology::ean13 || symbology == Symbology::ean8 || symbology == Symbology::upce;
}

/// The widths of selectors above 2; those of 0 to 2 are the values of Ratio.
std::optional<ExplicitWidths> explicit_widths(const Bar_Ratio& ratio) {
  if (ratio.selector <= 2) return std::nullopt;
  return ExplicitWidths{ratio.narrow_space, ratio.narrow_bar, ratio.wide_space, ratio.wide_bar};
}

int gap_modules(Symbology symbology, const Bar_Ratio& ratio) {
  if (symbology == Symbology::code93) return 0;
  if (ratio.selector > 2) return ratio.narrow_space;
  return ratio.selector == 2 ? 2 : 1;
}

/// A type without a symbol still checks its data.
std::int16_t check_only(const ValueTable& table, std::span<const std::uint8_t> data) {
  Values values;
  return append_values(table, data, values) ? KORVEX_BAD_DATA : KORVEX_BAD_PARAMETER;
}

void write_text(const GroupedText& text, Bit_Result& result) {
  std::copy_n(text.characters.data(), text.length, result.text);
  result.text[text.length] = '\0';
  std::copy_n(text.groups.data(), text.group_count, result.text_groups);
  result.text_length = static_cast<std::int16_t>(text.length);
}

void write_patterns(const Drawing& drawing, Bit_Result& result) {
  const int modules = drawing.bars.module_count;
  const int words = modules / 32 + 1;
  std::copy_n(drawing.bars.words.data(), words, result.bars);
  if (drawing.guards.module_count > 0) {
    std::copy_n(drawing.guards.words.data(), words, result.guards);
  } else {
    std::fill_n(result.guards, words, 0U);
  }
  result.bit_count = static_cast<std::int16_t>(modules);
}

}  // namespace

std::int16_t entry(std::uint16_t type, std::uint16_t guard_option, std::uint16_t text_option,
                   const Bar_Ratio* ratio, const Bit_Data* data, Bit_Result* result) {
  if (result == nullptr) return KORVEX_BAD_DATA;
  result->text_length = 0;
  if (ratio == nullptr || data == nullptr || data->data == nullptr) return KORVEX_BAD_DATA;
  if (result->bars == nullptr || result->guards == nullptr) return KORVEX_BAD_DATA;
  if (type >= kTypeCount || ratio->selector < 0) return KORVEX_BAD_DATA;
  if (data->data_length < 0 || data->data_length > kMaxDataBytes) return KORVEX_BAD_DATA;

  const std::span<const std::uint8_t> bytes(data->data, static_cast<std::size_t>(data->data_length));
  if (type == kCodabarWithoutSymbol) return check_only(kCodabarValues, bytes);
  if (type == kBase36WithoutSymbol) return check_only(kBase36Values, bytes);
  const std::optional<Symbology> symbology = kTypes[type].symbology;
  if (!symbology) return KORVEX_BAD_DATA;
  const bool with_text = wants_text(*symbology, text_option);
  if (with_text && result->text == nullptr) return KORVEX_BAD_DATA;

  const std::optional<ExplicitWidths> widths = explicit_widths(*ratio);
  const Request request{
      .symbology = *symbology,
      .dialect = Dialect::korvex32,
      .data = bytes,
      .ratio = widths ? Ratio::two_to_one : static_cast<Ratio>(ratio->selector),
      .widths = widths ? &*widths : nullptr,
      .gap = gap_modules(*symbology, *ratio),
      .rules = kTypes[type].rules,
      .guards = guard_option != 0 && has_guards(*symbology),
      .segments = text_option,
  };
  Drawing drawing;
  if (const Fault fault = draw(request, drawing)) return static_cast<std::int16_t>(code_of(fault.reason));
  if (with_text) write_text(grouped_text(request, drawing.values), *result);
  write_patterns(drawing, *result);
  return KORVEX_OK;
}

}  // namespace korvex::linear
