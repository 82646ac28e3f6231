/* The header is plain C, and every export can be called from C: what a C caller's compiler sees. */
#include <korvex/korvex32.h>

/* The results of calls without any record: no export may touch what is not there. */
int korvex_call_each_with_nothing(int16_t results[13]);

int korvex_call_each_with_nothing(int16_t results[13]) {
  Symbol_Size size = {-1, -1};
  Korvex_Device* device = korvex_device_create(0, 0);
  int untouched;
  results[0] = Korvex_Bit(3, 0, 0, 0, 0, 0);
  results[1] = Korvex_Bit_x64(3, 0, 0, 0, 0, 0);
  results[2] = CC_Encode(device, 0, &size);
  results[3] = CC_Encode_x64(device, 0, &size);
  results[4] = DATA_Encode(device, 0, &size);
  results[5] = DATA_Encode_x64(device, 0, &size);
  results[6] = MAXI_Encode(device, 0, &size);
  results[7] = MAXI_Encode_x64(device, 0, &size);
  results[8] = PDF_Encode(device, 0, &size);
  results[9] = PDF_Encode_x64(device, 0, &size);
  results[10] = QR_Encode(device, 0, &size);
  results[11] = QR_Encode_x64(device, 0, &size);
  results[12] = VERI_Encode(device, 0, &size);
  untouched = size.width == -1 && size.height == -1 && korvex_device_width(device) == 0;
  korvex_device_destroy(device);
  return untouched;
}
