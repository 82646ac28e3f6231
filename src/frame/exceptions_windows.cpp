// Exceptions without memory, and a DLL that leaves nothing behind when it goes.
#include "frame/exceptions.hpp"

#include <windows.h>

namespace __gnu_cxx {
void __freeres();  // frees what libstdc++ keeps for exceptions when memory runs out
}

namespace {

DWORD slot = TLS_OUT_OF_INDEXES;

}  // namespace

namespace korvex::frame {

ExceptionRecord::ExceptionRecord() : before_(TlsGetValue(slot)), ok_(TlsSetValue(slot, &record_) != 0) {}

ExceptionRecord::~ExceptionRecord() {
  TlsSetValue(slot, before_);
}

}  // namespace korvex::frame

// These take the place of libstdc++'s own.
extern "C" __cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals() noexcept {
  return static_cast<__cxa_eh_globals*>(TlsGetValue(slot));
}
extern "C" __cxxabiv1::__cxa_eh_globals* __cxxabiv1::__cxa_get_globals_fast() noexcept {
  return __cxa_get_globals();
}

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, void* program_ends) {
  if (reason == DLL_PROCESS_ATTACH) {
    slot = TlsAlloc();
    return slot != TLS_OUT_OF_INDEXES;
  }
  if (reason == DLL_PROCESS_DETACH && program_ends == nullptr) {
    TlsFree(slot);
    __gnu_cxx::__freeres();
  }
  return TRUE;
}
