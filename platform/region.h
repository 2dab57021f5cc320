// region.h: regions of the integer lattice, bounded by a closed ring.
//
// Inside is what the ring winds around any number of times but none. A region
// takes the lattice points on its edges of low X and low Y and leaves those on
// its edges of high X and high Y: neighbours that share an edge share no point.
// Exact for coordinates anywhere in 32 bits, without floating point.
#pragma once

#include <cstdint>

#include "frame/export.h"

namespace orv2_geo {

struct LatticePoint {
  std::int32_t x;
  std::int32_t y;
};

/// What the edge from `a` to `b` adds to the number of times that a ring winds
/// around `point`: 1 when it rises past the point's row on the side of high X,
/// -1 when it falls past it there, 0 otherwise. (Winding number.)
ORV2_PUBLIC int winding_of_edge(LatticePoint point, LatticePoint a, LatticePoint b) noexcept;

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
