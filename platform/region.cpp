#include "platform/region.h"

#include <algorithm>

namespace orv2_geo {

namespace {

// a - b of two numbers of 32 bits with a >= b: below 2^32.
std::uint64_t span(std::int32_t a, std::int32_t b) noexcept {
  return static_cast<std::uint64_t>(std::int64_t{a} - b);
}

// Whether the rising edge from `low` to `high` meets the row of `point`, which
// it straddles, strictly on the side of high X. The products are of two factors
// below 2^32 and fit 64 bits without a sign.
bool meets_beyond(LatticePoint point, LatticePoint low, LatticePoint high) noexcept {
  if (point.x < std::min(low.x, high.x)) return true;
  if (point.x >= std::max(low.x, high.x)) return false;
  const std::uint64_t risen = span(point.y, low.y);
  const std::uint64_t height = span(high.y, low.y);
  if (low.x < high.x) return span(high.x, low.x) * risen > span(point.x, low.x) * height;
  return span(low.x, high.x) * risen < span(low.x, point.x) * height;
}

}  // namespace

int winding_of_edge(LatticePoint point, LatticePoint a, LatticePoint b) noexcept {
  // A row belongs to the edges that start on it and not to those that end on it.
  const bool a_above = a.y > point.y;
  const bool b_above = b.y > point.y;
  if (a_above == b_above) return 0;
  if (b_above) return meets_beyond(point, a, b) ? 1 : 0;
  return meets_beyond(point, b, a) ? -1 : 0;
}

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
