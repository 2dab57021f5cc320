// survey_bench_functions.h: surveying and profile formulas unchecked, out of line.
#pragma once

#include <cstddef>

namespace bench {

// A line from (c[0], c[1]) to (c[2], c[3]).
void bearing_and_distance_plain(const double* c, double& bearing, double& distance);
void point_by_bearing_plain(const double* c, double& x, double& y);

// Two lines: x1 y1 x2 y2 x3 y3 x4 y4. True when they are parallel.
bool line_intersection_plain(const double* c, double& x, double& y);

double elevation_at_plain(const double* x, const double* y, std::size_t points, double at);
void exchange_sort_plain(double* distances, double* elevations, std::size_t points);

}  // namespace bench
