// sides_of_line.h: on which side of a line the ends of another piece lie.
#pragma once

#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/number_pairs.h"

namespace orv2_geo::plane {

/// How the ends of one piece, F and G, lie to the line through the other, from S
/// to E: c against d tells of G, a against b of F.
template <class N>
struct Sides {
  N a, b, c, d;
};

/// An axis-parallel line is compared with directly, free of rounding.
template <class N>
Sides<N> sides_of_line(N Sx, N Sy, N Ex, N Ey, N Fx, N Fy, N Gx, N Gy) {
  if (Sx == Ex) return {Fx, Sx, Gx, Sx};
  if (Sy == Ey) return {Fy, Sy, Gy, Sy};
  const N width = Ex - Sx;
  const N height = Ey - Sy;
  return {(Fy - Sy) * width, (Fx - Sx) * height, (Gy - Sy) * width, height * (Gx - Sx)};
}

/// Whether F and G do not lie strictly on the same side; touching counts. All
/// four comparisons, without a branch: the outcome is hard to foresee.
template <class N>
bool on_both_sides(const Sides<N>& s) {
  const bool c_below = s.c <= s.d;
  const bool c_above = s.c >= s.d;
  const bool a_below = s.a <= s.b;
  const bool a_above = s.a >= s.b;
  return (c_below & a_above) | (c_above & a_below);
}

/// Whether two pieces, 1-2 and 3-4, part each other, in plain arithmetic; what `exact`
/// says of the same numbers where an operation may have failed. (An optional in between costs
/// a seventh of the whole test, variables that `exact` captures as much.) What makes it sound:
///
///   is_finite(a + b + c + d, of both, + (X2 - X1) + (X4 - x3))
///
/// A sum of numbers of which one is an infinity or NaN is never finite. So each
/// product is finite, and so are its factors, unless one is 0 beside an infinity, which
/// is NaN; and a difference that overflows stays an infinity. The widths stand for X
/// where both pieces are level and the sides are of Y alone.
template <class Exact>
bool quick_crossing_on_axes_or(Exact exact, const double& X1, const double& Y1, const double& X2,
                               const double& Y2, const double& x3, const double& y3,
                               const double& X4, const double& Y4) {
  const auto sum_of = [](const Sides<double>& s) { return (s.a + s.b) + (s.c + s.d); };
  const auto first = sides_of_line(X1, Y1, X2, Y2, x3, y3, X4, Y4);
  const auto second = sides_of_line(x3, y3, X4, Y4, X1, Y1, X2, Y2);
  const double widths = (X2 - X1) + (X4 - x3);
  const bool first_parts = on_both_sides(first);
  const bool second_parts = on_both_sides(second);
  const bool sound = checked::is_finite(sum_of(first) + sum_of(second) + widths);
  if (sound) [[likely]] {
    return first_parts & second_parts;
  }
  return exact(X1, Y1, X2, Y2, x3, y3, X4, Y4);
}

/// The same, both pieces at a time where neither lies along an axis: each sees the other's
/// ends. The widths are factors then.
template <class Exact>
[[gnu::always_inline]] inline bool quick_crossing_or(Exact exact, const double& X1,
                                                     const double& Y1, const double& X2,
                                                     const double& Y2, const double& x3,
                                                     const double& y3, const double& X4,
                                                     const double& Y4) {
  const NumberPair Sx{X1, x3};
  const NumberPair Sy{Y1, y3};
  const NumberPair Ex{X2, X4};
  const NumberPair Ey{Y2, Y4};
  if (bits_of(where(Sx == Ex) | where(Sy == Ey)) != 0) {
    return quick_crossing_on_axes_or(exact, X1, Y1, X2, Y2, x3, y3, X4, Y4);
  }
  const NumberPair width = Ex - Sx;
  const NumberPair height = Ey - Sy;
  const NumberPair a = (swapped(Sy) - Sy) * width;
  const NumberPair b = (swapped(Sx) - Sx) * height;
  const NumberPair c = (swapped(Ey) - Sy) * width;
  const NumberPair d = height * (swapped(Ex) - Sx);
  const PairBits parts = (where(c <= d) & where(a >= b)) | (where(c >= d) & where(a <= b));
  const NumberPair sums = (a + b) + (c + d);
  if (checked::is_finite(sums[0] + sums[1])) [[likely]] {
    return bits_of(parts) == 3;
  }
  return exact(X1, Y1, X2, Y2, x3, y3, X4, Y4);
}

}  // namespace orv2_geo::plane
