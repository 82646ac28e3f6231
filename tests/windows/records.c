/* A 32-bit program as they have been for twenty years: it knows the DLL by names, byte offsets and registers,
 * and no header of ours. It builds every record from bytes, calls through GetProcAddress and prints what came
 * back, one line of JSON a call; records.test.mjs compares with the same requests in records.jsonl. */
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <windows.h>

/* A 16-bit argument travels in a 32-bit place on the stack, and nobody promises what its upper half holds. Of
 * the register with the result only the lower half counts. */
typedef uint32_t (*Bits)(uint32_t type, uint32_t guard_option, uint32_t text_option, const void* ratio,
                         const void* data, void* result);
typedef uint32_t (*Draws)(HDC device, void* params, void* size);

enum { kRubbish = 0xA5, kLargest = 64, kWidth = 700, kHeight = 400, kUnpainted = 0x123456 };

static HMODULE library;

/* A record that is full of rubbish where no field is put, the places behind its end included. */
static uint8_t record[kLargest];
static uint8_t record_before[kLargest];

static void begin_record(void) {
  memset(record, kRubbish, sizeof record);
}

static void put16(int offset, int value) {
  record[offset] = (uint8_t)value;
  record[offset + 1] = (uint8_t)(value >> 8);
}

static void put_pointer(int offset, const void* address) {
  const uint32_t bytes = (uint32_t)(uintptr_t)address;
  memcpy(record + offset, &bytes, 4);
}

/* Places that the call wrote to, as a list of byte offsets. */
static void print_written(void) {
  const char* separator = "";
  int offset;
  printf("\"written\": [");
  for (offset = 0; offset < kLargest; ++offset) {
    if (record[offset] == record_before[offset]) continue;
    printf("%s%d", separator, offset);
    separator = ", ";
  }
  printf("]");
}

/* ---- The drawing exports ---- */

static HDC surface;
static uint32_t* pixels;

static void make_surface(void) {
  BITMAPINFO info;
  memset(&info, 0, sizeof info);
  info.bmiHeader.biSize = sizeof info.bmiHeader;
  info.bmiHeader.biWidth = kWidth;
  info.bmiHeader.biHeight = -kHeight;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 32;
  surface = CreateCompatibleDC(NULL);
  SelectObject(surface, CreateDIBSection(surface, &info, DIB_RGB_COLORS, (void**)&pixels, NULL, 0));
}

static void print_rows(void) {
  int painted_width = 0, painted_height = 0, x, y;
  for (y = 0; y < kHeight; ++y) {
    for (x = 0; x < kWidth; ++x) {
      if (pixels[y * kWidth + x] == kUnpainted) continue;
      painted_height = y + 1;
      if (x >= painted_width) painted_width = x + 1;
    }
  }
  printf("\"rows\": [");
  for (y = 0; y < painted_height; ++y) {
    printf(y == 0 ? "\"" : ", \"");
    for (x = 0; x < painted_width; x += 8) {
      unsigned byte = 0;
      int bit;
      for (bit = 0; bit < 8; ++bit) {
        byte = byte << 1 | (x + bit < painted_width && (pixels[y * kWidth + x + bit] & 0xFFFFFF) == 0);
      }
      printf("%02x", byte);
    }
    printf("\"");
  }
  printf("], ");
}

static void draw(const char* id, const char* export) {
  const Draws function = (Draws)(void (*)(void))GetProcAddress(library, export);
  uint8_t size[8] = {0xFF, 0xFF, 0xFF, 0xFF, kRubbish, kRubbish, kRubbish, kRubbish};
  int16_t width, height, result;
  int i;
  for (i = 0; i < kWidth * kHeight; ++i) pixels[i] = kUnpainted;
  memcpy(record_before, record, sizeof record);
  result = (int16_t)(function(surface, record, size) & 0xFFFF);
  GdiFlush();
  memcpy(&width, size, 2);
  memcpy(&height, size + 2, 2);
  printf("{\"id\": \"%s\", \"result\": %d, \"width\": %d, \"height\": %d, ", id, result, width, height);
  print_rows();
  printf("\"behind_size\": %s, ", memcmp(size + 4, "\xA5\xA5\xA5\xA5", 4) == 0 ? "true" : "false");
  print_written();
  printf("}\n");
}

static void draw_qr(void) {
  char data[] = "KORVEX 32";
  begin_record();
  put16(0, 3);    /* level Q */
  put16(2, 1);    /* of a structured-append series */
  put16(4, 2);    /* pixels a module */
  put16(6, 7);    /* symbols in the series */
  put16(8, 4);    /* this one */
  put16(10, 201); /* parity */
  put16(12, 1);   /* one segment */
  put16(14, 4);   /* of bytes */
  put16(16, 2);   /* Model 2 */
  put16(18, 9);   /* version */
  put_pointer(24, data);
  put16(28, 9);
  put16(30, 1); /* with a private segment */
  memcpy(record + 32, "0123456789abCDEF", 16);
  put_pointer(48, "hidden");
  put16(52, 6);
  put16(54, 5); /* rows of an rMQR symbol: not read but checked */
  draw("QR_Encode", "QR_Encode");
}

static void draw_rmqr(void) {
  char data[] = "12345";
  begin_record();
  put16(0, 2);
  put16(2, 0);
  put16(4, 3);
  put16(12, 0);
  put16(16, 5);
  put16(18, 0);
  put_pointer(24, data);
  put16(28, 5);
  put16(30, 0);
  put16(54, 3); /* 11 module rows */
  draw("rMQR", "QR_Encode_x64");
}

