// near_ring.h: whether a ring winds around a point that is near all its vertices.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "orv2_geo/frame/number_pairs.h"
#include "orv2_geo/platform/vertex_block.h"

namespace orv2_geo::vertices {

enum class Place : std::uint8_t { outside, inside, unknown };

/// A point and the ring around it in whole hundredths, walked two vertices at a time in doubles:
/// nothing that is hard to foresee is asked. Of vertices less than 2^26 hundredths (671 km) away
/// from the point a product of two coordinates is below 2^52 and a cross product below 2^53, so
/// that each is exact.
class NearRing {
 public:
  NearRing(double x, double y) noexcept
      : near_zero_(std::abs(scale * x) < furthest_point && std::abs(scale * y) < furthest_point),
        column_(pair_of(scale * x + rounding)),
        row_(pair_of(scale * y + rounding)) {}

  /// Of a ring of one vertex or more; unknown where one of them is not near, or the point is too
  /// far from zero.
  [[gnu::always_inline]] Place place(const double* xs, const double* ys,
                                     std::size_t count) const noexcept {
    Walk walk{away(pair_of(xs[count - 1]), column_), away(pair_of(ys[count - 1]), row_), {}, {}};
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
      walk.go_on(away(pair_at(xs + i), column_), away(pair_at(ys + i), row_));
    }
    // The last one of an odd number twice: an edge of no length is none.
    if (i < count) walk.go_on(away(pair_of(xs[i]), column_), away(pair_of(ys[i]), row_));
    const auto far = std::bit_cast<PairBits>(walk.far);
    if (!near_zero_ || (far[0] | far[1]) != 0) return Place::unknown;
    return walk.winding[0] + walk.winding[1] != 0 ? Place::inside : Place::outside;
  }

 private:
  static constexpr double furthest = 67108864.0;  // 2^26
  // 2^30: with `furthest` more a coordinate still fits 32 bits.
  static constexpr double furthest_point = 1073741824.0;
  // 3 2^51: numbers of this size have no digits after the point, so that a sum with it is
  // rounded to the nearest whole number, ties to the even one.
  static constexpr double rounding = 6755399441055744.0;

  // Two vertices after the other, as seen from the point.
  struct Walk {
    NumberPair x, y;
    UpperHalves far;
    PairBits winding;

    [[gnu::always_inline]] void go_on(NumberPair next_x, NumberPair next_y) noexcept {
      far |= sizes_of(next_x, next_y) >= size_of(furthest);
      winding += of_edges(joined(x, next_x), joined(y, next_y), next_x, next_y);
      x = next_x;
      y = next_y;
    }
  };

  static NumberPair away(NumberPair coordinates, NumberPair origin) noexcept {
    return (scale * coordinates + rounding) - origin;
  }

  // The starts of two edges that end in `pair`.
  static NumberPair joined(NumberPair before, NumberPair pair) noexcept {
    return __builtin_shufflevector(before, pair, 1, 2);
  }

  // What two edges from (ax, ay) to (bx, by) add, as winding_of_edge tells it of the point (0, 0):
  // a rising one 1 where the cross product is positive, a falling one -1 where it is negative.
  static PairBits of_edges(NumberPair ax, NumberPair ay, NumberPair bx, NumberPair by) noexcept {
    constexpr std::uint64_t sign = std::uint64_t{1} << 63U;
    const PairBits a_above = where(ay > 0.0);
    const PairBits b_above = where(by > 0.0);
    const auto cross = std::bit_cast<PairBits>(ax * by - bx * ay);
    const auto ahead = std::bit_cast<NumberPair>(cross ^ (~b_above & sign));
    return (a_above - b_above) & where(ahead > 0.0);  // a mask that is true is -1
  }

  bool near_zero_;
  NumberPair column_;
  NumberPair row_;
};

}  // namespace orv2_geo::vertices
