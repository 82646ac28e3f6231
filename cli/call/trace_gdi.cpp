#include "call/trace_gdi.hpp"

#include <windows.h>

#include <array>
#include <cstdint>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace korvex::cli::call {
namespace {

struct Entry {
  std::string_view name;
  std::int64_t repeats;
};

std::vector<Entry> entries;
bool forgotten = false;  // there was no memory for an entry
GdiTrace::Reach reach;

constexpr std::string_view kSetPixel = "SetPixel";

/// Throws nothing, for it is called from inside the DLL.
void note(std::string_view name) try {
  if (name == kSetPixel && !entries.empty() && entries.back().name == kSetPixel) {
    ++entries.back().repeats;
  } else {
    entries.push_back({name, 1});
  }
} catch (const std::bad_alloc&) {
  forgotten = true;
}

// ---- What stands in for GDI's functions ----

HBITMAP WINAPI create_bitmap(int width, int height, UINT planes, UINT bits, const void* data) {
  note("CreateBitmap");
  return CreateBitmap(width, height, planes, bits, data);
}
HDC WINAPI create_compatible_dc(HDC context) {
  note("CreateCompatibleDC");
  return CreateCompatibleDC(context);
}
HGDIOBJ WINAPI select_object(HDC context, HGDIOBJ object) {
  note("SelectObject");
  return SelectObject(context, object);
}
BOOL WINAPI bit_blt(HDC to, int x, int y, int width, int height, HDC from, int from_x, int from_y,
                    DWORD operation) {
  note("BitBlt");
  reach(x + width, y + height);
  return BitBlt(to, x, y, width, height, from, from_x, from_y, operation);
}
BOOL WINAPI delete_dc(HDC context) {
  note("DeleteDC");
  return DeleteDC(context);
}
BOOL WINAPI delete_object(HGDIOBJ object) {
  note("DeleteObject");
  return DeleteObject(object);
}
COLORREF WINAPI set_pixel(HDC context, int x, int y, COLORREF color) {
  note(kSetPixel);
  reach(x + 1, y + 1);
  return SetPixel(context, x, y, color);
}

struct StandIn {
  std::string_view name;
  ULONG_PTR function;
};

template <class Function>
StandIn stand_in(std::string_view name, Function* function) {
  return {name, reinterpret_cast<ULONG_PTR>(function)};
}

const std::array kStandIns = {
    stand_in("CreateBitmap", create_bitmap), stand_in("CreateCompatibleDC", create_compatible_dc),
    stand_in("SelectObject", select_object), stand_in("BitBlt", bit_blt),
    stand_in("DeleteDC", delete_dc),         stand_in("DeleteObject", delete_object),
    stand_in(kSetPixel, set_pixel),
};

ULONG_PTR stand_in_for(std::string_view name) {
  for (const StandIn& candidate : kStandIns) {
    if (candidate.name == name) return candidate.function;
  }
  throw std::runtime_error("KORVEX32.dll imports " + std::string(name) + " from GDI, which cannot be traced");
}

}  // namespace

GdiTrace::GdiTrace(Reach reach_of_surface) : imports_("GDI32.dll", stand_in_for) {
  entries.clear();
  forgotten = false;
  reach = std::move(reach_of_surface);
}

std::vector<std::string> GdiTrace::operations() {
  if (forgotten) throw std::bad_alloc();
  std::vector<std::string> names;
  for (const Entry& entry : entries) {
    std::string name(entry.name);
    if (entry.name == kSetPixel) name.append("*").append(std::to_string(entry.repeats));
    names.push_back(std::move(name));
  }
  return names;
}

}  // namespace korvex::cli::call
