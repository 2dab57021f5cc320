// slot.h: a pointer a thread, without a call and a lock of the compiler's own data.
#pragma once

#include <windows.h>

namespace orv2_geo {

/// Taken when the library is loaded and given back when it is unloaded. Null on a thread
/// that has set nothing.
class Slot {
 public:
  Slot() noexcept : index_(TlsAlloc()) {}
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() { TlsFree(index_); }

  void* get() const noexcept { return TlsGetValue(index_); }
  void set(void* content) const noexcept { TlsSetValue(index_, content); }

 private:
  DWORD index_;
};

}  // namespace orv2_geo
