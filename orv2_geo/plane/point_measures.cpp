// Measures between a point and a straight piece. Routines that look alike
// differ at their edges, each on purpose.
#include <cmath>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/number_pairs.h"
#include "orv2_geo/plane/single_variant.h"

namespace orv2_geo {

namespace {

struct PlanePoint {
  Checked x;
  Checked y;
};

struct Distance {
  bool is_point;  // the segment has no length: the distance is to its first end
  Checked value;
};

// Orthogonal projection, parameter u along the segment. A squared length that
// underflows to zero divides by zero like any other.
Distance nearest(Checked Px, Checked Py, Checked x1, Checked y1, Checked x2, Checked y2) {
  const auto from = [&](Checked x, Checked y) -> Checked {
    const auto ex = Px - x;
    const auto ey = Py - y;
    return sqrt(ey * ey + ex * ex);
  };
  const Checked dx = x2 - x1;
  const Checked dy = y2 - y1;
  const bool no_width = dx == 0.0;
  const bool no_height = dy == 0.0;
  if (no_width && no_height) return {true, from(x1, y1)};
  const Checked square = dy * dy + dx * dx;
  const Checked u = ((Px - x1) * dx + (Py - y1) * dy) / square;
  if (u < 0.0) return {false, from(x1, y1)};
  if (u > 1.0) return {false, from(x2, y2)};
  const Checked foot_x = u * dx + x1;
  const Checked foot_y = u * dy + y1;
  return {false, from(foot_x, foot_y)};
}

bool has_no_length(Checked x1, Checked y1, Checked x2, Checked y2) {
  const Checked dx = x2 - x1;
  const Checked dy = y2 - y1;
  const bool no_width = dx == 0.0;
  const bool no_height = dy == 0.0;
  return no_width && no_height;
}

double sum_of(NumberPair pair) { return pair[1] + pair[0]; }

// Of a segment that has a length, in plain arithmetic, X and Y at a time; NaN or an
// infinity where an operation may have failed or it has none. What makes it sound:
//
//   distance + 0 (square + u)
//
// A sum is finite only where all of its terms are. The distance holds the differences
// from the point, and the foot where it lies within; the square the segment's own
// differences, and as a divisor it would hide an overflow in u; u holds the products,
// and is NaN where there is no length. Finite, they change nothing: a distance is no -0.
double quick_distance(NumberPair point, NumberPair first, NumberPair second) {
  const NumberPair run = second - first;
  const double square = sum_of(run * run);
  const double u = sum_of((point - first) * run) / square;
  const NumberPair along{u, u};
  // All three feet, and then the one that is: which is hard to foresee.
  const NumberPair beyond = along > 1.0 ? second : along * run + first;
  const NumberPair from = point - (along < 0.0 ? first : beyond);
  return std::sqrt(sum_of(from * from)) + 0.0 * (square + u);
}

Distance distance_to(const double& Px, const double& Py, const double& x1, const double& y1,
                     const double& x2, const double& y2) {
  const double quick = quick_distance(NumberPair{Px, Py}, NumberPair{x1, y1}, NumberPair{x2, y2});
  if (checked::is_finite(quick)) [[likely]] {
    return {false, quick};
  }
  return nearest(Px, Py, x1, y1, x2, y2);
}

// Whether three values rise strictly; both comparisons are always made.
bool rising(Checked a, Checked b, Checked c) {
  const bool first = a < b;
  const bool second = b < c;
  return first && second;
}

// Whether `a`, `b`, `c` rise strictly in X or in Y.
bool rising(PlanePoint a, PlanePoint b, PlanePoint c) {
  const bool in_x = rising(a.x, b.x, c.x);
  const bool in_y = rising(a.y, b.y, c.y);
  return in_x || in_y;
}

// 1: T lies beyond P; 3: beyond q; 2: between them or on them. The first case
// that fits counts, so a point off the line gets a code too.
std::int16_t position_code(PlanePoint P, PlanePoint q, PlanePoint T) {
  if (rising(q, P, T)) return 1;
  if (rising(T, P, q)) return 1;
  if (rising(P, q, T)) return 3;
  if (rising(T, q, P)) return 3;
  return 2;
}

}  // namespace

float cgeo_Algorismos::Distancia_Punto_Punto_l(const std::int32_t& X1, const std::int32_t& Y1,
                                               std::int32_t X2, std::int32_t Y2) const try {
  // Whole numbers as long as it can: a square that leaves 32 bits is a failure.
  const auto widened = [](Checked32 whole) { return narrow_plain(whole.value()); };
  if (X1 == X2) return widened(abs(Checked32(Y2) - Y1));
  if (Y1 == Y2) return widened(abs(Checked32(X2) - X1));
  const Checked32 dy = Checked32(Y2) - Y1;
  const Checked32 dx = Checked32(X2) - X1;
  const Checked32 square = dy * dy + dx * dx;
  return narrow_plain(sqrt(Checked(square.value())));
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Distancia_Punto_Linea(const double& Px, const double& Py, const double& RX1,
                                              const double& RY1, const double& RX2,
                                              const double& RY2) const try {
  return distance_to(Px, Py, RX1, RY1, RX2, RY2).value;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Toca_Punto_Recta(const double& Px, const double& Py, const double& X1,
                                         const double& Y1, const double& X2, const double& Y2,
                                         const double& tolerancia) const try {
  const Distance distance = distance_to(Px, Py, X1, Y1, X2, Y2);
  // A segment that is a point answers with the distance itself, never negative,
  // and the tolerance is not looked at.
  if (distance.is_point) return distance.value;
  return distance.value < tolerancia ? -1.0 : 0.0;  // strict: touching is apart
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::Toca_Punto_Recta_SN(const double& Px, const double& Py, const double& X1,
                                          const double& Y1, const double& X2, const double& Y2,
                                          const double& tolerancia) const try {
  if (has_no_length(X1, Y1, X2, Y2)) return true;                  // wherever the point is
  return distance_to(Px, Py, X1, Y1, X2, Y2).value <= tolerancia;  // inclusive: touching is near
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Longitud_Linea(const double& x0, const double& y0, const double& X1,
                                       const double& Y1, const double& X2, const double& Y2) const
    try {
  if (Checked(X1) == X2) return abs(Checked(X1) - x0);
  if (Checked(Y1) == Y2) return abs(Checked(Y1) - y0);
  const Checked dx = Checked(X2) - X1;
  const Checked dy = Checked(Y2) - Y1;
  return abs(dy * x0 - dx * y0 + Checked(Y1) * X2 - Checked(X1) * Y2) / sqrt(dy * dy + dx * dx);
} catch (...) {
  leave_signed(registered_name);
}

std::int16_t cgeo_Algorismos::PntOnLine(const double& Px, const double& Py, const double& qx,
                                        const double& qy, const double& Tx, const double& Ty) const
    try {
  return position_code({Px, Py}, {qx, qy}, {Tx, Ty});
} catch (...) {
  leave_signed(registered_name);
}

std::int16_t cgeo_Algorismos::PntOnLine_s(const float& Px, const float& Py, const float& qx,
                                          const float& qy, const float& Tx, const float& Ty) const
    try {
  const PlanePoint P{widen(Px), widen(Py)};
  const PlanePoint q{widen(qx), widen(qy)};
  const PlanePoint T{widen(Tx), widen(Ty)};
  // Collinear within the longer side; this test is the f32 member's own.
  const Checked width = widen(narrow(abs(q.x - P.x)));
  const Checked height = widen(narrow(abs(q.y - P.y)));
  const Checked longer = height < width ? width : height;
  const Checked off = widen(narrow(abs((T.x - P.x) * (q.y - P.y) - (q.x - P.x) * (T.y - P.y))));
  if (off >= longer) return 0;
  return position_code(P, q, T);
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::Distancia_Punto_Linea_s(const float& Px, const float& Py, const float& X1,
                                               const float& Y1, const float& X2,
                                               const float& Y2) const try {
  return plane::single_variant(*this, &cgeo_Algorismos::Distancia_Punto_Linea, Px, Py, X1, Y1, X2,
                               Y2);
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::Toca_Punto_Recta_s(const float& Px, const float& Py, const float& X1,
                                          const float& Y1, const float& X2, const float& Y2,
                                          const float& tolerancia) const try {
  return plane::single_variant(*this, &cgeo_Algorismos::Toca_Punto_Recta, Px, Py, X1, Y1, X2, Y2,
                               tolerancia);
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Toca_Punto_Recta_sSN(const float& Px, const float& Py, const float& X1,
                                             const float& Y1, const float& X2, const float& Y2,
                                             const float& tolerancia) const try {
  // Over the number form, not the flag form, and its answer stays f64.
  return plane::widened_call(*this, &cgeo_Algorismos::Toca_Punto_Recta, Px, Py, X1, Y1, X2, Y2,
                             tolerancia);
} catch (...) {
  leave_signed(registered_name);
}

float cgeo_Algorismos::Longitud_Linea_s(const float& x0, const float& y0, const float& X1,
                                        const float& Y1, const float& X2, const float& Y2) const
    try {
  return plane::single_variant(*this, &cgeo_Algorismos::Longitud_Linea, x0, y0, X1, Y1, X2, Y2);
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
