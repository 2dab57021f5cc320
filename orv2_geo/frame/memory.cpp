#include "orv2_geo/frame/memory.h"

#include <cstring>
#include <new>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

void* obtain_if_any(std::size_t bytes) noexcept {
  void* const memory = ::operator new(bytes, std::nothrow);
  if (memory != nullptr) ask_for_huge_pages(memory, bytes);
  return memory;
}

void* obtain(std::size_t bytes) {
  void* const memory = obtain_if_any(bytes);
  if (memory == nullptr) raise(failure::out_of_memory);
  return memory;
}

void* obtain_zeroed(std::size_t bytes) { return std::memset(obtain(bytes), 0, bytes); }

void give_back(void* memory) noexcept { ::operator delete(memory); }

}  // namespace orv2_geo
