// The painting surface of Windows: GDI itself.
#include <windows.h>

#include "frame/device.hpp"

namespace korvex::device {
namespace {

HBITMAP handle(Bitmap* bitmap) {
  return reinterpret_cast<HBITMAP>(bitmap);
}

}  // namespace

Bitmap* create_bitmap(Korvex_Device_Context, int width, int height, const std::uint8_t* bits) {
  return reinterpret_cast<Bitmap*>(CreateBitmap(width, height, 1, 1, bits));
}

Korvex_Device_Context create_compatible_dc(Korvex_Device_Context context) {
  return CreateCompatibleDC(context);
}

void select_object(Korvex_Device_Context memory, Bitmap* bitmap) {
  SelectObject(memory, handle(bitmap));
}

void bit_blt(Korvex_Device_Context context, int x, int y, int width, int height,
             Korvex_Device_Context source) {
  BitBlt(context, x, y, width, height, source, 0, 0, SRCCOPY);
}

void delete_dc(Korvex_Device_Context memory) {
  DeleteDC(memory);
}

void delete_object(Bitmap* bitmap) {
  DeleteObject(handle(bitmap));
}

void set_pixel(Korvex_Device_Context context, int x, int y, Color color) {
  SetPixel(context, x, y, color);
}

}  // namespace korvex::device
