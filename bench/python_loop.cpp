// The loop that a bulk call from Python stands for.
#include <cstddef>

#include "orv2_geo/orv2_geo.hpp"

extern "C" __attribute__((visibility("default"))) void azimuths(const double* dx, const double* dy,
                                                                double* aZ, std::size_t count) {
  const orv2_geo::cgeo_Algorismos algorithms;
  for (std::size_t i = 0; i < count; ++i) algorithms.Azimut(dx[i], dy[i], aZ[i]);
}
