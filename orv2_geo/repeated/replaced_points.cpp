#include "orv2_geo/repeated/replaced_points.h"

#include <algorithm>
#include <new>
#include <utility>

namespace orv2_geo::repeated {

ReplacedPoints::ReplacedPoints(std::int32_t points)
    : points_(points),
      replaced_(static_cast<std::size_t>(points) / 64 + 1),
      pairs_(buffer_if_any<std::uint64_t>(static_cast<std::size_t>(points))) {
  if (!pairs_) throw std::bad_alloc();
}

std::int32_t ReplacedPoints::number(std::int32_t* list, std::int32_t* numbers) const noexcept {
  const std::int32_t at_0 = std::exchange(numbers[no_point], 0);
  list[0] = 0;
  std::int32_t left = 0;
  for (std::int32_t p = 1; p <= points_; ++p) {
    const auto at = static_cast<std::size_t>(p);
    list[left + 1] = p;  // to stay or to be overwritten
    left += static_cast<std::int32_t>(~replaced_[at / 64] >> at % 64 & 1);
    numbers[p] = left;
  }
  std::fill(list + left + 1, list + points_ + 1, 0);
  // Backwards, so that who stands for a point in the end comes first.
  for (std::size_t k = count_; k-- > 0;) {
    numbers[static_cast<std::uint32_t>(pairs_[k])] = numbers[pairs_[k] >> 32];
  }
  numbers[no_point] = at_0;
  return left;
}

}  // namespace orv2_geo::repeated
