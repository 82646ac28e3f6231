/* Korvex: the C interface.
 *
 * Thirteen functions turn bytes into barcode symbols. Twelve come as pairs: NAME and NAME_x64 behave alike.
 * The records are the ones that KORVEX32.dll has always taken: on a 32-bit target every field stands at the
 * byte offset written beside it; on a 64-bit target the pointers widen and the order stays.
 *
 * Every function may be called from any number of threads at once; all working state lives in the call.
 * Results are signed 16-bit codes, 0 for success (see Korvex_Result). A call that fails paints nothing.
 */
#ifndef KORVEX_KORVEX32_H
#define KORVEX_KORVEX32_H

#include <stdint.h>

#define KORVEX_VERSION_MAJOR 1
#define KORVEX_VERSION_MINOR 0
#define KORVEX_VERSION_PATCH 0

#if defined(_WIN32)
#define KORVEX_CALL __cdecl
#define KORVEX_API
#else
#define KORVEX_CALL
#define KORVEX_API __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* The records' fields stand where they stand, whatever packing the program around has chosen. */
#pragma pack(push, 8)

/* ---- Result codes ---- */

enum Korvex_Result {
  KORVEX_OK = 0,             /* the symbol is drawn; Korvex_Bit: the pattern is in the caller's arrays */
  KORVEX_BAD_PARAMETER = -1, /* a parameter is out of range, or the data is malformed or too long for it */
  KORVEX_NO_SYMBOL = -2,     /* no symbol of the kind asked for holds the data; also: memory ran out */
  KORVEX_BAD_DATA = -3, /* Korvex_Bit: a character or the length is not allowed; CC_Encode: over 2436 bytes */
  KORVEX_GS1_FIXED_MODE = -8 /* QR_Encode: a fixed character mode together with the GS1 symbol type */
};

/* ---- The device that symbols are painted on ---- */

/* On Windows a device context of GDI (HDC). Elsewhere an in-memory picture with the same few operations, made
 * by korvex_device_create below. Symbols are painted from (0, 0), the top left, without a quiet zone. */
#if defined(_WIN32)
struct HDC__;
typedef struct HDC__* Korvex_Device_Context;
#else
typedef struct Korvex_Device Korvex_Device;
typedef Korvex_Device* Korvex_Device_Context;
#endif

/* The painted size in pixels, written through the third argument of every drawing function. */
typedef struct Symbol_Size {
  int16_t width;  /* 0 */
  int16_t height; /* 2 */
} Symbol_Size;

/* ---- Linear symbols: Korvex_Bit ---- */

/* Widths of the elements of two-width symbologies. */
typedef struct Bar_Ratio {
  int16_t selector; /* 0  0: wide = 2 narrow, 1: wide = 3 narrow, 2: narrow 2 modules and wide 5, above 2: as
                       below */
  int16_t narrow_space; /* 2  modules; also the gap between characters */
  int16_t narrow_bar;   /* 4  modules */
  int16_t wide_space;   /* 6  modules */
  int16_t wide_bar;     /* 8  modules */
} Bar_Ratio;

typedef struct Bit_Data {
  int16_t data_length; /* 0  bytes at `data` */
  const uint8_t* data; /* 4  no terminator is read */
} Bit_Data;

/* Module k of the symbol is bit 31 - k % 32 of word k / 32; 1 is a bar. The call writes bit_count / 32 + 1
 * words (rounded down) to each array; 188 words hold the largest symbol. */
typedef struct Bit_Result {
  int16_t bit_count;       /* 0   modules in the pattern; written on success */
  uint32_t* bars;          /* 4   caller's array, written on success */
  uint32_t* guards;        /* 8   caller's array, written on success: 1 where a guard bar of EAN/UPC stands */
  int16_t text_length;     /* 12  characters at `text`; 0 when there is none */
  char* text;              /* 16  caller's buffer of at least 23 bytes for the human readable text */
  uint16_t text_groups[5]; /* 20  sizes of the text's groups */
} Bit_Result;

/* Returns the bar pattern of a linear symbol (type 0..18) in the caller's arrays; paints nothing. */
KORVEX_API int16_t KORVEX_CALL Korvex_Bit(uint16_t type, uint16_t guard_option, uint16_t text_option,
                                          const Bar_Ratio* ratio, const Bit_Data* data, Bit_Result* result);
KORVEX_API int16_t KORVEX_CALL Korvex_Bit_x64(uint16_t type, uint16_t guard_option, uint16_t text_option,
                                              const Bar_Ratio* ratio, const Bit_Data* data,
                                              Bit_Result* result);

/* ---- QR Code (ISO/IEC 18004), Micro QR, rMQR (ISO/IEC 23941) ---- */

