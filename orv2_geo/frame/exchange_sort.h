// exchange_sort.h: points sorted by exchanges of neighbours.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "orv2_geo/frame/geo_arrays.h"

namespace orv2_geo {

/// Sorts the points 1 to `points` by the first of their arrays as a sort does that
/// exchanges neighbours in passes, always at full length, and exchanges them at
/// equality too: this fixes the order in which equal points end. The arrays change
/// in their order at each exchange. What the passes leave is found in other ways;
/// they themselves are made only where they can fail or memory is refused. Fewer than
/// two points are left alone.
///
///   |            | best    | usual   | worst   | memory          | stable |
///   |------------|---------|---------|---------|-----------------|--------|
///   | found      | n log n | n log n | n log n | 4 words a point | no     |
///   | the passes | n^2 / 2 | n^2 / 2 | n^2 / 2 | none            | no     |
///
/// Failures: 6 where the first array holds NaN, 9 at an element that is missing;
/// the exchanges before it are made.
void exchange_sort(std::int32_t points, std::initializer_list<DoubleArray*> arrays);

}  // namespace orv2_geo
