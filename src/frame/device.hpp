// The operations of a painting surface that the library uses: those of GDI, by their own names and meaning.
// device_gdi.cpp passes them to Windows; device_memory.cpp performs them on an in-memory picture elsewhere.
// As with GDI, nobody checks their results: an operation on a handle that could not be made does nothing.
#pragma once

#include <cstdint>

#include "korvex/korvex32.h"

namespace korvex::device {

/// 0x00bbggrr.
using Color = std::uint32_t;
inline constexpr Color kBlack = 0x000000;
inline constexpr Color kWhite = 0xFFFFFF;

/// A monochrome bitmap, owned by whoever made it.
struct Bitmap;

/// Makes a bitmap of width x height pixels, 1 plane, 1 bit a pixel, from rows that start on 16-bit
/// boundaries, leftmost pixel in the most significant bit. GDI does not ask which `context` it is for; a
/// picture that records its operations does.
Bitmap* create_bitmap(Korvex_Device_Context context, int width, int height, const std::uint8_t* bits);
/// Makes a memory device context to go with `context`.
Korvex_Device_Context create_compatible_dc(Korvex_Device_Context context);
void select_object(Korvex_Device_Context memory, Bitmap* bitmap);
/// Copies width x height pixels from (0, 0) of `source` to (x, y) of `context`, raster operation SRCCOPY: 0
/// bits take the text colour of `context`, 1 bits its background colour.
void bit_blt(Korvex_Device_Context context, int x, int y, int width, int height,
             Korvex_Device_Context source);
void delete_dc(Korvex_Device_Context memory);
void delete_object(Bitmap* bitmap);

void set_pixel(Korvex_Device_Context context, int x, int y, Color color);

}  // namespace korvex::device
