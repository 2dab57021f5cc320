#include "orv2_geo/frame/memory.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>

namespace orv2_geo {

void ask_for_huge_pages([[maybe_unused]] void* memory,
                        [[maybe_unused]] std::size_t bytes) noexcept {
#if defined(MADV_HUGEPAGE)
  constexpr std::size_t a_lot = std::size_t{2} << 20;  // a huge page of most machines
  if (bytes < a_lot) return;
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  const std::size_t before = (page - reinterpret_cast<std::uintptr_t>(memory) % page) % page;
  char* const first = static_cast<char*>(memory) + before;
  // What the system makes of it does not matter.
  static_cast<void>(madvise(first, (bytes - before) / page * page, MADV_HUGEPAGE));
#endif
}

}  // namespace orv2_geo
