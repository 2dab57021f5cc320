#include "frame/memory.h"

#include <cstring>
#include <new>

#include "frame/run_failure.h"

namespace orv2_geo {

void* obtain(std::size_t bytes) {
  void* memory = ::operator new(bytes, std::nothrow);
  if (memory == nullptr) raise(failure::out_of_memory);
  announce_use(memory, bytes);
  return memory;
}

void* obtain_zeroed(std::size_t bytes) { return std::memset(obtain(bytes), 0, bytes); }

void give_back(void* memory) noexcept { ::operator delete(memory); }

}  // namespace orv2_geo
