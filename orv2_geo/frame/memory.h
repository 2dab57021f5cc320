// memory.h: the library's heap, where a refusal is a RunFailure.
#pragma once

#include <cstddef>
#include <memory>
#include <new>

namespace orv2_geo {

/// `bytes` of zeroed memory. Failure 7 when there is none.
void* obtain_zeroed(std::size_t bytes);

/// `bytes` of memory with any content. Failure 7 when there is none.
void* obtain(std::size_t bytes);

/// The same; null when there is none.
void* obtain_if_any(std::size_t bytes) noexcept;

/// Asks the system to lend this memory in huge pages, as all of it is about to be
/// used. With little memory nothing happens.
void ask_for_huge_pages(void* memory, std::size_t bytes) noexcept;

/// Gives back what one of the three lent; null is harmless.
void give_back(void* memory) noexcept;

struct GiveBack {
  void operator()(void* memory) const noexcept { give_back(memory); }
};

/// Memory for elements of a type without a constructor, with any content.
template <class T>
using Buffer = std::unique_ptr<T[], GiveBack>;

/// Null when there is no memory.
template <class T>
Buffer<T> buffer_if_any(std::size_t count) noexcept {
  return Buffer<T>(static_cast<T*>(obtain_if_any(count * sizeof(T))));
}

/// What the work gives, or nothing where the memory that it needs is refused.
template <class Work>
auto if_memory_allows(Work&& work) -> decltype(work()) {
  try {
    return work();
  } catch (const std::bad_alloc&) {
    return {};
  }
}

}  // namespace orv2_geo
