#include "bench/plane_bench_functions.h"

#include <algorithm>
#include <cmath>

namespace bench {

namespace {

bool on_both_sides(double a, double b, double c, double d) {
  return (c <= d && a >= b) || (c >= d && a <= b);
}

bool line_parts(double Sx, double Sy, double Ex, double Ey, double Fx, double Fy, double Gx,
                double Gy) {
  if (Sx == Ex) return on_both_sides(Fx, Sx, Gx, Sx);
  if (Sy == Ey) return on_both_sides(Fy, Sy, Gy, Sy);
  const double width = Ex - Sx;
  const double height = Ey - Sy;
  return on_both_sides((Fy - Sy) * width, (Fx - Sx) * height, (Gy - Sy) * width,
                       height * (Gx - Sx));
}

}  // namespace

bool crosses_plain(const double* c) {
  const bool first = line_parts(c[0], c[1], c[2], c[3], c[4], c[5], c[6], c[7]);
  const bool second = line_parts(c[4], c[5], c[6], c[7], c[0], c[1], c[2], c[3]);
  return first && second;
}

bool crossing_plain(const double* c, double& xi, double& yi) {
  if (!crosses_plain(c)) return false;
  const double X1 = c[0], Y1 = c[1], X2 = c[2], Y2 = c[3];
  const double x3 = c[4], y3 = c[5], X4 = c[6], Y4 = c[7];
  if (X1 == X2 && x3 == X4) return false;
  if (X1 == X2) {
    xi = X1;
    yi = (Y4 - y3) * (xi - x3) / (X4 - x3) + y3;
    return true;
  }
  if (x3 == X4) {
    xi = x3;
    yi = (Y2 - Y1) * (xi - X1) / (X2 - X1) + Y1;
    return true;
  }
  const double m1 = (Y2 - Y1) / (X2 - X1);
  const double b1 = Y1 - m1 * X1;
  const double m2 = (Y4 - y3) / (X4 - x3);
  const double b2 = y3 - m2 * x3;
  if (m1 == m2) return false;
  xi = (b2 - b1) / (m1 - m2);
  yi = xi * m1 + b1;
  return true;
}

double distance_plain(const double* c) {
  const double dx = c[2] - c[0];
  const double dy = c[3] - c[1];
  double x = c[0];
  double y = c[1];
  if (dx != 0.0 || dy != 0.0) {
    const double u = ((c[4] - c[0]) * dx + (c[5] - c[1]) * dy) / (dy * dy + dx * dx);
    if (u > 1.0) {
      x = c[2], y = c[3];
    } else if (u >= 0.0) {
      x = u * dx + c[0], y = u * dy + c[1];
    }
  }
  const double ex = c[4] - x;
  const double ey = c[5] - y;
  return std::sqrt(ey * ey + ex * ex);
}

std::vector<double> cuts_plain(const std::array<double, 4>& s, const double* x, const double* y,
                               std::size_t vertices) {
  std::vector<double> distances;
  for (std::size_t i = 1; i < vertices; ++i) {
    const double c[] = {s[0], s[1], s[2], s[3], x[i - 1], y[i - 1], x[i], y[i]};
    double xi = 0.0;
    double yi = 0.0;
    if (crossing_plain(c, xi, yi)) distances.push_back(std::hypot(s[0] - xi, s[1] - yi));
  }
  std::sort(distances.begin(), distances.end());
  return distances;
}

}  // namespace bench
