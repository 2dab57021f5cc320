// exchange_sort.h: the order in which a profile's points end.
#pragma once

#include <cstdint>

#include "frame/geo_arrays.h"

namespace orv2_geo::terrain {

/// Sorts the points 1 to `points` by distance as a sort does that exchanges
/// neighbours in passes, always at full length, and exchanges them at equality
/// too: this fixes the order in which points of equal distance end. What it
/// leaves is found in n log n steps; the passes themselves are made only where
/// they can fail or memory is refused.
/// Failures: 6 at a distance that is NaN, 9 at an element that is missing; the
/// exchanges before it are made.
void exchange_sort(std::int32_t points, DoubleArray& distances, DoubleArray& elevations);

}  // namespace orv2_geo::terrain
