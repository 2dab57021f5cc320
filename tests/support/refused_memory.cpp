#include "tests/support/refused_memory.h"

#include <malloc.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

using namespace orv2_geo::testing_support;

constexpr auto most_at_once = static_cast<std::size_t>(0x7fffffffff & SIZE_MAX);
thread_local std::size_t largest = most_at_once;

std::size_t size_of(void* memory) noexcept {
#if defined(_WIN32)
  return _msize(memory);
#else
  return malloc_usable_size(memory);
#endif
}

thread_local long left_to_pass = -1;
thread_local bool refused = false;
thread_local bool counted = true;
std::atomic<long> in_use{0};
std::atomic<std::size_t> bytes_in_use{0};
std::atomic<std::size_t> most_bytes{0};
std::size_t bytes_at_start = 0;

void* obtained(std::size_t bytes) noexcept {
  if (allocation_is_refused()) return nullptr;
  void* memory = bytes > largest ? nullptr : std::malloc(bytes != 0 ? bytes : 1);
  if (memory != nullptr) allocation_made(size_of(memory));
  return memory;
}

void given_back(void* memory) noexcept {
  if (memory != nullptr) allocation_given_back(size_of(memory));
  std::free(memory);
}

}  // namespace

void* operator new(std::size_t bytes) {
  void* memory = obtained(bytes);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t bytes) { return operator new(bytes); }
void* operator new(std::size_t bytes, const std::nothrow_t&) noexcept { return obtained(bytes); }
void* operator new[](std::size_t bytes, const std::nothrow_t&) noexcept { return obtained(bytes); }
void operator delete(void* memory) noexcept { given_back(memory); }
void operator delete[](void* memory) noexcept { given_back(memory); }
void operator delete(void* memory, std::size_t) noexcept { given_back(memory); }
void operator delete[](void* memory, std::size_t) noexcept { given_back(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { given_back(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { given_back(memory); }

namespace orv2_geo::testing_support {

bool allocation_is_refused() noexcept {
  if (!counted) return false;
  if (left_to_pass == 0) {
    left_to_pass = -1;
    refused = true;
    return true;
  }
  if (left_to_pass > 0) --left_to_pass;
  return false;
}

void allocation_made(std::size_t bytes) noexcept {
  ++in_use;
  const std::size_t now = bytes_in_use += bytes;
  if (now > most_bytes) most_bytes = now;
}

void allocation_given_back(std::size_t bytes) noexcept {
  --in_use;
  bytes_in_use -= bytes;
}

RefusedAllocation::RefusedAllocation(long let_pass) noexcept {
  left_to_pass = let_pass;
  refused = false;
}
RefusedAllocation::~RefusedAllocation() {
  left_to_pass = -1;
  counted = true;
}

bool RefusedAllocation::happened() noexcept { return refused; }

void RefusedAllocation::count(bool counted_now) noexcept { counted = counted_now; }

LargestAllocation::LargestAllocation(std::size_t bytes) noexcept { largest = bytes; }
LargestAllocation::~LargestAllocation() { largest = most_at_once; }

long allocations_in_use() noexcept { return in_use; }

void peak::start() noexcept { most_bytes = bytes_at_start = bytes_in_use; }
std::size_t peak::bytes() noexcept { return most_bytes - bytes_at_start; }

}  // namespace orv2_geo::testing_support
