// restated_cuts.h: where a line cuts a chain, stated once more.
#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"
#include "tests/plane/restated_crossing.h"

namespace orv2_geo::plane_tests {

/// An array of the restatement, with its own bounds.
struct PlainArray {
  bool allocated = false;
  std::int32_t lower = 0;
  std::vector<double> elements;

  double& operator()(std::int32_t index) {
    const std::int64_t place = std::int64_t{index} - lower;
    if (!allocated || place < 0 || place >= static_cast<std::int64_t>(elements.size()))
      raise(failure::subscript_out_of_range);
    return elements[static_cast<std::size_t>(place)];
  }
  void size(std::int32_t upper, bool keep) {
    if (!keep || !allocated || lower != 0) elements.clear();
    elements.resize(static_cast<std::size_t>(upper) + 1, 0.0);
    lower = 0;
    allocated = true;
  }
};

inline void restated_order(std::int32_t n, const PlainArray& D, std::vector<std::int32_t>& Order) {
  if (n < 1) return;
  Order.assign(static_cast<std::size_t>(n) + 1, 0);
  PlainArray C = D;
  for (std::int32_t i = 1; i <= n; ++i) Order[i] = i;
  for (std::int32_t i = 1; i <= n - 1; ++i) {
    for (std::int32_t j = 1; j <= n - i; ++j) {
      if (C(j) >= C(j + 1)) {
        std::swap(C(j), C(j + 1));
        std::swap(Order[j], Order[j + 1]);
      }
    }
  }
}

inline void restated_cuts(In XR1, In YR1, In XR2, In YR2, const std::int32_t& Nv, PlainArray& Vx,
                          PlainArray& Vy, std::int32_t& Pc, PlainArray& Xc, PlainArray& Yc) {
  Pc = 0;
  PlainArray Xt, Yt, Dist;
  const std::int32_t last = Nv;
  for (std::int32_t i = 2; i <= last; ++i) {
    volatile double x = 0.0;
    volatile double y = 0.0;
    if (restated_cut(XR1, YR1, XR2, YR2, Vx(i - 1), Vy(i - 1), Vx(i), Vy(i), x, y).bits == -1) {
      Pc = Pc + 1;
      Xt.size(Pc, true);
      Yt.size(Pc, true);
      Xt(Pc) = x;
      Yt(Pc) = y;
    }
  }
  if (Pc == 0) return;
  Dist.size(Pc, false);
  for (std::int32_t i = 1; i <= Pc; ++i) {
    Number x = Xt(i), y = Yt(i);
    Dist(i) =
        stated([&] { return runtime.sqrt(runtime.pow(XR1 - x, 2.0) + runtime.pow(YR1 - y, 2.0)); });
  }
  std::vector<std::int32_t> Order;
  restated_order(Pc, Dist, Order);
  Xc.size(Pc, false);
  Xc.elements.assign(Xc.elements.size(), 0.0);
  Yc.size(Pc, false);
  Yc.elements.assign(Yc.elements.size(), 0.0);
  std::int32_t k = 0;
  for (std::int32_t i = 1; i <= Pc; ++i) {
    const std::int32_t j = Order[i];
    if ((Xc(k) - 0.001 >= Xt(j) || i < 2) || Xc(k) + 0.001 <= Xt(j) || Yc(k) - 0.001 >= Yt(j) ||
        Yc(k) + 0.001 <= Yt(j)) {
      k = k + 1;
      Xc(k) = Xt(j);
      Yc(k) = Yt(j);
    }
  }
  Xc.size(k, true);
  Yc.size(k, true);
  Pc = k;
}

inline void expect_same(const DoubleArray& got, const PlainArray& expected) {
  ASSERT_EQ(got.allocated(), expected.allocated);
  if (!expected.allocated) return;
  ASSERT_EQ(got.lower(), expected.lower);
  ASSERT_EQ(got.count(), expected.elements.size());
  for (std::size_t i = 0; i < expected.elements.size(); ++i) {
    ASSERT_EQ(bits(got.data()[i]), bits(expected.elements[i])) << i;
  }
}

}  // namespace orv2_geo::plane_tests
