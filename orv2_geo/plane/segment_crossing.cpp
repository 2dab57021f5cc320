// How two straight pieces meet.
#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/number_pairs.h"
#include "orv2_geo/plane/sides_of_line.h"
#include "orv2_geo/plane/single_variant.h"

namespace orv2_geo {

namespace {

// Elevation of the line through (Ax, Ay) and (Bx, By) at x; Ax and Bx differ.
Checked on_line_at(Checked x, Checked Ax, Checked Ay, Checked Bx, Checked By) {
  return (By - Ay) * (x - Ax) / (Bx - Ax) + Ay;
}

// A line that is not vertical: y = m x + b.
template <class N>
struct Line {
  N run, m, b;
};

template <class N>
Line<N> line_through(N X1, N Y1, N X2, N Y2) {
  const N run = X2 - X1;
  const N m = (Y2 - Y1) / run;
  return {run, m, Y1 - m * X1};
}

// Writes the meeting point of two lines, a pair of everything, in plain arithmetic; nothing
// where an operation may have failed or there is none. What makes it sound:
//
//   is_finite(run1 + run2 + (m1 - m2) + b1 + b2 + x + y)
//
// A sum is finite only where all of its terms are. A run that overflows would hide in a
// slope of 0, so it stands there itself; a slope that overflows does so in m1 - m2, and
// one by zero is an infinity or NaN; parallel lines divide by m1 - m2 = 0, which leaves x
// infinite or NaN.
bool quick_meeting(const Line<NumberPair>& lines, double& xi, double& yi) {
  const auto& [run, m, b] = lines;
  const double slopes = m[0] - m[1];
  const double x = (b[1] - b[0]) / slopes;
  const double y = x * m[0] + b[0];
  const NumberPair terms = run + b;
  if (!checked::is_finite(terms[0] + terms[1] + slopes + x + y)) return false;
  xi = x;
  yi = y;
  return true;
}

// The rules of lines_meet one by one. The caller may pass one variable twice, so each is
// read where it is used.
[[gnu::noinline]] bool lines_meet_exactly(const double& X1, const double& Y1, const double& X2,
                                          const double& Y2, const double& x3, const double& y3,
                                          const double& X4, const double& Y4, double& xi,
                                          double& yi) {
  const bool first_vertical = Checked(X1) == X2;
  const bool second_vertical = Checked(x3) == X4;
  if (first_vertical && second_vertical) return false;
  if (first_vertical) {
    xi = X1;
    yi = on_line_at(xi, x3, y3, X4, Y4);
    return true;
  }
  if (second_vertical) {
    xi = x3;
    yi = on_line_at(xi, X1, Y1, X2, Y2);
    return true;
  }
  const auto [run1, m1, b1] = line_through<Checked>(X1, Y1, X2, Y2);
  const auto [run2, m2, b2] = line_through<Checked>(x3, y3, X4, Y4);
  if (m1 == m2) return false;
  xi = (b2 - b1) / (m1 - m2);
  yi = Checked(xi) * m1 + b1;
  return true;
}

// Writes the point in which the two endless lines meet. Parallel is exact
// equality of slopes; false then, and nothing written.
[[gnu::always_inline]] inline bool lines_meet(const double& X1, const double& Y1, const double& X2,
                                              const double& Y2, const double& x3, const double& y3,
                                              const double& X4, const double& Y4, double& xi,
                                              double& yi) {
  const NumberPair from{X1, x3};
  const NumberPair to{X2, X4};
  const bool vertical = bits_of(where(from == to)) != 0;
  if (!vertical &&
      quick_meeting(line_through(from, NumberPair{Y1, y3}, to, NumberPair{Y2, Y4}), xi, yi)) {
    return true;
  }
  return lines_meet_exactly(X1, Y1, X2, Y2, x3, y3, X4, Y4, xi, yi);
}

// By lines, not by extents: collinear pieces that lie apart pass both.
[[gnu::noinline, gnu::cold]] bool part_each_other(const double& X1, const double& Y1,
                                                  const double& X2, const double& Y2,
                                                  const double& x3, const double& y3,
                                                  const double& X4, const double& Y4) {
  using plane::on_both_sides;
  using plane::sides_of_line;
  const bool first_parts = on_both_sides(sides_of_line<Checked>(X1, Y1, X2, Y2, x3, y3, X4, Y4));
  const bool second_parts = on_both_sides(sides_of_line<Checked>(x3, y3, X4, Y4, X1, Y1, X2, Y2));
  return first_parts && second_parts;
}

}  // namespace

Bool cgeo_Algorismos::Se_cruzan_2lineas(const double& X1, const double& Y1, const double& X2,
                                        const double& Y2, const double& x3, const double& y3,
                                        const double& X4, const double& Y4) const try {
  return plane::quick_crossing_or(part_each_other, X1, Y1, X2, Y2, x3, y3, X4, Y4);
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::Intersec_XY_2lineas(const double& X1, const double& Y1, const double& X2,
                                          const double& Y2, const double& x3, const double& y3,
                                          const double& X4, const double& Y4, double& xi,
                                          double& yi) const try {
  return lines_meet(X1, Y1, X2, Y2, x3, y3, X4, Y4, xi, yi);
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::Cruce_XY_2lineas(const double& X1, const double& Y1, const double& X2,
                                       const double& Y2, const double& x3, const double& y3,
                                       const double& X4, const double& Y4, double& xi,
                                       double& yi) const try {
  if (!plane::quick_crossing_or(part_each_other, X1, Y1, X2, Y2, x3, y3, X4, Y4)) return false;
  return lines_meet(X1, Y1, X2, Y2, x3, y3, X4, Y4, xi, yi);
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::se_cruzan_2lineass_s(const float& X1, const float& Y1, const float& X2,
                                           const float& Y2, const float& x3, const float& y3,
                                           const float& X4, const float& Y4) const try {
  return plane::single_variant(*this, &cgeo_Algorismos::Se_cruzan_2lineas, X1, Y1, X2, Y2, x3, y3,
                               X4, Y4);
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::Intersec_XY_2lineas_s(const float& X1, const float& Y1, const float& X2,
                                            const float& Y2, const float& x3, const float& y3,
                                            const float& X4, const float& Y4, float& xi,
                                            float& yi) const try {
  return plane::single_variant(*this, &cgeo_Algorismos::Intersec_XY_2lineas, X1, Y1, X2, Y2, x3, y3,
                               X4, Y4, xi, yi);
} catch (...) {
  leave_signed(registered_name);
}

Bool cgeo_Algorismos::Cruce_XY_2lineas_s(const float& X1, const float& Y1, const float& X2,
                                         const float& Y2, const float& x3, const float& y3,
                                         const float& X4, const float& Y4, float& xi,
                                         float& yi) const try {
  return plane::single_variant(*this, &cgeo_Algorismos::Cruce_XY_2lineas, X1, Y1, X2, Y2, x3, y3,
                               X4, Y4, xi, yi);
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
