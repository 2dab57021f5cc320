#include "orv2_geo/platform/region.h"

namespace orv2_geo {

void RegionAtPoint::add(LatticePoint vertex) noexcept {
  if (vertices_ == 0) {
    first_ = vertex;
  } else {
    winding_ += winding_of_edge(point_, last_, vertex);
  }
  last_ = vertex;
  ++vertices_;
}

bool RegionAtPoint::holds_point() const noexcept {
  return exists() && winding_ + winding_of_edge(point_, last_, first_) != 0;
}

}  // namespace orv2_geo
