// refused_memory.h: lets a test refuse the n-th allocation, and measures.
#pragma once

#include <cstddef>

namespace orv2_geo::testing_support {

/// From now on `let_pass` allocations succeed and the one after is refused,
/// once. Ends with the object.
class RefusedAllocation {
 public:
  explicit RefusedAllocation(long let_pass) noexcept;
  ~RefusedAllocation();
  RefusedAllocation(const RefusedAllocation&) = delete;
  RefusedAllocation& operator=(const RefusedAllocation&) = delete;

  /// Whether an allocation has been refused so far.
  static bool happened() noexcept;

  /// Whether this thread's allocations are counted: not while the test itself runs, in
  /// the middle of what it tries. Counted at first.
  static void count(bool counted) noexcept;
};

/// From now on no allocation of more bytes than these succeeds. Ends with the object.
class LargestAllocation {
 public:
  explicit LargestAllocation(std::size_t bytes) noexcept;
  ~LargestAllocation();
  LargestAllocation(const LargestAllocation&) = delete;
  LargestAllocation& operator=(const LargestAllocation&) = delete;
};

// For what hands out memory in the tests.

/// Whether the allocation that is asked for now is the one to be refused.
bool allocation_is_refused() noexcept;
void allocation_made(std::size_t bytes) noexcept;
void allocation_given_back(std::size_t bytes) noexcept;

/// Allocations not yet given back.
long allocations_in_use() noexcept;

namespace peak {
void start() noexcept;
std::size_t bytes() noexcept;
}  // namespace peak

/// The most bytes in use at once, beyond those in use now, while `work` runs.
/// For one test at a time.
template <class Work>
std::size_t peak_bytes_of(Work&& work) {
  peak::start();
  work();
  return peak::bytes();
}

}  // namespace orv2_geo::testing_support