typedef struct QR_Params {
  int16_t ecc_level;           /* 0   1 L, 2 M, 3 Q, 4 H */
  int16_t append_flag;         /* 2   nonzero: one symbol of a structured-append series */
  int16_t module_size;         /* 4   pixels a module, 1..99 */
  int16_t append_count;        /* 6   symbols in the series, 1..16 */
  int16_t append_index;        /* 8   position of this symbol, 1..append_count */
  int16_t append_parity;       /* 10  parity byte, 0..255 */
  int16_t fixed_mode_flag;     /* 12  nonzero: one segment in `fixed_mode` */
  int16_t fixed_mode;          /* 14  1 numeric, 3 Kanji, 4 byte, any other value alphanumeric */
  int16_t symbol_type;         /* 16  1 Model 1, 2 Model 2, 3 Micro QR, 4 GS1 QR, 5 rMQR */
  int16_t version;             /* 18  0: the smallest that holds the data; else 1..40 */
  uint16_t version_used;       /* 20  written: the version drawn, 0 when none fits */
  int16_t reserved;            /* 22  not read */
  uint8_t* data;               /* 24  Shift JIS where Kanji is meant; GS1 data is translated in place */
  int16_t data_length;         /* 28  at least 1 */
  int16_t private_flag;        /* 30  nonzero: add the enciphered private segment */
  char private_key[16];        /* 32  hexadecimal digits of the 8 key bytes, no terminator */
  const uint8_t* private_data; /* 48 */
  int16_t private_length;      /* 52 */
  int16_t rmqr_rows;           /* 54  1..6 select 7, 9, 11, 13, 15, 17 rows; checked for every symbol type */
} QR_Params;

KORVEX_API int16_t KORVEX_CALL QR_Encode(Korvex_Device_Context device, QR_Params* params, Symbol_Size* size);
KORVEX_API int16_t KORVEX_CALL QR_Encode_x64(Korvex_Device_Context device, QR_Params* params,
                                             Symbol_Size* size);

/* ---- PDF417 (ISO/IEC 15438) and MicroPDF417 (ISO/IEC 24728) ---- */

typedef struct PDF_Params {
  int16_t module_width; /* 0   pixels, 1..9 */
  int16_t row_height;   /* 2   pixels, 1..24 */
  int16_t ecc_level;    /* 4   0..8; not read for MicroPDF417 */
  int16_t columns;      /* 6   data columns, 0 (choose) or 1..30; MicroPDF417: with `rows` selects the size */
  int16_t rows;         /* 8   0 (choose) or 3..90 */
  int16_t truncated;    /* 10  nonzero: truncated PDF417 */
  const uint8_t* data;  /* 12 */
  int16_t length;       /* 16 */
  int16_t micro;        /* 18  nonzero: MicroPDF417 */
  int16_t byte_only;    /* 20  nonzero: everything in byte compaction */
} PDF_Params;

KORVEX_API int16_t KORVEX_CALL PDF_Encode(Korvex_Device_Context device, const PDF_Params* params,
                                          Symbol_Size* size);
KORVEX_API int16_t KORVEX_CALL PDF_Encode_x64(Korvex_Device_Context device, const PDF_Params* params,
                                              Symbol_Size* size);

/* ---- Data Matrix ECC 200 (ISO/IEC 16022) ---- */

typedef struct DATA_Params {
  int16_t reserved_0[2];  /* 0   not read */
  int16_t module_width;   /* 4   pixels, at least 1; a symbol is at most 32767 wide and high */
  int16_t module_height;  /* 6   pixels, at least 1 */
  int16_t columns;        /* 8   modules, 0 automatic */
  int16_t rows;           /* 10  modules; equal to `columns`: a square symbol */
  int16_t reserved_12[2]; /* 12  not read */
  int16_t fnc1_escape;    /* 16  1: ESC starts an escape in the data */
  int16_t reserved_18;    /* 18  not read */
  const uint8_t* data;    /* 20  a tilde is written as two */
  int16_t length;         /* 24 */
} DATA_Params;

KORVEX_API int16_t KORVEX_CALL DATA_Encode(Korvex_Device_Context device, const DATA_Params* params,
                                           Symbol_Size* size);
KORVEX_API int16_t KORVEX_CALL DATA_Encode_x64(Korvex_Device_Context device, const DATA_Params* params,
                                               Symbol_Size* size);

/* ---- MaxiCode (ISO/IEC 16023) ---- */

typedef struct MAXI_Params {
  int16_t position;        /* 0   structured append, 1..8 */
  int16_t total;           /* 2   symbols in the series, 1..8; 1: none */
  int16_t mode;            /* 4   2, 3, 4 or 6 */
  const char* postal_code; /* 8   NUL-terminated; modes 2 and 3 */
  int16_t service_class;   /* 12  1..999; modes 2 and 3 */
  int16_t country_code;    /* 14  1..999; modes 2 and 3 */
  const char* message;     /* 16  NUL-terminated */
} MAXI_Params;

