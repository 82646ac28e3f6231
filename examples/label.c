/* A QR symbol as a PBM picture on standard output:  label "https://example.com" > label.pbm */
#include <korvex/korvex32.h>
#include <stdio.h>
#include <string.h>

int main(int argc, char** argv) {
  enum { kModule = 4, kQuiet = 4 * kModule }; /* pixels */
  const char* text = argc > 1 ? argv[1] : "https://example.com";
  Korvex_Device* picture = korvex_device_create(0, 0); /* grows with what is painted */
  QR_Params params = {0};
  Symbol_Size size;
  int x, y, result;

  params.ecc_level = 2;   /* M */
  params.symbol_type = 2; /* Model 2 */
  params.module_size = kModule;
  params.rmqr_rows = 1; /* checked for every type */
  params.data = (uint8_t*)text;
  params.data_length = (int16_t)strlen(text);
  result = QR_Encode(picture, &params, &size);
  if (result == KORVEX_OK) {
    printf("P1\n%d %d\n", size.width + 2 * kQuiet, size.height + 2 * kQuiet);
    for (y = -kQuiet; y < size.height + kQuiet; ++y) {
      for (x = -kQuiet; x < size.width + kQuiet; ++x)
        putchar(korvex_device_pixel(picture, x, y) == 0 ? '1' : '0');
      putchar('\n');
    }
  } else {
    fprintf(stderr, "no symbol: %d\n", result);
  }
  korvex_device_destroy(picture);
  return result != KORVEX_OK;
}
