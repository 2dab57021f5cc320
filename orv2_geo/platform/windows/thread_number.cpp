// The compiler's own data of a thread takes a call and a lock to reach here; a slot of the
// system's does not.
#include "orv2_geo/platform/thread_number.h"

#include <atomic>
#include <cstdint>

#include "orv2_geo/platform/windows/slot.h"

namespace orv2_geo {

namespace {

const Slot slot;

std::uintptr_t number_this_thread() noexcept {
  static std::atomic<std::uintptr_t> threads{0};
  const std::uintptr_t number = ++threads;
  slot.set(reinterpret_cast<void*>(number));
  return number;
}

}  // namespace

std::uint64_t this_thread_number() noexcept {
  const auto number = reinterpret_cast<std::uintptr_t>(slot.get());
  return number != 0 ? number : number_this_thread();
}

}  // namespace orv2_geo
