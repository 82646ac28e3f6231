#include "call/trace_gdi.hpp"

#include <windows.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string_view>

namespace korvex::cli::call {
namespace {

struct Entry {
  std::string_view name;
  std::int64_t repeats;
};

std::vector<Entry> entries;

constexpr std::string_view kSetPixel = "SetPixel";

void note(std::string_view name) {
  if (name == kSetPixel && !entries.empty() && entries.back().name == kSetPixel) {
    ++entries.back().repeats;
  } else {
    entries.push_back({name, 1});
  }
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

// ---- The DLL's import address table ----

/// The loaded DLL: what its headers point to lies at an offset from where the headers lie.
class Image {
 public:
  Image() : base_(reinterpret_cast<std::byte*>(GetModuleHandleA("KORVEX32.dll"))) {
    if (base_ == nullptr) throw std::runtime_error("KORVEX32.dll is not loaded");
  }

  template <class Part>
  [[nodiscard]] Part* at(std::size_t offset) const {
    return reinterpret_cast<Part*>(base_ + offset);
  }

  /// The table of what the DLL imports from GDI.
  [[nodiscard]] const IMAGE_IMPORT_DESCRIPTOR* gdi_imports() const {
    const auto* const headers =
        at<const IMAGE_NT_HEADERS>(static_cast<std::size_t>(at<const IMAGE_DOS_HEADER>(0)->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* imports = at<const IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
    while (imports->Name != 0 && lstrcmpiA(at<const char>(imports->Name), "GDI32.dll") != 0) ++imports;
    if (imports->Name == 0) throw std::runtime_error("KORVEX32.dll imports nothing from GDI");
    return imports;
  }

 private:
  std::byte* base_;
};

struct Slot {
  ULONG_PTR* address;
  ULONG_PTR original;
};

std::vector<Slot> replaced;

void write(ULONG_PTR* address, ULONG_PTR function) {
  DWORD before = 0;
  if (VirtualProtect(address, sizeof *address, PAGE_READWRITE, &before) == 0) {
    throw std::runtime_error("the imports of KORVEX32.dll cannot be written");
  }
  *address = function;
  VirtualProtect(address, sizeof *address, before, &before);
}

void restore() {
  for (const Slot& slot : replaced) write(slot.address, slot.original);
  replaced.clear();
}

}  // namespace

GdiTrace::GdiTrace() {
  entries.clear();
  const Image image;
  const IMAGE_IMPORT_DESCRIPTOR* const imports = image.gdi_imports();
  const auto* name = image.at<const IMAGE_THUNK_DATA>(imports->OriginalFirstThunk);
  auto* function = image.at<IMAGE_THUNK_DATA>(imports->FirstThunk);
  for (; name->u1.AddressOfData != 0; ++name, ++function) {
    const auto* const named = image.at<const IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData);
    const ULONG_PTR replacement = stand_in_for(reinterpret_cast<const char*>(named->Name));
    auto* const address = reinterpret_cast<ULONG_PTR*>(&function->u1.Function);
    replaced.push_back({address, *address});
    write(address, replacement);
  }
}

GdiTrace::~GdiTrace() {
  restore();
}

std::vector<std::string> GdiTrace::operations() const {
  std::vector<std::string> names;
  for (const Entry& entry : entries) {
    std::string name(entry.name);
    if (entry.name == kSetPixel) name.append("*").append(std::to_string(entry.repeats));
    names.push_back(std::move(name));
  }
  return names;
}

}  // namespace korvex::cli::call