KORVEX_API int16_t KORVEX_CALL MAXI_Encode(Korvex_Device_Context device, const MAXI_Params* params,
                                           Symbol_Size* size);
KORVEX_API int16_t KORVEX_CALL MAXI_Encode_x64(Korvex_Device_Context device, const MAXI_Params* params,
                                               Symbol_Size* size);

/* ---- GS1 DataBar (ISO/IEC 24724) and composite symbols (ISO/IEC 24723) ---- */

typedef struct CC_Params {
  int16_t type;             /* 0   1..12 */
  int16_t module_size;      /* 2   pixels a module */
  int16_t linear_height;    /* 4   modules; GS1-128 only */
  const uint8_t* data;      /* 8   linear text, and after a vertical bar the text of the 2D component */
  int16_t length;           /* 12  at most 2436 */
  int16_t segments_per_row; /* 14  DataBar Expanded only */
} CC_Params;

KORVEX_API int16_t KORVEX_CALL CC_Encode(Korvex_Device_Context device, const CC_Params* params,
                                         Symbol_Size* size);
KORVEX_API int16_t KORVEX_CALL CC_Encode_x64(Korvex_Device_Context device, const CC_Params* params,
                                             Symbol_Size* size);

/* ---- VERI ---- */

typedef struct VERI_Params {
  int16_t symbol_size;   /* 0   modules a side, border included */
  int16_t ecc_mode;      /* 2   check bytes per 8-byte block: 2 or 4; any other value none */
  int16_t module_width;  /* 4   pixels, 3..10; outside: 3 */
  int16_t module_height; /* 6   pixels, 3..10; outside: 3 */
  const uint8_t* data;   /* 8 */
  int16_t data_length;   /* 12 */
} VERI_Params;

KORVEX_API int16_t KORVEX_CALL VERI_Encode(Korvex_Device_Context device, const VERI_Params* params,
                                           Symbol_Size* size);

/* ---- The portable device (every system but Windows) ---- */

#if !defined(_WIN32)

/* Makes a picture of width x height pixels, white and unpainted. 0 x 0 makes one that grows with what is
 * painted. Pixels outside a picture of fixed size are dropped. NULL when a size is negative or memory runs
 * out. A picture belongs to one thread at a time. */
KORVEX_API Korvex_Device* korvex_device_create(int32_t width, int32_t height);
KORVEX_API void korvex_device_destroy(Korvex_Device* device); /* NULL is allowed */

/* Colours are 0x00bbggrr, as in GDI. Bitmaps paint dark modules in the text colour and light ones in the
 * background colour (black and white at first); MaxiCode and VERI always paint black and white. */
KORVEX_API void korvex_device_set_colors(Korvex_Device* device, uint32_t text, uint32_t background);

/* The present size in pixels: the given one, or of a growing picture the smallest that covers what is
 * painted. */
KORVEX_API int32_t korvex_device_width(const Korvex_Device* device);
KORVEX_API int32_t korvex_device_height(const Korvex_Device* device);

/* The colour at (x, y); white where nothing was painted, and outside the picture. */
KORVEX_API uint32_t korvex_device_pixel(const Korvex_Device* device, int32_t x, int32_t y);
/* 1 when (x, y) was painted, else 0. */
KORVEX_API int korvex_device_is_painted(const Korvex_Device* device, int32_t x, int32_t y);
/* The smallest size from (0, 0) that covers every painted pixel; 0 x 0 when there is none. */
KORVEX_API void korvex_device_painted_size(const Korvex_Device* device, int32_t* width, int32_t* height);
/* 1 when an operation was lost because memory ran out, else 0. */
KORVEX_API int korvex_device_failed(const Korvex_Device* device);

/* Operations in order, recorded when asked for: "CreateBitmap", "CreateCompatibleDC", "SelectObject",
 * "BitBlt", "DeleteDC", "DeleteObject", and "SetPixel", of which a run is one entry with its count (others
 * count 1). */
KORVEX_API void korvex_device_record(Korvex_Device* device, int on);
KORVEX_API int32_t korvex_device_operation_count(const Korvex_Device* device);
/* The name of entry `index`, NULL outside 0..count-1; `repeats` (may be NULL) receives its count. */
KORVEX_API const char* korvex_device_operation(const Korvex_Device* device, int32_t index, int32_t* repeats);

#endif /* !_WIN32 */

#pragma pack(pop)

#ifdef __cplusplus
}
#endif

#endif /* KORVEX_KORVEX32_H */
