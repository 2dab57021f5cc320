// replaced_points.h: points that another one stands for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orv2_geo/frame/memory.h"

namespace orv2_geo::repeated {

/// Which points others stand for, as a sweep finds it, and the numbers that follow.
class ReplacedPoints {
 public:
  /// Of the points 1 to `points`. Throws std::bad_alloc.
  explicit ReplacedPoints(std::int32_t points);

  /// From now on `survivor` stands for a point that has not been replaced. Later it
  /// may be replaced itself.
  void replace(std::int32_t point, std::int32_t survivor) noexcept {
    const auto at = static_cast<std::size_t>(point);
    replaced_[at / 64] |= std::uint64_t{1} << at % 64;
    pairs_[count_++] =
        static_cast<std::uint64_t>(survivor) << 32 | static_cast<std::uint32_t>(point);
  }

  /// The point is to have no number.
  void leave_out(std::int32_t point) noexcept { replace(point, no_point); }

  /// Lists the points that are left and numbers them from 1; a point replaced gets
  /// the number of the one that stands for it in the end, and one left out 0. Both
  /// arrays have the subscripts 0 to `points`; the list has 0 at 0 and above its
  /// end, and numbers[0] stays. Answers with how many points are left.
  std::int32_t number(std::int32_t* list, std::int32_t* numbers) const noexcept;

 private:
  static constexpr std::int32_t no_point = 0;

  std::int32_t points_;
  std::vector<std::uint64_t> replaced_;  // a bit a point
  Buffer<std::uint64_t> pairs_;          // who stands for a point above that point
  std::size_t count_ = 0;
};

}  // namespace orv2_geo::repeated
