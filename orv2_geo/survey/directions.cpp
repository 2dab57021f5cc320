// Bearings, distances and parallels.
#include <cmath>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/survey/cgeo_Geometria.h"

namespace orv2_geo {

namespace {

// Ten digits each: this class's own circle and factor.
constexpr double circle_in_radians = 6.283185308;
constexpr double radians_per_centesimal = 0.01570796327;

// From the angle above the axis of X, -100 to 100, of a direction that is parallel to no axis. A
// circle that comes out whole is folded to 0. None of the numbers is NaN: nothing fails.
[[gnu::always_inline]] inline double bearing_of(double a, double dy, double dx) noexcept {
  const bool first_base = a > 0.0 ? dy >= 0.0 || dx >= 0.0 : !(dy >= 0.0 || dx <= 0.0);
  const double bearing = (first_base ? 100.0 : 300.0) - a;
  return bearing == 400.0 ? 0.0 : bearing;
}

[[gnu::always_inline]] inline double quadrant_bearing(Checked dy, Checked dx) {
  const Checked a = atan(dy / dx) * 400.0 / circle_in_radians;
  return bearing_of(a, dy, dx);
}

[[gnu::always_inline]] inline Checked length_of(Checked dy, Checked dx) {
  return sqrt(power(dy, 2.0) + power(dx, 2.0));
}

struct Direction {
  bool known;
  double length;
  double bearing;
};

// In plain arithmetic, where the direction is parallel to no axis and nothing can fail: a length
// is finite only where both differences are, and the sum only where the slope is too.
[[gnu::always_inline]] inline Direction quick_direction(double dy, double dx) noexcept {
  const double slope = dy / dx;
  const double length = std::sqrt(elementary::power(dy, 2.0) + elementary::power(dx, 2.0));
  if (!checked::is_finite(length + 0.0 * slope) || length == 0.0 || dy == 0.0) return {};
  const double a = elementary::arc_tangent(slope) * 400.0 / circle_in_radians;
  return {true, length, bearing_of(a, dy, dx)};
}

}  // namespace

double cgeo_Geometria::GF_Angulo_de_1Recta(const double& R1x1, const double& R1y1,
                                           const double& R1x2, const double& R1y2) const try {
  const Checked dy = Checked(R1y2) - R1y1;
  const Checked dx = Checked(R1x2) - R1x1;
  const Checked length = length_of(dy, dx);
  // A line along an axis has bearing 0 here, whichever way it runs.
  if (length == 0.0 || dy == 0.0 || dx == 0.0) return 0.0;
  return quadrant_bearing(dy, dx);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Geometria::GR_AngDist_de_1Recta(const double& R1x1, const double& R1y1,
                                          const double& R1x2, const double& R1y2, double& Angulo,
                                          double& Distancia) const try {
  if (const Direction quick = quick_direction(R1y2 - R1y1, R1x2 - R1x1); quick.known) [[likely]] {
    Distancia = quick.length;
    Angulo = quick.bearing;
    return;
  }
  const Checked dy = Checked(R1y2) - R1y1;
  const Checked dx = Checked(R1x2) - R1x1;
  Distancia = length_of(dy, dx);
  if (Checked(Distancia) == 0.0) {
    Angulo = 0.0;
  } else if (dy == 0.0) {
    Angulo = Checked(R1x2) < R1x1 ? 300.0 : 100.0;
  } else if (dx == 0.0) {
    Angulo = Checked(R1y2) < R1y1 ? 200.0 : 0.0;
  } else {
    Angulo = quadrant_bearing(dy, dx);
  }
} catch (...) {
  leave_signed(registered_name);
}

Variant cgeo_Geometria::GF_Distancia(const double& X1, const double& Y1, const double& X2,
                                     const double& Y2) const try {
  return Checked(length_of(Checked(Y1) - Y2, Checked(X1) - X2)).value();
} catch (...) {
  leave_signed(registered_name);
}

Variant cgeo_Geometria::GF_Distancia_S(const float& X1, const float& Y1, const float& X2,
                                       const float& Y2) const try {
  // In f64 all the way: nothing is rounded back to f32.
  return Checked(length_of(widen(Y1) - Y2, widen(X1) - X2)).value();
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Geometria::GR_XY_de_AngDist(const double& Xinic, const double& Yinic,
                                      const double& Angulo, const double& Distancia, double& X,
                                      double& Y) const try {
  // Angulo is read again for Y, after X has been written.
  X = sin(Checked(Angulo) * radians_per_centesimal) * Distancia + Xinic;
  Y = cos(Checked(Angulo) * radians_per_centesimal) * Distancia + Yinic;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Geometria::GF_angulo_3_puntos(const double& P1x, const double& P1y, const double& P2x,
                                          const double& P2y, const double& P3x,
                                          const double& P3y) const try {
  double A1 = 0.0;
  double A2 = 0.0;
  double length = 0.0;
  GR_AngDist_de_1Recta(P2x, P2y, P1x, P1y, A1, length);
  GR_AngDist_de_1Recta(P2x, P2y, P3x, P3y, A2, length);
  const Checked t = abs(Checked(A2) - A1);
  return t > 200.0 ? Checked(400.0 - t) : t;  // exactly 200 stays
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Geometria::GR_Paralela(const double& X1, const double& Y1, const double& X2,
                                 const double& Y2, double& RX1, double& RY1, double& RX2,
                                 double& RY2, const double& distanc) const try {
  double A = 0.0;
  double length = 0.0;
  GR_AngDist_de_1Recta(X1, Y1, X2, Y2, A, length);
  const Checked w = (Checked(A) - 100.0) * radians_per_centesimal;
  RX1 = X1 - sin(w) * distanc;
  RY1 = Y1 - cos(w) * distanc;
  RX2 = X2 - sin(w) * distanc;
  RY2 = Y2 - cos(w) * distanc;
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
