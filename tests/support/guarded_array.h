// guarded_array.h: an array of a host's whose neighbours in memory cannot be touched.
#pragma once

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <type_traits>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"

namespace orv2_geo::testing_support {

/// Holds the elements of a library's array in pages of its own: flush with the page behind
/// them, or with the one in front, both of which end the process that reads or writes there.
template <class T>
class GuardedArray final : public ArrayOwner {
  static_assert(std::is_trivially_copyable_v<T>);

 public:
  enum class Flush { with_the_page_behind, with_the_page_in_front };

  GuardedArray(Flush side, std::int32_t lower, const std::vector<T>& values) : side_(side) {
    void* const pages =
        mmap(nullptr, guard + room + guard, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) throw std::bad_alloc();
    pages_ = static_cast<char*>(pages);
    if (mprotect(pages_ + guard, room, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    place(lower, static_cast<std::uint32_t>(values.size()), values);
    array.adopt(*this, elements_, lower_, count_);
  }
  ~GuardedArray() override {
    array.release();
    munmap(pages_, guard + room + guard);
  }
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
  static constexpr std::size_t guard = 1 << 16;
  static constexpr std::size_t room = 1 << 16;

  T* place(std::int32_t lower, std::uint32_t count, const std::vector<T>& values) {
    if (count > room / sizeof(T)) raise(failure::out_of_memory);
    char* const first = pages_ + guard;
    elements_ = reinterpret_cast<T*>(
        side_ == Flush::with_the_page_in_front ? first : first + room - count * sizeof(T));
    lower_ = lower;
    count_ = count;
    std::copy(values.begin(), values.end(), elements_);
    return elements_;
  }

  Flush side_;
  char* pages_ = nullptr;
  T* elements_ = nullptr;
  std::int32_t lower_ = 0;
  std::uint32_t count_ = 0;
};

}  // namespace orv2_geo::testing_support
