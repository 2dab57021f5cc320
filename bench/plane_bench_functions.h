// plane_bench_functions.h: the plane members' formulas unchecked, out of line.
#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace bench {

// Two segments: x1 y1 x2 y2 x3 y3 x4 y4.
bool crosses_plain(const double* c);
bool crossing_plain(const double* c, double& xi, double& yi);

// From (x3, y3) to the first segment.
double distance_plain(const double* c);

// The distances, in order, of the cuts of a segment with a chain.
std::vector<double> cuts_plain(const std::array<double, 4>& segment, const double* x,
                               const double* y, std::size_t vertices);

}  // namespace bench
