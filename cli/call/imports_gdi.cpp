#include "call/imports_gdi.hpp"

#include <cstdint>
#include <stdexcept>
#include <string>

namespace korvex::cli::call {
namespace {

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

  /// The table of what the DLL imports from `dll`.
  [[nodiscard]] const IMAGE_IMPORT_DESCRIPTOR* imports_from(const char* dll) const {
    const auto* const headers =
        at<const IMAGE_NT_HEADERS>(static_cast<std::size_t>(at<const IMAGE_DOS_HEADER>(0)->e_lfanew));
    const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    const auto* imports = at<const IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
    while (imports->Name != 0 && lstrcmpiA(at<const char>(imports->Name), dll) != 0) ++imports;
    if (imports->Name == 0) throw std::runtime_error(std::string("KORVEX32.dll imports nothing from ") + dll);
    return imports;
  }

 private:
  std::byte* base_;
};

void write(ULONG_PTR* address, ULONG_PTR function) {
  DWORD before = 0;
  if (VirtualProtect(address, sizeof *address, PAGE_READWRITE, &before) == 0) {
    throw std::runtime_error("the imports of KORVEX32.dll cannot be written");
  }
  *address = function;
  VirtualProtect(address, sizeof *address, before, &before);
}

}  // namespace

Imports::Imports(const char* dll, const std::function<ULONG_PTR(std::string_view name)>& stand_in) {
  const Image image;
  const IMAGE_IMPORT_DESCRIPTOR* const imports = image.imports_from(dll);
  const auto* name = image.at<const IMAGE_THUNK_DATA>(imports->OriginalFirstThunk);
  auto* function = image.at<IMAGE_THUNK_DATA>(imports->FirstThunk);
  try {
    for (; name->u1.AddressOfData != 0; ++name, ++function) {
      const auto* const named = image.at<const IMAGE_IMPORT_BY_NAME>(name->u1.AddressOfData);
      const ULONG_PTR replacement = stand_in(reinterpret_cast<const char*>(named->Name));
      if (replacement == 0) continue;
      auto* const address = reinterpret_cast<ULONG_PTR*>(&function->u1.Function);
      replaced_.push_back({address, *address});
      write(address, replacement);
    }
  } catch (...) {
    restore();
    throw;
  }
}

Imports::~Imports() {
  restore();
}

void Imports::restore() {
  for (const Slot& slot : replaced_) write(slot.address, slot.original);
}

}  // namespace korvex::cli::call
