// guarded_array.h: an array of a host's whose neighbours in memory cannot be touched.
#pragma once

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/mman.h>
#endif

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"

namespace orv2_geo::testing_support {

/// Pages of memory between two others that cannot be touched.
class GuardedPages {
 public:
  static constexpr std::size_t room = 1 << 16;

  GuardedPages() {
    if (pages_ == nullptr || !open()) throw std::bad_alloc();
  }
  GuardedPages(const GuardedPages&) = delete;
  GuardedPages& operator=(const GuardedPages&) = delete;

#if defined(_WIN32)
  ~GuardedPages() { VirtualFree(pages_, 0, MEM_RELEASE); }
#else
  ~GuardedPages() { munmap(pages_, guard + room + guard); }
#endif

  char* first() const noexcept { return pages_ + guard; }

 private:
  static constexpr std::size_t guard = 1 << 16;

#if defined(_WIN32)
  static void* closed() noexcept {
    return VirtualAlloc(nullptr, guard + room + guard, MEM_RESERVE, PAGE_NOACCESS);
  }
  bool open() const noexcept {
    return VirtualAlloc(first(), room, MEM_COMMIT, PAGE_READWRITE) != nullptr;
  }
#else
  static void* closed() noexcept {
    void* const pages =
        mmap(nullptr, guard + room + guard, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    return pages != MAP_FAILED ? pages : nullptr;
  }
  bool open() const noexcept { return mprotect(first(), room, PROT_READ | PROT_WRITE) == 0; }
#endif

  char* pages_ = static_cast<char*>(closed());
};

/// Holds the elements of a library's array in pages of its own: flush with the page behind
/// them, or with the one in front, both of which end the process that reads or writes there.
template <class T>
class GuardedArray final : public ArrayOwner {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  enum class Flush { with_the_page_behind, with_the_page_in_front };

  GuardedArray(Flush side, std::int32_t lower, const std::vector<T>& values) : side_(side) {
    place(lower, static_cast<std::uint32_t>(values.size()), values);
    array.adopt(*this, elements_, lower_, count_);
  }
  ~GuardedArray() override { array.release(); }
  GuardedArray(const GuardedArray&) = delete;
  GuardedArray& operator=(const GuardedArray&) = delete;

  void* resize(std::int32_t lower, std::uint32_t count, bool keep) override {
    std::vector<T> values(count);
    for (std::uint32_t i = 0; keep && i < count; ++i) {
      const std::int64_t before = std::int64_t{lower} + i - lower_;
      if (before >= 0 && before < std::int64_t{count_}) values[i] = elements_[before];
    }
    return place(lower, count, values);
  }

  GeoArray<T> array;

 private:
  static constexpr std::size_t room = GuardedPages::room;

  T* place(std::int32_t lower, std::uint32_t count, const std::vector<T>& values) {
    if (count > room / sizeof(T)) raise(failure::out_of_memory);
    char* const first = pages_.first();
    elements_ = reinterpret_cast<T*>(
        side_ == Flush::with_the_page_in_front ? first : first + room - count * sizeof(T));
    lower_ = lower;
    count_ = count;
    std::copy(values.begin(), values.end(), elements_);
    return elements_;
  }

  Flush side_;
  GuardedPages pages_;
  T* elements_ = nullptr;
  std::int32_t lower_ = 0;
  std::uint32_t count_ = 0;
};

}  // namespace orv2_geo::testing_support
