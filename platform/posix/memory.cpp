#include "frame/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace orv2_geo {

void announce_use([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(MADV_HUGEPAGE)
  constexpr std::size_t a_lot = 2 << 20;  // a large page of most machines
  if (bytes < a_lot) return;
  const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
  const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(memory);
  const std::uintptr_t first = (start + page - 1) / page * page;
  const std::uintptr_t last = (start + bytes) / page * page;
  // What the system thinks of it does not matter.
  static_cast<void>(madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE));
#endif
}

}  // namespace orv2_geo
