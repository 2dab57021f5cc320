#include "bench/survey_bench_functions.h"

#include <cmath>
#include <utility>

namespace bench {

namespace {
constexpr double circle = 6.283185308;
constexpr double radians_per_centesimal = 0.01570796327;

// Not known to the compiler: a power stays a call of the power function.
volatile double two = 2.0;

bool between(double v, double a, double b) { return (a <= v && v <= b) || (b <= v && v <= a); }
bool same(const double* a, const double* b) { return a[0] == b[0] && a[1] == b[1]; }
}  // namespace

void bearing_and_distance_plain(const double* c, double& bearing, double& distance) {
  const double dy = c[3] - c[1];
  const double dx = c[2] - c[0];
  const double exponent = two;
  distance = std::sqrt(std::pow(dy, exponent) + std::pow(dx, exponent));
  if (distance == 0.0) {
    bearing = 0.0;
  } else if (dy == 0.0) {
    bearing = c[2] < c[0] ? 300.0 : 100.0;
  } else if (dx == 0.0) {
    bearing = c[3] < c[1] ? 200.0 : 0.0;
  } else {
    const double a = std::atan(dy / dx) * 400.0 / circle;
    const bool first = a > 0.0 ? dy >= 0.0 || dx >= 0.0 : !(dy >= 0.0 || dx <= 0.0);
    bearing = (first ? 100.0 : 300.0) - a;
    if (bearing == 400.0) bearing = 0.0;
  }
}

void point_by_bearing_plain(const double* c, double& x, double& y) {
  x = std::sin(c[2] * radians_per_centesimal) * c[3] + c[0];
  y = std::cos(c[2] * radians_per_centesimal) * c[3] + c[1];
}

bool line_intersection_plain(const double* c, double& x, double& y) {
  const double *p = c, *q = c + 2, *r = c + 4, *s = c + 6;
  const auto answer = [&](double at_x, double at_y) {
    x = at_x, y = at_y;
    return false;
  };
  const bool level1 = p[1] - q[1] == 0.0, level2 = r[1] - s[1] == 0.0;
  const bool upright1 = p[0] - q[0] == 0.0, upright2 = r[0] - s[0] == 0.0;
  if (level1 && upright2 && between(r[0], p[0], q[0])) return answer(s[0], p[1]);
  if (level2 && upright1 && between(p[0], r[0], s[0])) return answer(p[0], s[1]);
  if (same(p, r) && same(q, s)) return answer(p[0], p[1]);
  if (same(p, s) && same(q, r)) return answer(p[0], p[1]);
  if (same(p, r)) return answer(p[0], p[1]);
  if (same(q, s)) return answer(q[0], q[1]);
  if (same(p, s)) return answer(p[0], p[1]);
  if (same(q, r)) return answer(q[0], q[1]);
  if (level1 && upright2) return answer(r[0], p[1]);
  if (upright1 && level2) return answer(p[0], s[1]);
  if (upright1 && upright2) return answer(p[0], s[1]);
  if (upright1) return answer(p[0], (r[1] - s[1]) * (p[0] - s[0]) / (r[0] - s[0]) + s[1]);
  if (upright2) return answer(r[0], (q[1] - p[1]) * (s[0] - p[0]) / (q[0] - p[0]) + p[1]);
  double m1 = 0.0;
  double m2 = 0.0;
  if (p[1] == q[1]) {
    y = q[1];
  } else {
    m1 = (q[0] - p[0]) / (q[1] - p[1]);
  }
  if (r[1] == s[1]) {
    y = s[1];
  } else {
    m2 = (r[0] - s[0]) / (r[1] - s[1]);
  }
  if (m1 == m2) return true;
  if (m1 != 0.0 && m2 != 0.0) y = (m1 * p[1] - m2 * s[1] + s[0] - p[0]) / (m1 - m2);
  x = m2 != 0.0 ? (y - r[1]) * m2 + r[0] : (y - p[1]) * m1 + p[0];
  if (std::abs(x) <= 9999999.0 && std::abs(y) <= 9999999.0) return false;
  return answer(q[0], q[1]);
}

double elevation_at_plain(const double* x, const double* y, std::size_t points, double at) {
  const auto on_stretch_to = [&](std::size_t i) {
    const double dx = x[i] - x[i - 1];
    if (dx == 0.0) return y[i - 1];
    return (y[i] - y[i - 1]) * (at - x[i - 1]) / dx + y[i - 1];
  };
  const std::size_t last = points - 1;
  if (at == x[0]) return y[0];
  if (at == x[last]) return y[last];
  if (at < x[0]) return on_stretch_to(1);
  if (at > x[last]) return on_stretch_to(last);
  for (std::size_t i = 1; i < last; ++i) {
    if (at == x[i]) return y[i];
    if (at < x[i]) return on_stretch_to(i);
  }
  return on_stretch_to(last);
}

void exchange_sort_plain(double* distances, double* elevations, std::size_t points) {
  for (std::size_t i = 1; i < points; ++i) {
    for (std::size_t j = 0; j + i < points; ++j) {
      if (distances[j] < distances[j + 1]) continue;
      std::swap(distances[j], distances[j + 1]);
      std::swap(elevations[j], elevations[j + 1]);
    }
  }
}

}  // namespace bench
