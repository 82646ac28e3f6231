#include "datamatrix/encode.hpp"

#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "core/element_string.hpp"
#include "datamatrix/construction.hpp"
#include "datamatrix/encodation.hpp"
#include "datamatrix/error_correction.hpp"

namespace korvex::datamatrix {
namespace {

std::string name_of(int rows, int columns) {
  return std::to_string(rows) + " x " + std::to_string(columns);
}

Error describe(const Fault& fault, const Options& options, std::size_t data_bytes) {
  switch (fault.reason) {
    case Reason::bad_escape:
      return {Code::bad_data, "The ESC at position " + std::to_string(fault.position) +
                                  " starts no escape; behind it stands \"1\" for FNC1 or a second ESC."};
    case Reason::size_not_allowed:
      return {Code::bad_parameter,
              "There is no size of " + name_of(options.rows, options.columns) +
                  " modules (rows x columns); squares are 10 x 10 to 144 x 144, rectangles 8 x 18, 8 x 32, "
                  "12 x 26, 12 x 36, 16 x 36 and 16 x 48."};
    default:
      break;
  }
  const SymbolSize& largest = sizes_for(options).back();
  return {Code::no_symbol, "The data of " + std::to_string(data_bytes) + " bytes does not fit a symbol of " +
                               name_of(largest.rows, largest.columns) + " modules, which holds " +
                               std::to_string(largest.data_codewords) + " codewords."};
}

/// Element strings in plain form. Escaped FNC1 are separators; other escapes stay for read_message().
Result<std::string> plain_form(const Options& options, std::span<const std::uint8_t> data) {
  if (!options.fnc1_escape) return plain_element_string(data, options.gs1_checking);
  std::vector<std::uint8_t> bytes;
  for (std::size_t at = 0; at < data.size(); ++at) {
    const int next = data[at] == kEsc && at + 1 < data.size() ? data[at + 1] : 0;
    if (next == kEsc) bytes.push_back(data[at++]);
    if (next == '1') ++at;
    bytes.push_back(next == '1' ? static_cast<std::uint8_t>(gs1::kSeparator) : data[at]);
  }
  return plain_element_string(bytes, options.gs1_checking);
}

std::vector<Segment> filled_segments(const Plan& plan) {
  const auto is_filled = [](const Segment& segment) { return segment.characters > 0; };
  std::vector<Segment> segments;
  segments.reserve(static_cast<std::size_t>(std::ranges::count_if(plan.segments(), is_filled)));
  std::ranges::copy_if(plan.segments(), std::back_inserter(segments), is_filled);
  return segments;
}

}  // namespace

Fault draw(const Options& options, std::span<const std::uint8_t> data, Drawing& drawing) {
  Message message;
  if (const Fault fault = read_message(options, data, message)) return fault;
  const std::span<const SymbolSize> sizes = sizes_for(options);
  if (sizes.empty()) return {Reason::size_not_allowed};
  if (!make_plan(message.characters(), sizes, options.gs1, drawing.plan)) return {Reason::does_not_fit};

  const SymbolSize& size = *drawing.plan.size;
  std::array<std::uint8_t, kMaxCodewords> storage;
  const std::span<std::uint8_t> codewords =
      std::span(storage).first(static_cast<std::size_t>(size.codewords()));
  const auto data_codewords = codewords.first(static_cast<std::size_t>(size.data_codewords));
  drawing.pad_codewords = encode_message(message.characters(), drawing.plan, data_codewords);
  // The plan sees to that; were it wrong, better no symbol than one that reads as something else.
  if (drawing.pad_codewords < 0) return {Reason::does_not_fit};
  add_check_codewords(size, codewords);
  drawing.modules = place_modules(size, codewords);
  return {};
}

Result<Symbol> encode(const Options& options, std::span<const std::uint8_t> data) {
  if (options.shape > Shape::rectangle)
    return Error{Code::bad_parameter, "The shape is not one of the list."};
  if (data.size() > static_cast<std::size_t>(kMaxDataBytes)) {
    return Error{Code::no_symbol, "The data has " + std::to_string(data.size()) + " bytes; at most " +
                                      std::to_string(kMaxDataBytes) + " are allowed."};
  }
  std::string plain;
  if (options.gs1) {
    Result<std::string> read = plain_form(options, data);
    if (!read) return read.error();
    plain = *std::move(read);
    data = std::span(reinterpret_cast<const std::uint8_t*>(plain.data()), plain.size());
  }
  Drawing drawing;
  if (const Fault fault = draw(options, data, drawing)) return describe(fault, options, data.size());
  return Symbol{.modules = std::move(drawing.modules),
                .data_codewords = drawing.plan.size->data_codewords,
                .pad_codewords = drawing.pad_codewords,
                .check_codewords = drawing.plan.size->check_codewords,
                .segments = filled_segments(drawing.plan)};
}

Result<Symbol> encode(const Options& options, std::string_view data) {
  return encode(options, std::span(reinterpret_cast<const std::uint8_t*>(data.data()), data.size()));
}

}  // namespace korvex::datamatrix
