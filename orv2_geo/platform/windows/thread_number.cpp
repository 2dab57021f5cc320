// The compiler's own data of a thread takes a call and a lock to reach here; a slot of the
// system's does not.
#include "orv2_geo/platform/thread_number.h"

#include <windows.h>

#include <atomic>

namespace orv2_geo {

namespace {

// Taken when the library is loaded and given back when it is unloaded.
class Slot {
 public:
  Slot() noexcept : index_(TlsAlloc()) {}
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  ~Slot() { TlsFree(index_); }

  std::uintptr_t get() const noexcept {
    return reinterpret_cast<std::uintptr_t>(TlsGetValue(index_));
  }
  void set(std::uintptr_t number) const noexcept {
    TlsSetValue(index_, reinterpret_cast<void*>(number));
  }

 private:
  DWORD index_;
};

const Slot slot;

std::uintptr_t number_this_thread() noexcept {
  static std::atomic<std::uintptr_t> threads{0};
  const std::uintptr_t number = ++threads;
  slot.set(number);
  return number;
}

}  // namespace

std::uint64_t this_thread_number() noexcept {
  const std::uintptr_t number = slot.get();
  return number != 0 ? number : number_this_thread();
}

}  // namespace orv2_geo
