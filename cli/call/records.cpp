#include "call/records.hpp"

#include <algorithm>
#include <array>
#include <type_traits>

namespace korvex::cli::call {
namespace {

// A row: the record's field, what it holds, and what else there is to say of it.
#define FIELD_AT(place, field, what, ...) \
  { .name = #field, .kind = Kind::what, .offset = place __VA_OPT__(, ) __VA_ARGS__ }
#define FIELD(record, field, what, ...) \
  FIELD_AT(offsetof(record, field), field, what __VA_OPT__(, ) __VA_ARGS__)

constexpr std::size_t kBitData = offsetof(Bit_Params, data);

constexpr Field kBitFields[] = {
    FIELD(Bit_Params, type, natural),
    FIELD(Bit_Params, guard_option, natural),
    FIELD(Bit_Params, text_option, natural),
    FIELD(Bit_Params, ratio, numbers),
    FIELD_AT(kBitData + offsetof(Bit_Data, data), data, bytes),
    FIELD_AT(kBitData + offsetof(Bit_Data, data_length), data_length, byte_count, .counted = "data"),
};
static_assert(sizeof(Bar_Ratio) == 5 * sizeof(std::int16_t));

constexpr Field kQrFields[] = {
    FIELD(QR_Params, ecc_level, number),
    FIELD(QR_Params, append_flag, number),
    FIELD(QR_Params, module_size, number),
    FIELD(QR_Params, append_count, number),
    FIELD(QR_Params, append_index, number),
    FIELD(QR_Params, append_parity, number),
    FIELD(QR_Params, fixed_mode_flag, number),
    FIELD(QR_Params, fixed_mode, number),
    FIELD(QR_Params, symbol_type, number),
    FIELD(QR_Params, version, number),
    FIELD(QR_Params, version_used, natural, .preset = 65535),
    FIELD(QR_Params, data, bytes),
    FIELD(QR_Params, data_length, byte_count, .counted = "data"),
    FIELD(QR_Params, private_flag, number),
    FIELD(QR_Params, private_key, key),
    FIELD(QR_Params, private_data, bytes),
    FIELD(QR_Params, private_length, byte_count, .counted = "private_data"),
    FIELD(QR_Params, rmqr_rows, number),
};

constexpr Field kPdfFields[] = {
    FIELD(PDF_Params, module_width, number), FIELD(PDF_Params, row_height, number),
    FIELD(PDF_Params, ecc_level, number),    FIELD(PDF_Params, columns, number),
    FIELD(PDF_Params, rows, number),         FIELD(PDF_Params, truncated, number),
    FIELD(PDF_Params, data, bytes),          FIELD(PDF_Params, length, byte_count, .counted = "data"),
    FIELD(PDF_Params, micro, number),        FIELD(PDF_Params, byte_only, number),
};

constexpr Field kDataFields[] = {
    FIELD(DATA_Params, module_width, number),
    FIELD(DATA_Params, module_height, number),
    FIELD(DATA_Params, columns, number),
    FIELD(DATA_Params, rows, number),
    FIELD(DATA_Params, fnc1_escape, number),
    FIELD(DATA_Params, data, bytes),
    FIELD(DATA_Params, length, byte_count, .counted = "data"),
};

constexpr Field kMaxiFields[] = {
    FIELD(MAXI_Params, position, number),      FIELD(MAXI_Params, total, number),
    FIELD(MAXI_Params, mode, number),          FIELD(MAXI_Params, postal_code, text),
    FIELD(MAXI_Params, service_class, number), FIELD(MAXI_Params, country_code, number),
    FIELD(MAXI_Params, message, text),
};

constexpr Field kCcFields[] = {
    FIELD(CC_Params, type, number),
    FIELD(CC_Params, module_size, number),
    FIELD(CC_Params, linear_height, number),
    FIELD(CC_Params, data, bytes),
    FIELD(CC_Params, length, byte_count, .counted = "data"),
    FIELD(CC_Params, segments_per_row, number),
};

constexpr Field kVeriFields[] = {
    FIELD(VERI_Params, symbol_size, number),  FIELD(VERI_Params, ecc_mode, number),
    FIELD(VERI_Params, module_width, number), FIELD(VERI_Params, module_height, number),
    FIELD(VERI_Params, data, bytes),          FIELD(VERI_Params, data_length, byte_count, .counted = "data"),
};

#undef FIELD
#undef FIELD_AT

template <auto Function, auto Params>
std::int16_t draw(const Exports& exports, Korvex_Device_Context context, Record& record, Symbol_Size& size) {
  return (exports.*Function)(context, &(record.*Params), &size);
}

template <auto Function>
std::int16_t bits(const Exports& exports, const Record& record, Bit_Result& result) {
  const Bit_Params& params = record.bit;
  return (exports.*Function)(params.type, params.guard_option, params.text_option, &params.ratio,
                             &params.data, &result);
}

template <auto Function>
constexpr Export returns_bits(std::string_view name) {
  return {name, kBitFields, nullptr, bits<Function>, false};
}

template <auto Function, auto Params>
constexpr Export draws(std::string_view name, std::span<const Field> fields) {
  return {name, fields, draw<Function, Params>, nullptr,
          std::is_same_v<decltype(Params), QR_Params Record::*>};
}

constexpr auto kExports = std::to_array<Export>({
    returns_bits<&Exports::Korvex_Bit>("Korvex_Bit"),
    returns_bits<&Exports::Korvex_Bit_x64>("Korvex_Bit_x64"),
    draws<&Exports::QR_Encode, &Record::qr>("QR_Encode", kQrFields),
    draws<&Exports::QR_Encode_x64, &Record::qr>("QR_Encode_x64", kQrFields),
    draws<&Exports::PDF_Encode, &Record::pdf>("PDF_Encode", kPdfFields),
    draws<&Exports::PDF_Encode_x64, &Record::pdf>("PDF_Encode_x64", kPdfFields),
    draws<&Exports::DATA_Encode, &Record::data>("DATA_Encode", kDataFields),
    draws<&Exports::DATA_Encode_x64, &Record::data>("DATA_Encode_x64", kDataFields),
    draws<&Exports::MAXI_Encode, &Record::maxi>("MAXI_Encode", kMaxiFields),
    draws<&Exports::MAXI_Encode_x64, &Record::maxi>("MAXI_Encode_x64", kMaxiFields),
    draws<&Exports::CC_Encode, &Record::cc>("CC_Encode", kCcFields),
    draws<&Exports::CC_Encode_x64, &Record::cc>("CC_Encode_x64", kCcFields),
    draws<&Exports::VERI_Encode, &Record::veri>("VERI_Encode", kVeriFields),
});
static_assert(kExports.size() == 13);

template <class Row>
const Row* find(std::span<const Row> rows, std::string_view name) {
  const auto row = std::ranges::find(rows, name, &Row::name);
  return row == rows.end() ? nullptr : &*row;
}

}  // namespace

std::span<const Export> export_table() {
  return kExports;
}

const Export* find_export(std::string_view name) {
  return find(export_table(), name);
}

const Field* find_field(const Export& target, std::string_view name) {
  return find(target.fields, name);
}

}  // namespace korvex::cli::call
