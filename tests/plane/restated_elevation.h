// restated_elevation.h: directions, elevations and slopes, stated once more.
#pragma once

#include "tests/plane/restated_crossing.h"
#include "tests/plane/restated_measures.h"

namespace orv2_geo::plane_tests {

inline void restated_direction(In R1x1, In R1y1, In R1x2, In R1y2, Out Angulo, Out Distancia) {
  Number dy = stated([&] { return R1y2 - R1y1; });
  Number dx = stated([&] { return R1x2 - R1x1; });
  Distancia = stated([&] { return runtime.sqrt(runtime.pow(dy, 2.0) + runtime.pow(dx, 2.0)); });
  if (Distancia == 0.0) {
    Angulo = 0.0;
    return;
  }
  if (dy == 0.0) {
    if (R1x2 < R1x1) {
      Angulo = 300.0;
    } else {
      Angulo = 100.0;
    }
    return;
  }
  if (dx == 0.0) {
    if (R1y2 < R1y1) {
      Angulo = 200.0;
    } else {
      Angulo = 0.0;
    }
    return;
  }
  Number quotient = stated([&] { return dy / dx; });
  Number a = stated([&] { return runtime.atan(quotient); });
  Number c = stated([&] { return (a * 400.0) / 6.283185308; });
  double base = 0.0;
  if (c > 0.0) {
    base = (dy < 0.0 && dx < 0.0) ? 300.0 : 100.0;
  } else {
    base = (dy < 0.0 && dx > 0.0) ? 100.0 : 300.0;
  }
  Angulo = stated([&] { return base - c; });
  if (Angulo == 400.0) Angulo = 0.0;
}

inline void restated_point(In Xbase, In YBase, In Angulo, In Distancia, Out XR, Out YR) {
  Number w = stated([&] { return Angulo * 0.01570796327; });
  XR = stated([&] { return runtime.sin(w) * Distancia + Xbase; });
  YR = stated([&] { return runtime.cos(w) * Distancia + YBase; });
}

inline void restated_point_of_elevation(In RX1, In RY1, In rZ1, In RX2, In RY2, In rZ2, Out Px,
                                        Out Py, In PZ) {
  volatile double a = 0.0;
  volatile double d = 0.0;
  restated_direction(RX1, RY1, RX2, RY2, a, d);
  Number e = stated([&] { return (d * (rZ2 - PZ)) / (rZ2 - rZ1); });
  Number w = stated([&] { return a * 0.01570796327; });
  Px = stated([&] { return runtime.sin(w) * e + RX1; });
  Py = stated([&] { return runtime.cos(w) * e + RY1; });
}

inline double restated_elevation(In X1, In Y1, In Z1, In X2, In Y2, In z2, In Px, In Py) {
  Number L = stated([&] { return runtime.sqrt((Y2 - Y1) * (Y2 - Y1) + (X2 - X1) * (X2 - X1)); });
  Number l = stated([&] { return runtime.sqrt((Y2 - Py) * (Y2 - Py) + (X2 - Px) * (X2 - Px)); });
  volatile double drop = 0.0;
  if (L != 0.0) drop = stated([&] { return (l * (z2 - Z1)) / L; });
  return stated([&] { return z2 - drop; });
}

inline double restated_inside(In Vx1, In Vy1, In Vz1, In Vx2, In Vy2, In Vz2, In Vx3, In Vy3,
                              In Vz3, In Px, In Py) {
  volatile double xi = 0.0;
  volatile double yi = 0.0;
  if (!restated_meeting(Vx1, Vy1, Px, Py, Vx2, Vy2, Vx3, Vy3, xi, yi)) return 0.0;
  Number zi = restated_elevation(Vx2, Vy2, Vz2, Vx3, Vy3, Vz3, xi, yi);
  return restated_elevation(Vx1, Vy1, Vz1, xi, yi, zi, Px, Py);
}

struct RestatedVertex {
  double x = 0.0;
  double y = 0.0;
  double z = 0.0;
};

inline double restated_slope_inside(const RestatedVertex& v1, const RestatedVertex& v2,
                                    const RestatedVertex& v3) {
  if (v1.z == v2.z && v1.z == v3.z) return 0.0;
  RestatedVertex Low, Mid, High;
  if (v1.z <= v2.z && v1.z <= v3.z) {
    Low = v1;
    if (v2.z >= v3.z) {
      High = v2;
      Mid = v3;
    } else {
      High = v3;
      Mid = v2;
    }
  }
  if (v2.z <= v1.z && v2.z <= v3.z) {
    Low = v2;
    if (v1.z >= v3.z) {
      High = v1;
      Mid = v3;
    } else {
      High = v3;
      Mid = v1;
    }
  }
  if (v3.z <= v1.z && v3.z <= v2.z) {
    Low = v3;
    if (v2.z >= v1.z) {
      High = v2;
      Mid = v1;
    } else {
      High = v1;
      Mid = v2;
    }
  }
  volatile double d = 0.0;
  volatile double rise = 0.0;
  if (Low.z == Mid.z) {
    d = restated_distance(High.x, High.y, Low.x, Low.y, Mid.x, Mid.y);
    if (d == 0.0) return 0.0;
    rise = High.z;
  } else if (High.z == Mid.z) {
    d = restated_distance(Low.x, Low.y, High.x, High.y, Mid.x, Mid.y);
    if (d == 0.0) return 0.0;
    rise = Mid.z;
  } else {
    Number hx = High.x, hy = High.y, hz = High.z, lx = Low.x, ly = Low.y, lz = Low.z;
    Number Mx = stated([&] { return (hx + lx) / 2.0; });
    Number My = stated([&] { return (ly + hy) / 2.0; });
    Number Mz = stated([&] { return (hz + lz) / 2.0; });
    Number elevation = 0.0;
    volatile double Qx = 0.0;
    volatile double Qy = 0.0;
    restated_point_of_elevation(Low.x, Low.y, Low.z, Mid.x, Mid.y, Mid.z, Qx, Qy, elevation);
    d = restated_distance(Low.x, Low.y, Mx, My, Qx, Qy);
    if (d == 0.0) return 0.0;
    rise = Mz;
  }
  Number floor = Low.z;
  return stated([&] { return std::fabs(((rise - floor) * 100.0) / d); });
}

inline double restated_slope(In Vx1, In Vy1, In Vz1, In Vx2, In Vy2, In Vz2, In Vx3, In Vy3,
                             In Vz3) {
  try {
    return restated_slope_inside({Vx1, Vy1, Vz1}, {Vx2, Vy2, Vz2}, {Vx3, Vy3, Vz3});
  } catch (const RunFailure&) {
    raise(failure::return_without_call);
  }
}

}  // namespace orv2_geo::plane_tests
