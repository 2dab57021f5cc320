#include "frame/memory.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "frame/run_failure.h"

namespace orv2_geo {

namespace {

// How much of a block is to be in large pages: at most a quarter of the last one is
// beyond what was asked for, and less is left to small ones.
std::size_t in_large_pages(std::size_t bytes) noexcept {
  const std::size_t page = large_page();
  return page == 0 ? 0 : (bytes / (page / 4) + 1) / 4 * page;
}

}  // namespace

void* obtain_if_any(std::size_t bytes) noexcept {
  const std::size_t in_large = in_large_pages(bytes);
  if (in_large == 0) return ::operator new(bytes, std::nothrow);
  const std::align_val_t alignment{large_page()};
  void* const memory = ::operator new(std::max(bytes, in_large), alignment, std::nothrow);
  if (memory != nullptr) ask_for_large_pages(memory, in_large);
  return memory;
}

void* obtain(std::size_t bytes) {
  void* const memory = obtain_if_any(bytes);
  if (memory == nullptr) raise(failure::out_of_memory);
  return memory;
}

void* obtain_zeroed(std::size_t bytes) { return std::memset(obtain(bytes), 0, bytes); }

void give_back(void* memory, std::size_t bytes) noexcept {
  if (in_large_pages(bytes) == 0) {
    ::operator delete(memory);
  } else {
    ::operator delete (memory, std::align_val_t{large_page()});
  }
}

}  // namespace orv2_geo
