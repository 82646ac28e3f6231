// The records' layout, held at compile time. On a 32-bit target every offset is the one that programs of
// twenty years rely on; on a 64-bit target the pointers widen and the order stays.
#include <cstddef>

#include "korvex/korvex32.h"

namespace {

// A field's place in a 32-bit process, and its width there (pointers: 4).
// NOLINTBEGIN(bugprone-macro-parentheses): a record's name is a type, which takes none
#define KORVEX_FIELD(record, field, offset, width)                            \
  static_assert(sizeof(void*) != 4 || (offsetof(record, field) == (offset) && \
                                       sizeof(static_cast<record*>(nullptr)->field) == (width)))
// NOLINTEND(bugprone-macro-parentheses)

KORVEX_FIELD(Symbol_Size, width, 0, 2);
KORVEX_FIELD(Symbol_Size, height, 2, 2);
static_assert(sizeof(Symbol_Size) == 4);

KORVEX_FIELD(Bar_Ratio, selector, 0, 2);
KORVEX_FIELD(Bar_Ratio, narrow_space, 2, 2);
KORVEX_FIELD(Bar_Ratio, narrow_bar, 4, 2);
KORVEX_FIELD(Bar_Ratio, wide_space, 6, 2);
KORVEX_FIELD(Bar_Ratio, wide_bar, 8, 2);
static_assert(sizeof(Bar_Ratio) == 10);

KORVEX_FIELD(Bit_Data, data_length, 0, 2);
KORVEX_FIELD(Bit_Data, data, 4, 4);

KORVEX_FIELD(Bit_Result, bit_count, 0, 2);
KORVEX_FIELD(Bit_Result, bars, 4, 4);
KORVEX_FIELD(Bit_Result, guards, 8, 4);
KORVEX_FIELD(Bit_Result, text_length, 12, 2);
KORVEX_FIELD(Bit_Result, text, 16, 4);
KORVEX_FIELD(Bit_Result, text_groups, 20, 10);

KORVEX_FIELD(QR_Params, ecc_level, 0, 2);
KORVEX_FIELD(QR_Params, append_flag, 2, 2);
KORVEX_FIELD(QR_Params, module_size, 4, 2);
KORVEX_FIELD(QR_Params, append_count, 6, 2);
KORVEX_FIELD(QR_Params, append_index, 8, 2);
KORVEX_FIELD(QR_Params, append_parity, 10, 2);
KORVEX_FIELD(QR_Params, fixed_mode_flag, 12, 2);
KORVEX_FIELD(QR_Params, fixed_mode, 14, 2);
KORVEX_FIELD(QR_Params, symbol_type, 16, 2);
KORVEX_FIELD(QR_Params, version, 18, 2);
KORVEX_FIELD(QR_Params, version_used, 20, 2);
KORVEX_FIELD(QR_Params, data, 24, 4);
KORVEX_FIELD(QR_Params, data_length, 28, 2);
KORVEX_FIELD(QR_Params, private_flag, 30, 2);
KORVEX_FIELD(QR_Params, private_key, 32, 16);
KORVEX_FIELD(QR_Params, private_data, 48, 4);
KORVEX_FIELD(QR_Params, private_length, 52, 2);
KORVEX_FIELD(QR_Params, rmqr_rows, 54, 2);

KORVEX_FIELD(PDF_Params, module_width, 0, 2);
KORVEX_FIELD(PDF_Params, row_height, 2, 2);
KORVEX_FIELD(PDF_Params, ecc_level, 4, 2);
KORVEX_FIELD(PDF_Params, columns, 6, 2);
KORVEX_FIELD(PDF_Params, rows, 8, 2);
KORVEX_FIELD(PDF_Params, truncated, 10, 2);
KORVEX_FIELD(PDF_Params, data, 12, 4);
KORVEX_FIELD(PDF_Params, length, 16, 2);
KORVEX_FIELD(PDF_Params, micro, 18, 2);
KORVEX_FIELD(PDF_Params, byte_only, 20, 2);

KORVEX_FIELD(DATA_Params, module_width, 4, 2);
KORVEX_FIELD(DATA_Params, module_height, 6, 2);
KORVEX_FIELD(DATA_Params, columns, 8, 2);
KORVEX_FIELD(DATA_Params, rows, 10, 2);
KORVEX_FIELD(DATA_Params, fnc1_escape, 16, 2);
KORVEX_FIELD(DATA_Params, data, 20, 4);
KORVEX_FIELD(DATA_Params, length, 24, 2);

KORVEX_FIELD(MAXI_Params, position, 0, 2);
KORVEX_FIELD(MAXI_Params, total, 2, 2);
KORVEX_FIELD(MAXI_Params, mode, 4, 2);
KORVEX_FIELD(MAXI_Params, postal_code, 8, 4);
KORVEX_FIELD(MAXI_Params, service_class, 12, 2);
KORVEX_FIELD(MAXI_Params, country_code, 14, 2);
KORVEX_FIELD(MAXI_Params, message, 16, 4);

KORVEX_FIELD(CC_Params, type, 0, 2);
KORVEX_FIELD(CC_Params, module_size, 2, 2);
KORVEX_FIELD(CC_Params, linear_height, 4, 2);
KORVEX_FIELD(CC_Params, data, 8, 4);
KORVEX_FIELD(CC_Params, length, 12, 2);
KORVEX_FIELD(CC_Params, segments_per_row, 14, 2);

KORVEX_FIELD(VERI_Params, symbol_size, 0, 2);
KORVEX_FIELD(VERI_Params, ecc_mode, 2, 2);
KORVEX_FIELD(VERI_Params, module_width, 4, 2);
KORVEX_FIELD(VERI_Params, module_height, 6, 2);
KORVEX_FIELD(VERI_Params, data, 8, 4);
KORVEX_FIELD(VERI_Params, data_length, 12, 2);

#undef KORVEX_FIELD

}  // namespace
