// A line drawn dot by dot on a surface of the caller.
#include <algorithm>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/checked_integer.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/plane/single_variant.h"

namespace orv2_geo {

namespace {

// One dot: step flag, pen by reference, colour. The surface may move the pen,
// and may drop its own last reference meanwhile.
void set_dot(const ObjectRef& f, double& px, double& py) {
  const Argument arguments[] = {std::int16_t{0}, ref(px), ref(py), std::int16_t{0}};
  const ObjectRef surface(f.get());  // one reference of its own
  in_settings_of_host([&] { surface->call("PSet", arguments); });
}

}  // namespace

void cgeo_Algorismos::Linea_a_puntos(const ObjectRef& f, const double& X1, const double& Y1,
                                     const double& X2, const double& Y2) const try {
  const Checked16 dx = to_i16(Checked(X2) - X1);
  const Checked16 dy = to_i16(Checked(Y2) - Y1);
  const Checked16 longer = std::max(abs(dx), abs(dy));
  const std::int16_t n = to_i16(Checked(longer.value()) + 1.0);
  const Checked sx = Checked(dx.value()) / n;
  const Checked sy = Checked(dy.value()) / n;
  double px = Checked(X1) + 0.5;
  double py = Checked(Y1) + 0.5;
  for (std::int32_t i = 1; i <= n; ++i) {
    set_dot(f, px, py);
    px = px + sx;
    py = py + sy;
  }
  set_dot(f, px, py);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Algorismos::Linea_a_puntos_s(const ObjectRef& f, const float& X1, const float& Y1,
                                       const float& X2, const float& Y2) const try {
  plane::single_variant(*this, &cgeo_Algorismos::Linea_a_puntos, f, X1, Y1, X2, Y2);
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
