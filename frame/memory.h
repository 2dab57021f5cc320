// memory.h: the library's heap, where a refusal is a RunFailure.
#pragma once

#include <cstddef>
#include <memory>

namespace orv2_geo {

/// `bytes` of zeroed memory. Failure 7 when there is none.
void* obtain_zeroed(std::size_t bytes);

/// `bytes` of memory with any content. Failure 7 when there is none.
void* obtain(std::size_t bytes);

/// The same; null when there is none. A lot of memory comes in large pages where
/// the system lends them: a first touch of many small ones costs more than most of
/// the work on them.
void* obtain_if_any(std::size_t bytes) noexcept;

/// Gives back what one of these lent, so many bytes; null is harmless.
void give_back(void* memory, std::size_t bytes) noexcept;

/// How large the large pages are that the system may lend; 0 where it lends none.
std::size_t large_page() noexcept;

/// Asks for large pages for memory that begins and ends with one, and that is about
/// to be used.
void ask_for_large_pages(void* memory, std::size_t bytes) noexcept;

struct GiveBack {
  std::size_t bytes = 0;
  void operator()(void* memory) const noexcept { give_back(memory, bytes); }
};

/// Room for elements of a type without a constructor, with any content.
template <class T>
using Room = std::unique_ptr<T[], GiveBack>;

/// Null when there is no memory.
template <class T>
Room<T> room_if_any(std::size_t count) noexcept {
  const std::size_t bytes = count * sizeof(T);
  return Room<T>(static_cast<T*>(obtain_if_any(bytes)), {bytes});
}

}  // namespace orv2_geo
