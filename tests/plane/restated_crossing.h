// restated_crossing.h: how two pieces meet, stated once more.
#pragma once

#include "tests/plane/restatement.h"

namespace orv2_geo::plane_tests {

inline Bool restated_crossing(In X1, In Y1, In X2, In Y2, In x3, In y3, In X4, In Y4) {
  bool A = false;
  if (X1 == X2) {
    A = (X4 <= X1 && x3 >= X1) || (X4 >= X1 && x3 <= X1);
  } else if (Y1 == Y2) {
    A = (Y4 <= Y1 && y3 >= Y1) || (Y4 >= Y1 && y3 <= Y1);
  } else {
    Number a = stated([&] { return (y3 - Y1) * (X2 - X1); });
    Number b = stated([&] { return (x3 - X1) * (Y2 - Y1); });
    Number c = stated([&] { return (Y4 - Y1) * (X2 - X1); });
    Number d = stated([&] { return (Y2 - Y1) * (X4 - X1); });
    A = (c <= d && a >= b) || (c >= d && a <= b);
  }
  bool B = false;
  if (x3 == X4) {
    B = (X2 <= x3 && X1 >= x3) || (X2 >= x3 && X1 <= x3);
  } else if (y3 == Y4) {
    B = (Y2 <= y3 && Y1 >= y3) || (Y2 >= y3 && Y1 <= y3);
  } else {
    Number p = stated([&] { return (X1 - x3) * (Y4 - y3); });
    Number q = stated([&] { return (Y1 - y3) * (X4 - x3); });
    Number r = stated([&] { return (Y2 - y3) * (X4 - x3); });
    Number t = stated([&] { return (Y4 - y3) * (X2 - x3); });
    B = (r <= t && q >= p) || (r >= t && q <= p);
  }
  return A && B;
}

inline Bool restated_meeting(In X1, In Y1, In X2, In Y2, In x3, In y3, In X4, In Y4, Out xi,
                             Out yi) {
  if (X1 == X2 && x3 == X4) return false;
  if (X1 == X2) {
    xi = X1;
    Number quotient = stated([&] { return ((Y4 - y3) * (xi - x3)) / (X4 - x3); });
    yi = stated([&] { return quotient + y3; });
    return true;
  }
  if (x3 == X4) {
    xi = x3;
    Number quotient = stated([&] { return ((Y2 - Y1) * (xi - X1)) / (X2 - X1); });
    yi = stated([&] { return quotient + Y1; });
    return true;
  }
  Number m1 = stated([&] { return (Y2 - Y1) / (X2 - X1); });
  Number b1 = stated([&] { return Y1 - m1 * X1; });
  Number m2 = stated([&] { return (Y4 - y3) / (X4 - x3); });
  Number b2 = stated([&] { return y3 - m2 * x3; });
  if (m1 == m2) return false;
  xi = stated([&] { return (b2 - b1) / (m1 - m2); });
  yi = stated([&] { return xi * m1 + b1; });
  return true;
}

inline Bool restated_cut(In X1, In Y1, In X2, In Y2, In x3, In y3, In X4, In Y4, Out xi, Out yi) {
  if (!restated_crossing(X1, Y1, X2, Y2, x3, y3, X4, Y4)) return false;
  return restated_meeting(X1, Y1, X2, Y2, x3, y3, X4, Y4, xi, yi);
}

}  // namespace orv2_geo::plane_tests
