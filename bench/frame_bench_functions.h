// frame_bench_functions.h: the same formulas, checked and plain, out of line.
#pragma once

#include "orv2_geo/frame/geo_arrays.h"

namespace bench {

struct Point {
  double x;
  double y;
};

// The point in which two lines meet, moved by an offset: 17 operations, three of
// them divisions, in seven statements.
Point meeting_checked(const double (&c)[8], double offset);
Point meeting_plain(const double (&c)[8], double offset);

// Bearing and length of a line: an arc tangent and a root.
Point bearing_checked(const double (&c)[8]);
Point bearing_plain(const double (&c)[8]);

// Lowest and highest of an array.
Point extremes_checked(const orv2_geo::DoubleArray& array);
Point extremes_plain(const double* elements, int lower, int upper);

// Turns an array round, exchanging elements.
void reverse_checked(orv2_geo::DoubleArray& array);
void reverse_plain(double* elements, int lower, int upper);

}  // namespace bench
