// The angle helpers of cgeo_Algorismos. Each has its own unit, pi and edges.
#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/treatments.h"

namespace orv2_geo {

void cgeo_Algorismos::Azimut(const double& dx, const double& dy, double& aZ) const try {
  // The caller may pass one variable twice, so each value is read where it is used.
  const double half_circle = 3.141592654;
  const double full_circle = 6.283185308;
  if (Checked(dy) == 0.0) {
    if (Checked(dx) > 0.0) {
      aZ = Checked(half_circle) / 2.0;
    } else if (Checked(dx) < 0.0) {
      aZ = Checked(9.424777962) / 2.0;
    } else {
      aZ = 999.0;  // no direction: scaled below like any other angle
    }
  } else {
    aZ = atan(Checked(dx) / dy);
    if (Checked(dy) < 0.0) aZ = Checked(aZ) + half_circle;
    if (Checked(aZ) < 0.0) aZ = Checked(aZ) + full_circle;
  }
  aZ = Checked(aZ) * 200.0 / half_circle;
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Algorismos::Azimut_s(const float& dx, const float& dy, const float& aZ) const try {
  // The azimuth stays in this copy: the caller's aZ keeps its value.
  double azimuth = widen(aZ);
  const double north = widen(dy);
  const double east = widen(dx);
  Azimut(east, north, azimuth);
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::Atan2(const double& Y, const double& X) const try {
  const Checked pi = 4.0 * atan(Checked(1.0));
  const Checked right_angle = pi / 2.0;
  const Checked y = Y;
  const Checked x = X;
  if (x == 0.0) {
    if (y > 0.0) return narrow(right_angle);
    return y < 0.0 ? narrow(-right_angle) : 0.0F;
  }
  if (y == 0.0) return x < 0.0 ? narrow(pi) : 0.0F;
  if (x > 0.0) return narrow(atan(y / x));
  return y > 0.0 ? narrow(atan(y / x) + pi) : narrow(atan(y / x) - pi);
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::Atn2(const double& X, double& Y) const try {
  if (Checked(Y) == 0.0) Y = 1e-09;  // the caller's variable changes
  const Checked acute = atan(abs(Checked(X)) / abs(Checked(Y)));
  // Six decimals of pi: this routine's own constant.
  return narrow((acute * sign(X) - Checked(3.141592) / 2.0) * sign(Y));
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::Arccos(float sRadians) const try {
  const Checked cosine = widen(sRadians);
  // An f32: a square beyond its range is failure 6, before the ends are looked at.
  const float t = narrow(-cosine * cosine + 1.0);
  // The two ends are not alike: 0 on the right, a short pi on the left.
  if (widen(t) <= 0.0) return cosine > 0.0 ? 0.0F : narrow(3.1415);
  return narrow(atan(-cosine / sqrt(widen(t))) + 2.0 * atan(Checked(1.0)));
} catch (...) {
  leave_signed(registered_name);
}

namespace {
// Fourteen decimals: 100 comes out a hair above 90 before it is rounded.
const Checked centesimal_per_degree = 1.11111111111111;
}  // namespace

float cgeo_Algorismos::An360(const float& An) const try {
  if (widen(An) == 0.0) return 0.0F;
  return narrow(widen(An) / centesimal_per_degree);
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::An400(const float& An) const try {
  if (widen(An) == 0.0) return 0.0F;
  return narrow(widen(An) * centesimal_per_degree);
} catch (...) {
  leave_signed(registered_name);
}

namespace {

Checked side_length(float x1, float y1, float x2, float y2) {
  return sqrt(power(widen(x2) - x1, 2.0) + power(widen(y2) - y1, 2.0));
}

// Places g, in degrees, by the quadrant of P2 as seen from P1. The first case
// that fits counts.
float placed_by_quadrant(float g, float x1, float y1, float x2, float y2) {
  const Checked X1 = x1, Y1 = y1, X2 = x2, Y2 = y2;
  if (X1 == X2 && Y1 > Y2) return 270.0F;
  if (X1 == X2 && Y1 < Y2) return 90.0F;
  if (X1 == X2) return g;
  if (Y1 == Y2) return X1 > X2 ? 180.0F : 0.0F;
  if (X1 > X2 && Y1 < Y2) return narrow((90.0 - widen(g)) + 90.0);
  if (X1 > X2) return narrow(widen(g) + 180.0);
  if (Y1 > Y2) return narrow((90.0 - widen(g)) + 270.0);
  return g;
}

}  // namespace

float cgeo_Algorismos::GetAngle3P(const float& X1, const float& Y1, const float& X2,
                                  const float& Y2, const float& x3, const float& y3) const try {
  float g = 0.0F;
  const Checked a = side_length(X1, Y1, X2, Y2);
  const Checked b = side_length(X1, Y1, x3, y3);
  const Checked c = side_length(X2, Y2, x3, y3);
  const bool a_stands = a != 0.0, b_stands = b != 0.0, c_stands = c != 0.0;
  if (a_stands && b_stands && c_stands) {
    const Checked s = (c + a + b) * 0.5;
    if (s < b || s < c || s < a) return 0.0F;
    // From here on a statement that fails is passed over: with P1 between P2
    // and P3, s equals c and g stays 0.
    skip_on_failure([&] {
      g = narrow(2.0 * atan(power((s - a) * (s - b) / s / (s - c), 0.5)) * 63.66197722844561);
    });
    skip_on_failure([&] { g = An360(g); });
  }
  return placed_by_quadrant(g, X1, Y1, X2, Y2);
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
