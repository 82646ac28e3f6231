// The parameter records, field by field, and the exports that take them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "call/exports.hpp"

namespace korvex::cli::call {

/// What a field holds, in the record and in a request.
enum class Kind : std::uint8_t {
  number,      ///< signed 16 bits
  natural,     ///< unsigned 16 bits
  numbers,     ///< five signed 16-bit words in a row: a list of five numbers
  bytes,       ///< pointer to bytes: a string or {"hex": ...}
  text,        ///< pointer to bytes that end with a NUL, which the request leaves out
  byte_count,  ///< signed 16 bits, the number of bytes that the call may read; missing: all of them
  key,         ///< 16 characters in the record itself
};

struct Field {
  std::string_view name;
  Kind kind;
  std::uint16_t offset;        ///< in bytes from the start of the record
  std::uint16_t preset = 0;    ///< what a number holds when the request does not give it
  std::string_view counted{};  ///< byte_count: the field whose bytes it counts
};

/// The arguments of Korvex_Bit and its twin that a request gives, together as a record.
struct Bit_Params {
  std::uint16_t type;
  std::uint16_t guard_option;
  std::uint16_t text_option;
  Bar_Ratio ratio;
  Bit_Data data;
};

/// Room for any of the records.
union Record {
  Bit_Params bit;
  QR_Params qr;
  PDF_Params pdf;
  DATA_Params data;
  MAXI_Params maxi;
  CC_Params cc;
  VERI_Params veri;
};

struct Export {
  std::string_view name;
  std::span<const Field> fields;
  /// Calls a drawing export; null for the others.
  std::int16_t (*draw)(const Exports&, Korvex_Device_Context, Record&, Symbol_Size&);
  /// Calls Korvex_Bit or its twin; null for the others.
  std::int16_t (*bits)(const Exports&, const Record&, Bit_Result&);
  bool is_qr;  ///< QR_Encode and its twin, which write to their parameters
};

/// All thirteen.
std::span<const Export> export_table();
/// Null when there is none of that name.
const Export* find_export(std::string_view name);
/// Null when the record has no such field.
const Field* find_field(const Export& target, std::string_view name);

}  // namespace korvex::cli::call
