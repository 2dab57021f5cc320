// memory.h: the library's heap, where a refusal is a RunFailure.
#pragma once

#include <cstddef>
#include <memory>

namespace orv2_geo {

/// `bytes` of zeroed memory. Failure 7 when there is none.
void* obtain_zeroed(std::size_t bytes);

/// `bytes` of memory with any content. Failure 7 when there is none.
void* obtain(std::size_t bytes);

/// The same; null when there is none.
void* obtain_if_any(std::size_t bytes) noexcept;

/// Tells the system that all of this memory is about to be used, which it may take
/// for a reason to lend it in larger pages. For a lot of memory only; with little,
/// nothing happens.
void announce_use(void* memory, std::size_t bytes) noexcept;

/// Gives back what one of the three lent; null is harmless.
void give_back(void* memory) noexcept;

struct GiveBack {
  void operator()(void* memory) const noexcept { give_back(memory); }
};

/// Room for elements of a type without a constructor, with any content.
template <class T>
using Room = std::unique_ptr<T[], GiveBack>;

/// Null when there is no memory.
template <class T>
Room<T> room_if_any(std::size_t count) noexcept {
  return Room<T>(static_cast<T*>(obtain_if_any(count * sizeof(T))));
}

}  // namespace orv2_geo
