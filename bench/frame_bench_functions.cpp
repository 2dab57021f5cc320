#include "bench/frame_bench_functions.h"

#include <cmath>
#include <utility>

#include "orv2_geo/frame/checked_math.h"

namespace bench {

using orv2_geo::Checked;

Point meeting_checked(const double (&c)[8], double offset) {
  const Checked X1 = c[0], Y1 = c[1], X2 = c[2], Y2 = c[3];
  const Checked x3 = c[4], y3 = c[5], X4 = c[6], Y4 = c[7];
  const Checked m1 = (Y2 - Y1) / (X2 - X1);
  const Checked b1 = Y1 - m1 * X1;
  const Checked m2 = (Y4 - y3) / (X4 - x3);
  const Checked b2 = y3 - m2 * x3;
  const Checked x = (b2 - b1) / (m1 - m2);
  const Checked y = x * m1 + b1;
  return {x + offset, y + offset};
}

Point meeting_plain(const double (&c)[8], double offset) {
  const double X1 = c[0], Y1 = c[1], X2 = c[2], Y2 = c[3];
  const double x3 = c[4], y3 = c[5], X4 = c[6], Y4 = c[7];
  const double m1 = (Y2 - Y1) / (X2 - X1);
  const double b1 = Y1 - m1 * X1;
  const double m2 = (Y4 - y3) / (X4 - x3);
  const double b2 = y3 - m2 * x3;
  const double x = (b2 - b1) / (m1 - m2);
  const double y = x * m1 + b1;
  return {x + offset, y + offset};
}

Point bearing_checked(const double (&c)[8]) {
  const Checked dy = Checked(c[3]) - c[1];
  const Checked dx = Checked(c[2]) - c[0];
  const Checked length = sqrt(dy * dy + dx * dx);
  const Checked angle = atan(dy / dx) * 400.0 / 6.283185308;
  return {angle, length};
}

Point bearing_plain(const double (&c)[8]) {
  const double dy = c[3] - c[1];
  const double dx = c[2] - c[0];
  const double length = std::sqrt(dy * dy + dx * dx);
  const double angle = std::atan(dy / dx) * 400.0 / 6.283185308;
  return {angle, length};
}

Point extremes_checked(const orv2_geo::DoubleArray& array) {
  double low = array(array.lower());
  double high = low;
  const std::int32_t upper = array.upper();
  for (std::int32_t i = array.lower(); i <= upper; ++i) {
    const double value = array(i);
    if (value < low) low = value;
    if (value > high) high = value;
  }
  return {low, high};
}

Point extremes_plain(const double* elements, int lower, int upper) {
  double low = elements[0];
  double high = low;
  for (int i = lower; i <= upper; ++i) {
    const double value = elements[i - lower];
    if (value < low) low = value;
    if (value > high) high = value;
  }
  return {low, high};
}

void reverse_checked(orv2_geo::DoubleArray& array) {
  const std::int32_t lower = array.lower();
  const std::int32_t upper = array.upper();
  const std::int32_t half = (upper - lower + 1) / 2;
  for (std::int32_t k = 0; k < half; ++k) std::swap(array(lower + k), array(upper - k));
}

void reverse_plain(double* elements, int lower, int upper) {
  const int half = (upper - lower + 1) / 2;
  for (int k = 0; k < half; ++k) std::swap(elements[k], elements[upper - lower - k]);
}

}  // namespace bench
