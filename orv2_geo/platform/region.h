// region.h: regions of the integer lattice, bounded by a closed ring.
//
// Inside is what the ring winds around any number of times but none. A region
// takes the lattice points on its edges of low X and low Y and leaves those on
// its edges of high X and high Y: neighbours that share an edge share no point.
// Exact for coordinates anywhere in 32 bits, without floating point.
#pragma once

#include <algorithm>
#include <cstdint>

#include "orv2_geo/frame/export.h"

namespace orv2_geo {

struct LatticePoint {
  std::int32_t x;
  std::int32_t y;
};

namespace region {

// a - b of two numbers of 32 bits with a >= b: below 2^32.
inline std::uint64_t span(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::uint64_t>(std::int64_t{a} - b);
}

// Whether the rising edge from `low` to `high` meets the row of `point`, which
// it straddles, strictly on the side of high X. Of an edge below 2^31 in height the
// products, of a factor within 2^32 either way, fit 64 bits with their sign, and nothing
// hard to foresee is asked; of a higher one they are of two factors below 2^32, and fit
// without a sign.
inline bool meets_beyond(LatticePoint point, LatticePoint low, LatticePoint high) noexcept {
  const std::int64_t rise = std::int64_t{high.y} - low.y;
  if (rise < std::int64_t{1} << 31U) [[likely]] {
    const std::int64_t ahead = std::int64_t{point.x} - low.x;
    const std::int64_t run = std::int64_t{high.x} - low.x;
    return ahead * rise < run * (std::int64_t{point.y} - low.y);
  }
  if (point.x < std::min(low.x, high.x)) return true;
  if (point.x >= std::max(low.x, high.x)) return false;
  const std::uint64_t risen = span(point.y, low.y);
  const std::uint64_t height = span(high.y, low.y);
  if (low.x < high.x) return span(high.x, low.x) * risen > span(point.x, low.x) * height;
  return span(low.x, high.x) * risen < span(low.x, point.x) * height;
}

}  // namespace region

/// What the edge from `a` to `b` adds to the number of times that a ring winds
/// around `point`: 1 when it rises past the point's row on the side of high X,
/// -1 when it falls past it there, 0 otherwise. (Winding number.)
inline int winding_of_edge(LatticePoint point, LatticePoint a, LatticePoint b) noexcept {
  // A row belongs to the edges that start on it and not to those that end on it.
  const bool a_above = a.y > point.y;
  const bool b_above = b.y > point.y;
  if (a_above == b_above) return 0;
  const LatticePoint low = b_above ? a : b;
  const LatticePoint high = b_above ? b : a;
  const int turn = b_above ? 1 : -1;
  return region::meets_beyond(point, low, high) ? turn : 0;
}

/// The region inside a ring, as far as one point can tell. The vertices come one
/// by one and are not kept, so a ring of any length takes no memory.
class ORV2_PUBLIC RegionAtPoint {
 public:
  explicit RegionAtPoint(LatticePoint point) noexcept : point_(point) {}

  /// The ring's next vertex.
  void add(LatticePoint vertex) noexcept;

  /// Fewer than two vertices make no region.
  bool exists() const noexcept { return vertices_ >= 2; }

  /// Whether the point is in the region; the ring is closed from its last vertex
  /// to its first. False where there is no region.
  bool holds_point() const noexcept;

 private:
  LatticePoint point_;
  LatticePoint first_{};
  LatticePoint last_{};
  std::int64_t vertices_ = 0;
  std::int64_t winding_ = 0;
};

}  // namespace orv2_geo
