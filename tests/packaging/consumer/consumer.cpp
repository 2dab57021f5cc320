// A C++ program on the installed library: directly and by name, with a failure
// on its way out, and the C header beside.
#include <orv2_geo/orv2_geo.h>

#include <iostream>
#include <orv2_geo/orv2_geo.hpp>

namespace {

double azimuth_by_name(double dx, double dy) {
  double azimuth = 0.0;
  const orv2_geo::Argument arguments[] = {dx, dy, orv2_geo::ref(azimuth)};
  orv2_geo::create("Orv2_Geo.cgeo_Algorismos")->call("azimut", arguments);
  return azimuth;
}

double azimuth_directly(double dx, double dy) {
  double azimuth = 0.0;
  orv2_geo::cgeo_Algorismos().Azimut(dx, dy, azimuth);
  return azimuth;
}

int failure_of_a_logarithm() {
  try {
    orv2_geo::cgeo_FuncDeriv().F_LogN(0.0);
    return 0;
  } catch (const orv2_geo::RunFailure& failure) {
    return failure.number();
  }
}

}  // namespace

int main() {
  const bool right = azimuth_by_name(-1.0, 0.0) == 300.0 && azimuth_directly(-1.0, 0.0) == 300.0 &&
                     failure_of_a_logarithm() == 5 &&
                     orv2_class_count() == orv2_geo::catalogue().size();
  std::cout << (right ? "right\n" : "wrong\n");
  return right ? 0 : 1;
}
