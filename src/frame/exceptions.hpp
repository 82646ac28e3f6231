// What a call's exceptions need besides themselves, so that the one that says that memory ran out needs none.
#pragma once

#if defined(_WIN32)
#include <cxxabi.h>

/// The Itanium C++ ABI's record of a thread's exceptions (2.2.2).
struct __cxxabiv1::__cxa_eh_globals {
  void* caught_exceptions = nullptr;
  unsigned int uncaught_exceptions = 0;
};
#endif

namespace korvex::frame {

#if defined(_WIN32)

/// Holds the thread's record while a call runs. GCC's own comes from the heap with a thread's first
/// exception, and where the heap is empty that ends the program.
class ExceptionRecord {
 public:
  ExceptionRecord();
  ~ExceptionRecord();
  ExceptionRecord(const ExceptionRecord&) = delete;
  ExceptionRecord& operator=(const ExceptionRecord&) = delete;

  /// False when not even the thread's pointer to it could be kept: then nothing may throw.
  [[nodiscard]] bool ok() const { return ok_; }

 private:
  __cxxabiv1::__cxa_eh_globals record_;
  void* before_;
  bool ok_;
};

#else

struct ExceptionRecord {
  [[nodiscard]] static bool ok() { return true; }
};

#endif

}  // namespace korvex::frame
