// Intersection of two lines by a ladder of exact cases, then by inverse slopes.
#include <optional>

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/survey/cgeo_Geometria.h"

namespace orv2_geo {

namespace {

// A crossing whose X or Y lies beyond counts as none.
constexpr double farthest = 9999999.0;

// Allowance on the sum of the distances from a point to the ends of a segment.
constexpr double segment_tolerance = 0.01;

bool same(double ax, double ay, double bx, double by) { return ax == bx && ay == by; }

// Whether v lies in the closed interval between a and b, either way round.
bool between(double v, double a, double b) { return (a <= v && v <= b) || (b <= v && v <= a); }

bool is_near(const double& X, const double& Y) {
  const bool near_in_x = abs(Checked(X)) <= farthest;
  const bool near_in_y = abs(Checked(Y)) <= farthest;
  return near_in_x && near_in_y;
}

Checked distance(const double& ax, const double& ay, const double& bx, const double& by) {
  return power(power(Checked(ay) - by, 2.0) + power(Checked(ax) - bx, 2.0), 0.5);
}

// The slope of the second line and the Y in which two lines in general position
// meet: neither level nor upright, no end in common, not parallel.
struct Meeting {
  double M2, y;
};

// In plain arithmetic; nothing where the lines are none in general position or an
// operation may have failed. What makes it sound:
//
//   is_finite(d1x + d1y + d2x + d2y + (M1 - M2) + y)
//
// A sum is finite only where all of its terms are. A difference that overflows would
// hide in an inverse slope of 0, so each stands there itself; an inverse slope that
// overflows does so in M1 - M2, and the products do in y, whose divisor M1 - M2 is 0 for
// parallel lines: y is then infinite or NaN.
std::optional<Meeting> quick_meeting(double x1, double y1, double x2, double y2, double x3,
                                     double y3, double x4, double y4) {
  const double d1x = x2 - x1, d1y = y2 - y1, d2x = x3 - x4, d2y = y3 - y4;
  const bool along_an_axis = (d1x == 0.0) | (d1y == 0.0) | (d2x == 0.0) | (d2y == 0.0);
  const bool may_share_an_end = (x1 == x3) | (x2 == x4) | (x1 == x4) | (x2 == x3);
  if (along_an_axis | may_share_an_end) return std::nullopt;
  const double M1 = d1x / d1y;
  const double M2 = d2x / d2y;
  const double slopes = M1 - M2;
  const double y = (M1 * y1 - M2 * y4 + x4 - x1) / slopes;
  const bool sound = checked::is_finite(d1x + d1y + d2x + d2y + slopes + y);
  if (!sound || M1 == 0.0 || M2 == 0.0) return std::nullopt;
  return Meeting{M2, y};
}

}  // namespace

void cgeo_Geometria::GR_Intersec_2_Rectas(const double& R1x1, const double& R1y1,
                                          const double& R1x2, const double& R1y2,
                                          const double& R2x1, const double& R2y1,
                                          const double& R2x2, const double& R2y2, double& X,
                                          double& Y, Bool& Paralelas) const try {
  Paralelas = false;
  const auto finish = [&] {
    if (is_near(X, Y)) return;
    X = R1x2;  // too far away: the second end of R1, silently
    Y = R1y2;
    Paralelas = false;
  };
  if (const auto meeting = quick_meeting(R1x1, R1y1, R1x2, R1y2, R2x1, R2y1, R2x2, R2y2)) {
    Y = meeting->y;
    X = (Checked(Y) - R2y1) * meeting->M2 + R2x1;  // reads what Y may have changed
    return finish();
  }

  const auto zero = [](Checked difference) { return difference == 0.0; };
  const Checked d1x = Checked(R1x1) - R1x2;
  const Checked d1y = Checked(R1y1) - R1y2;
  const Checked d2x = Checked(R2x1) - R2x2;
  const Checked d2y = Checked(R2y1) - R2y2;

  // Stored coordinates, free of rounding: the first row that fits answers. X is
  // written before Y is read. The first row does not ask for the Y of R2, which may
  // be NaN there. From the second on the differences have shown that no coordinate
  // is NaN, so they are compared as they are.
  const auto answer = [&](const double& x, const double& y) { X = x, Y = y; };
  const bool level1 = zero(d1y), upright2 = zero(d2x);
  if (level1 && upright2 && between(R2x1, R1x1, R1x2)) return answer(R2x2, R1y1);
  const bool level2 = zero(d2y), upright1 = zero(d1x);
  if (level2 && upright1 && between(R1x1, R2x1, R2x2)) return answer(R1x1, R2y2);
  if (same(R1x1, R1y1, R2x1, R2y1) && same(R1x2, R1y2, R2x2, R2y2)) return answer(R1x1, R1y1);
  if (same(R1x1, R1y1, R2x2, R2y2) && same(R1x2, R1y2, R2x1, R2y1)) return answer(R1x1, R1y1);
  if (same(R1x1, R1y1, R2x1, R2y1)) return answer(R1x1, R1y1);
  if (same(R1x2, R1y2, R2x2, R2y2)) return answer(R1x2, R1y2);
  if (same(R1x1, R1y1, R2x2, R2y2)) return answer(R1x1, R1y1);
  if (same(R1x2, R1y2, R2x1, R2y1)) return answer(R1x2, R1y2);
  if (level1 && upright2) return answer(R2x1, R1y1);
  if (upright1 && level2) return answer(R1x1, R2y2);
  if (upright1 && upright2) return answer(R1x1, R2y2);  // never called parallel
  if (upright1) {
    X = R1x1;
    Y = (Checked(R2y1) - R2y2) * (Checked(R1x1) - R2x2) / (Checked(R2x1) - R2x2) + R2y2;
    return;
  }
  if (upright2) {
    X = R2x1;
    Y = (Checked(R1y2) - R1y1) * (Checked(R2x2) - R1x1) / (Checked(R1x2) - R1x1) + R1y1;
    return;
  }

  // Change of X per unit of Y.
  Checked M1 = 0.0;
  Checked M2 = 0.0;
  if (Checked(R1y1) == R1y2) {
    Y = R1y2;
  } else {
    M1 = (Checked(R1x2) - R1x1) / (Checked(R1y2) - R1y1);
  }
  if (Checked(R2y1) == R2y2) {
    Y = R2y2;
  } else {
    M2 = (Checked(R2x1) - R2x2) / (Checked(R2y1) - R2y2);
  }
  if (M1 == M2) {
    Paralelas = true;
    return;
  }
  if (M1 != 0.0 && M2 != 0.0) Y = (M1 * R1y1 - M2 * R2y2 + R2x2 - R1x1) / (M1 - M2);
  if (M2 != 0.0) {
    X = (Checked(Y) - R2y1) * M2 + R2x1;
  } else {
    X = (Checked(Y) - R1y1) * M1 + R1x1;
  }
  finish();
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Geometria::GR_Intersec_2_Rectas_S(const float& R1x1, const float& R1y1, const float& R1x2,
                                            const float& R1y2, const float& R2x1, const float& R2y1,
                                            const float& R2x2, const float& R2y2, const float& X,
                                            const float& Y, Bool& Paralelas) const try {
  // The point stays in these copies: only the flag carries an answer.
  double y = widen(Y), x = widen(X);
  const double y4 = widen(R2y2), x4 = widen(R2x2), y3 = widen(R2y1), x3 = widen(R2x1);
  const double y2 = widen(R1y2), x2 = widen(R1x2), y1 = widen(R1y1), x1 = widen(R1x1);
  GR_Intersec_2_Rectas(x1, y1, x2, y2, x3, y3, x4, y4, x, y, Paralelas);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Geometria::GR_Se_cortan_2_rectas(const double& R1x1, const double& R1y1,
                                           const double& R1x2, const double& R1y2,
                                           const double& R2x1, const double& R2y1,
                                           const double& R2x2, const double& R2y2, double& X,
                                           double& Y, Bool& SECORTAN) const try {
  Bool parallel = false;
  GR_Intersec_2_Rectas(R1x1, R1y1, R1x2, R1y2, R2x1, R2y1, R2x2, R2y2, X, Y, parallel);
  SECORTAN = false;
  if (parallel) return;
  const Checked a = distance(X, Y, R2x1, R2y1);
  const Checked b = distance(X, Y, R2x2, R2y2);
  const Checked c = distance(R2x1, R2y1, R2x2, R2y2);
  if (a + b - segment_tolerance > c) return;  // a sum of exactly c + 0.01 is on the segment
  const Checked e = distance(X, Y, R1x1, R1y1);
  const Checked f = distance(X, Y, R1x2, R1y2);
  const Checked g = distance(R1x1, R1y1, R1x2, R1y2);
  if (e + f - segment_tolerance < g) {  // here it must be strictly below g + 0.01
    SECORTAN = true;
    return;
  }
  if (is_near(X, Y)) return;
  SECORTAN = false;
  X = R1x2;
  Y = R1y2;
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Geometria::GF_Se_cortan_2_rectas(const double& R1x1, const double& R1y1,
                                           const double& R1x2, const double& R1y2,
                                           const double& R2x1, const double& R2y1,
                                           const double& R2x2, const double& R2y2, double& X,
                                           double& Y) const try {
  // The answer is the flag for parallel lines, whatever the name suggests.
  Bool parallel = false;
  GR_Intersec_2_Rectas(R1x1, R1y1, R1x2, R1y2, R2x1, R2y1, R2x2, R2y2, X, Y, parallel);
  return parallel;
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