static void draw_pdf(const char* id, int micro) {
  begin_record();
  put16(0, 2);               /* pixels a module */
  put16(2, 5);               /* pixels a row */
  put16(4, 3);               /* level */
  put16(6, 4);               /* columns */
  put16(8, micro ? 10 : 12); /* rows */
  put16(10, !micro);         /* truncated */
  put_pointer(12, "KORVEX 417");
  put16(16, 10);
  put16(18, micro);
  put16(20, 1); /* bytes only */
  draw(id, "PDF_Encode");
}

static void draw_data_matrix(void) {
  begin_record();
  put16(4, 3);   /* pixels a module across */
  put16(6, 5);   /* and down */
  put16(8, 36);  /* columns */
  put16(10, 16); /* rows */
  put16(16, 1);  /* ESC starts an escape: ESC 1 is FNC1 */
  put_pointer(20,
              "\x1B"
              "1KORVEX~~6");
  put16(24, 11);
  draw("DATA_Encode", "DATA_Encode");
}

static void draw_maxicode(void) {
  begin_record();
  put16(0, 2); /* second of */
  put16(2, 3); /* three symbols */
  put16(4, 3); /* mode */
  put_pointer(8, "B1050 ");
  put16(12, 66); /* class of service */
  put16(14, 56); /* country */
  put_pointer(16, "KORVEX 16023");
  draw("MAXI_Encode", "MAXI_Encode");
}

static void draw_composite(const char* id, int type, const char* data) {
  begin_record();
  put16(0, type);
  put16(2, 2);  /* pixels a module */
  put16(4, 21); /* modules of height */
  put_pointer(8, data);
  put16(12, (int)strlen(data));
  put16(14, 4); /* segments a row */
  draw(id, "CC_Encode");
}

static void draw_veri(void) {
  begin_record();
  put16(0, 20); /* modules a side */
  put16(2, 2);  /* check bytes a block */
  put16(4, 4);  /* pixels a module */
  put16(6, 4);
  put_pointer(8, "KORVEX");
  put16(12, 6);
  draw("VERI_Encode", "VERI_Encode");
}

/* ---- Korvex_Bit ---- */

enum { kPatternWords = 188 };

static void print_bits(const char* name, const uint32_t* words, int count) {
  int module;
  printf("\"%s\": \"", name);
  for (module = 0; module < count; ++module) putchar('0' + (words[module / 32] >> (31 - module % 32) & 1));
  printf("\", ");
}

static void call_bits(const char* id, const char* export, int type, int text_option, const int ratio[5],
                      const char* data) {
  const Bits function = (Bits)(void (*)(void))GetProcAddress(library, export);
  uint32_t bars[kPatternWords], guards[kPatternWords];
  char text[23 + 1];
  uint8_t widths[10], input[8];
  const uint32_t address = (uint32_t)(uintptr_t)data;
  const int length = (int)strlen(data);
  int16_t result, bit_count, text_length;
  uint16_t groups[5];
  int i;

  for (i = 0; i < 5; ++i) {
    widths[2 * i] = (uint8_t)ratio[i];
    widths[2 * i + 1] = (uint8_t)(ratio[i] >> 8);
  }
  memset(input, kRubbish, sizeof input);
  input[0] = (uint8_t)length;
  input[1] = (uint8_t)(length >> 8);
  memcpy(input + 4, &address, 4);
  begin_record();
  put_pointer(4, bars);
  put_pointer(8, guards);
  put_pointer(16, text);
  memset(record + 20, 0, 10); /* only the groups that there are get written */
  memset(text, 0, sizeof text);
  memcpy(record_before, record, sizeof record);

  result = (int16_t)(function(0xDEAD0000u | (uint32_t)type, 0xBEEF0001u, 0xFFFF0000u | (uint32_t)text_option,
                              widths, input, record) &
                     0xFFFF);
  memcpy(&bit_count, record, 2);
  memcpy(&text_length, record + 12, 2);
  memcpy(groups, record + 20, 10);
  printf("{\"id\": \"%s\", \"result\": %d, \"text_length\": %d, ", id, result, text_length);
  if (result == 0) {
    printf("\"bit_count\": %d, ", bit_count);
    print_bits("bars", bars, bit_count);
    if (type == 3) print_bits("guards", guards, bit_count);
    if (text_length > 0) {
      printf("\"text\": \"%s\", \"text_groups\": [%d, %d, %d, %d, %d], ", text, groups[0], groups[1],
             groups[2], groups[3], groups[4]);
    }
  }
  print_written();
  printf("}\n");
}

int main(void) {
  static const int fixed[5] = {0, 0, 0, 0, 0};
  static const int widths[5] = {3, 2, 1, 5, 4};
  library = LoadLibraryA("KORVEX32.dll");
  if (library == NULL) {
    fprintf(stderr, "KORVEX32.dll does not load: error %lu\n", GetLastError());
    return 1;
  }
  make_surface();
  call_bits("EAN-13", "Korvex_Bit", 3, 1, fixed, "400638133393");
  call_bits("Interleaved 2 of 5", "Korvex_Bit_x64", 2, 0, widths, "4711");
  call_bits("not a digit", "Korvex_Bit", 2, 0, fixed, "47x1");
  draw_qr();
  draw_rmqr();
  draw_pdf("PDF_Encode", 0);
  draw_pdf("MicroPDF417", 1);
  draw_data_matrix();
  draw_maxicode();
  draw_composite("CC_Encode", 11, "010950110153000310ABC|21XYZ");
  draw_composite("stacked", 6, "01095011015300033103000123|21A");
  draw_veri();
  return 0;
}
