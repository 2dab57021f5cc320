// restated_measures.h: measures of a point and a straight piece, stated once
// more.
#pragma once

#include <cstdint>
#include <cstdlib>

#include "orv2_geo/plane/single_variant.h"
#include "tests/plane/restatement.h"

namespace orv2_geo::plane_tests {

inline double restated_length(In x1, In y1, In x2, In y2) {
  Number ex = stated([&] { return x1 - x2; });
  Number ey = stated([&] { return y1 - y2; });
  return stated([&] { return runtime.sqrt(ey * ey + ex * ex); });
}

// The distance to the nearest point of the segment, or whether it is a point.
struct Nearest {
  bool point = false;
  double distance = 0.0;
};

inline Nearest restated_nearest(In Px, In Py, In E1x, In E1y, In E2x, In E2y) {
  Number dx = stated([&] { return E2x - E1x; });
  Number dy = stated([&] { return E2y - E1y; });
  if (dx == 0.0 && dy == 0.0) return {true, 0.0};
  Number u = stated([&] { return ((Px - E1x) * dx + (Py - E1y) * dy) / (dy * dy + dx * dx); });
  if (u < 0.0) return {false, restated_length(Px, Py, E1x, E1y)};
  if (u > 1.0) return {false, restated_length(Px, Py, E2x, E2y)};
  Number nearest_x = stated([&] { return u * dx + E1x; });
  Number nearest_y = stated([&] { return u * dy + E1y; });
  return {false, restated_length(Px, Py, nearest_x, nearest_y)};
}

inline double restated_distance(In Px, In Py, In X1, In Y1, In X2, In Y2) {
  const Nearest nearest = restated_nearest(Px, Py, X1, Y1, X2, Y2);
  return nearest.point ? restated_length(Px, Py, X1, Y1) : nearest.distance;
}

inline double restated_touch(In Px, In Py, In X1, In Y1, In X2, In Y2, In tolerance) {
  const Nearest nearest = restated_nearest(Px, Py, X1, Y1, X2, Y2);
  if (nearest.point) return restated_length(Px, Py, X1, Y1);
  return nearest.distance < tolerance ? -1.0 : 0.0;
}

inline Bool restated_near(In Px, In Py, In X1, In Y1, In X2, In Y2, In tolerance) {
  const Nearest nearest = restated_nearest(Px, Py, X1, Y1, X2, Y2);
  return nearest.point || nearest.distance <= tolerance;
}

inline double restated_endless(In x0, In y0, In X1, In Y1, In X2, In Y2) {
  if (X1 == X2) return stated([&] { return std::fabs(X1 - x0); });
  if (Y1 == Y2) return stated([&] { return std::fabs(Y1 - y0); });
  Number dx = stated([&] { return X2 - X1; });
  Number dy = stated([&] { return Y2 - Y1; });
  return stated([&] {
    return std::fabs(dy * x0 - dx * y0 + Y1 * X2 - X1 * Y2) / runtime.sqrt(dy * dy + dx * dx);
  });
}

template <class T>
std::int16_t restated_position(const volatile T& Px, const volatile T& Py, const volatile T& qx,
                               const volatile T& qy, const volatile T& Tx, const volatile T& Ty) {
  if ((qx < Px && Px < Tx) || (qy < Py && Py < Ty)) return 1;
  if ((Tx < Px && Px < qx) || (Ty < Py && Py < qy)) return 1;
  if ((Px < qx && qx < Tx) || (Py < qy && qy < Ty)) return 3;
  if ((Tx < qx && qx < Px) || (Ty < qy && qy < Py)) return 3;
  return 2;
}

inline std::int16_t restated_position_of_singles(const volatile float& Px, const volatile float& Py,
                                                 const volatile float& qx, const volatile float& qy,
                                                 const volatile float& Tx,
                                                 const volatile float& Ty) {
  const auto wide = [](const volatile float& v) { return static_cast<double>(v); };
  const auto single = [](auto&& statement) {
    return static_cast<float>(
        stated([&] { return static_cast<double>(static_cast<float>(statement())); }));
  };
  const float width = single([&] { return std::fabs(wide(qx) - wide(Px)); });
  const float height = single([&] { return std::fabs(wide(qy) - wide(Py)); });
  const float m = height < width ? width : height;
  const float e = single([&] {
    return std::fabs((wide(Tx) - wide(Px)) * (wide(qy) - wide(Py)) -
                     (wide(qx) - wide(Px)) * (wide(Ty) - wide(Py)));
  });
  if (!(e < m)) return 0;
  return restated_position<float>(Px, Py, qx, qy, Tx, Ty);
}

// In 64 bits, which hold every intermediate result.
inline float restated_whole(std::int64_t X1, std::int64_t Y1, std::int64_t X2, std::int64_t Y2) {
  const auto fits = [](std::int64_t n) {
    if (n != static_cast<std::int32_t>(n)) raise(failure::overflow);
    return n;
  };
  if (X1 == X2) return static_cast<float>(fits(std::abs(fits(Y2 - Y1))));
  if (Y1 == Y2) return static_cast<float>(fits(std::abs(fits(X2 - X1))));
  const std::int64_t dy = fits(Y2 - Y1);
  const std::int64_t dx = fits(X2 - X1);
  const std::int64_t n = fits(fits(dy * dy) + fits(dx * dx));
  return static_cast<float>(runtime.sqrt(static_cast<double>(n)));
}

}  // namespace orv2_geo::plane_tests
