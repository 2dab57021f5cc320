// Directions, points by direction and distance, elevations and slopes.
#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/treatments.h"

namespace orv2_geo {

namespace {

// Ten digits: this class's own factor.
constexpr double radians_per_centesimal = 0.01570796327;

struct Vertex {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

struct Ranked {
  Vertex low;
  Vertex mid;
  Vertex high;
};

// Three blocks, each of which may overwrite the one before: the last that fits
// decides where elevations are equal.
Ranked ranked(const Vertex& v1, const Vertex& v2, const Vertex& v3) {
  const auto at_or_below = [](const Vertex& v, const Vertex& a, const Vertex& b) {
    return Checked(v.z) <= a.z && Checked(v.z) <= b.z;
  };
  const auto at_or_above = [](const Vertex& a, const Vertex& b) { return Checked(a.z) >= b.z; };
  Ranked r;
  if (at_or_below(v1, v2, v3)) r = at_or_above(v2, v3) ? Ranked{v1, v3, v2} : Ranked{v1, v2, v3};
  if (at_or_below(v2, v1, v3)) r = at_or_above(v1, v3) ? Ranked{v2, v3, v1} : Ranked{v2, v1, v3};
  if (at_or_below(v3, v1, v2)) r = at_or_above(v2, v1) ? Ranked{v3, v1, v2} : Ranked{v3, v2, v1};
  return r;
}

// A rise over a horizontal distance, from the lowest vertex.
struct Slope {
  double rise = 0.0;
  double distance = 0.0;
};

Slope steepest(const cgeo_Algorismos& self, const Ranked& r) {
  const auto& [low, mid, high] = r;
  if (Checked(low.z) == mid.z) {
    return {high.z, self.Distancia_Punto_Linea(high.x, high.y, low.x, low.y, mid.x, mid.y)};
  }
  if (Checked(high.z) == mid.z) {
    return {mid.z, self.Distancia_Punto_Linea(low.x, low.y, high.x, high.y, mid.x, mid.y)};
  }
  const double Mx = (Checked(high.x) + low.x) / 2.0;
  const double My = (Checked(low.y) + high.y) / 2.0;
  const double Mz = (Checked(high.z) + low.z) / 2.0;
  // Elevation zero, not Mz: the answer depends on the height of the triangle.
  const double elevation = 0.0;
  double Qx = 0.0;
  double Qy = 0.0;
  self.XY_de_Z_en_Recta(low.x, low.y, low.z, mid.x, mid.y, mid.z, Qx, Qy, elevation);
  return {Mz, self.Distancia_Punto_Linea(low.x, low.y, Mx, My, Qx, Qy)};
}

double slope_of(const cgeo_Algorismos& self, const Vertex& v1, const Vertex& v2, const Vertex& v3) {
  const bool first_level = Checked(v1.z) == v2.z;
  const bool second_level = Checked(v1.z) == v3.z;
  if (first_level && second_level) return 0.0;
  const Ranked r = ranked(v1, v2, v3);
  const Slope slope = steepest(self, r);
  if (Checked(slope.distance) == 0.0) return 0.0;
  return abs((Checked(slope.rise) - r.low.z) * 100.0 / slope.distance);
}

}  // namespace

void cgeo_Algorismos::recta_Angulo_y_Dist(const double& R1x1, const double& R1y1,
                                          const double& R1x2, const double& R1y2, double& Angulo,
                                          double& Distancia) const try {
  const Checked dy = Checked(R1y2) - R1y1;
  const Checked dx = Checked(R1x2) - R1x1;
  Distancia = sqrt(power(dy, 2.0) + power(dx, 2.0));
  if (Checked(Distancia) == 0.0) {
    Angulo = 0.0;
    return;
  }
  if (dy == 0.0) {
    Angulo = Checked(R1x2) < R1x1 ? 300.0 : 100.0;
    return;
  }
  if (dx == 0.0) {
    Angulo = Checked(R1y2) < R1y1 ? 200.0 : 0.0;
    return;
  }
  const Checked a = atan(dy / dx);
  const Checked c = a * 400.0 / 6.283185308;  // from the X axis, with this routine's own circle
  const bool third_quadrant = dy < 0.0 && dx < 0.0;
  const bool fourth_quadrant = dy < 0.0 && dx > 0.0;
  const double base =
      c > 0.0 ? (third_quadrant ? 300.0 : 100.0) : (fourth_quadrant ? 100.0 : 300.0);
  Angulo = base - c;
  if (Checked(Angulo) == 400.0) Angulo = 0.0;
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Algorismos::XY_dando_ANG_DIST(const double& Xbase, const double& YBase,
                                        const double& Angulo, const double& Distancia, double& XR,
                                        double& YR) const try {
  const Checked w = Checked(Angulo) * radians_per_centesimal;  // once, before XR is written
  XR = sin(w) * Distancia + Xbase;
  YR = cos(w) * Distancia + YBase;
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Algorismos::XY_de_Z_en_Recta(const double& RX1, const double& RY1, const double& rZ1,
                                       const double& RX2, const double& RY2, const double& rZ2,
                                       double& Px, double& Py, const double& PZ) const try {
  double a = 0.0;
  double d = 0.0;
  recta_Angulo_y_Dist(RX1, RY1, RX2, RY2, a, d);
  // Measured from the second end's elevation, and applied from the first end.
  const Checked e = d * (Checked(rZ2) - PZ) / (Checked(rZ2) - rZ1);
  const Checked w = Checked(a) * radians_per_centesimal;
  Px = sin(w) * e + RX1;
  Py = cos(w) * e + RY1;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Cota_en_alineacion(const double& X1, const double& Y1, const double& Z1,
                                           const double& X2, const double& Y2, const double& z2,
                                           const double& Px, const double& Py) const try {
  const auto length = [](Checked dy, Checked dx) -> Checked { return sqrt(dy * dy + dx * dx); };
  const Checked whole = length(Checked(Y2) - Y1, Checked(X2) - X1);
  const Checked from_end = length(Checked(Y2) - Py, Checked(X2) - Px);
  if (whole == 0.0) return Checked(z2) - 0.0;
  const Checked drop = from_end * (Checked(z2) - Z1) / whole;
  return z2 - drop;
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Triangulo_Cota_1p_interior(const double& Vx1, const double& Vy1,
                                                   const double& Vz1, const double& Vx2,
                                                   const double& Vy2, const double& Vz2,
                                                   const double& Vx3, const double& Vy3,
                                                   const double& Vz3, const double& Px,
                                                   const double& Py) const try {
  double xi = 0.0;
  double yi = 0.0;
  if (!Intersec_XY_2lineas(Vx1, Vy1, Px, Py, Vx2, Vy2, Vx3, Vy3, xi, yi)) return 0.0;
  const double zi = Cota_en_alineacion(Vx2, Vy2, Vz2, Vx3, Vy3, Vz3, xi, yi);
  return Cota_en_alineacion(Vx1, Vy1, Vz1, xi, yi, zi, Px, Py);
} catch (...) {
  leave_signed(registered_name);
}

double cgeo_Algorismos::Triangulo_pendiente(const double& Vx1, const double& Vy1, const double& Vz1,
                                            const double& Vx2, const double& Vy2, const double& Vz2,
                                            const double& Vx3, const double& Vy3,
                                            const double& Vz3) const try {
  // The handler ends in a return to a caller that was never recorded: whatever
  // fails inside leaves as number 3.
  return handled(
      registered_name,
      [&] {
        return slope_of(*this, {Vx1, Vy1, Vz1}, {Vx2, Vy2, Vz2}, {Vx3, Vy3, Vz3});
      },
      [](const RunFailure&) -> double { raise(failure::return_without_call); });
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
