// cgeo_api.h: point in polygon through a region.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// Point in polygon on the lattice of hundredths of a unit.
class ORV2_PUBLIC cgeo_api {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_api";

  /// The members in interface order.
  static const ClassDescription& description();

  Bool Pto_in_Poligono(const DoubleArray& XX, const DoubleArray& YY, const std::int32_t& nVer,
                       const double& xp, const double& yp, std::int16_t& Loc);

 private:
  std::int32_t region_ = 0;  // handle of the region of the call in progress
};

}  // namespace orv2_geo
