// refused_memory.h: lets a test refuse the n-th allocation.
#pragma once

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
};

/// Allocations not yet given back.
long allocations_in_use() noexcept;

}  // namespace orv2_geo::testing_support
