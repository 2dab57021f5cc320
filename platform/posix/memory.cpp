#include "frame/memory.h"

#include <sys/mman.h>

namespace orv2_geo {

#if defined(MADV_HUGEPAGE)

std::size_t large_page() noexcept { return std::size_t{2} << 20; }  // that of most machines

void ask_for_large_pages(void* memory, std::size_t bytes) noexcept {
  // What the system makes of it does not matter.
  static_cast<void>(madvise(memory, bytes, MADV_HUGEPAGE));
}

#else

std::size_t large_page() noexcept { return 0; }

void ask_for_large_pages(void*, std::size_t) noexcept {}

#endif

}  // namespace orv2_geo
