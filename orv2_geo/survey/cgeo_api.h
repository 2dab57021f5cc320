// cgeo_api.h: point in polygon through a region.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// Point in polygon on the lattice of hundredths of a unit, for rings that may
/// cross themselves. An object holds no state: calls may overlap.
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
class ORV2_PUBLIC cgeo_api {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_api";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Whether the point (xp, yp) is inside a ring. (Winding number: inside is what
  /// the ring winds around any number of times but none, also where it crosses or
  /// overlaps itself.)
  ///
  /// The ring's vertices are XX(1), YY(1) to XX(nVer - 1), YY(nVer - 1), in
  /// metres: nVer counts a closed ring whose last vertex repeats the first, and
  /// vertex nVer is never read, nor is element 0. A ring passed without the
  /// repetition loses its last vertex.
  ///
  /// Vertices and point are rounded to hundredths, ties to the even one, and the
  /// answer is exact for these: a point on an edge of low X or low Y is inside,
  /// one on an edge of high X or high Y outside, so that areas that share an edge
  /// share no point. A ring smaller than a hundredth holds nothing.
  ///
  /// Loc is written only with -1, when fewer than two vertices make no region
  /// (nVer 1 or 2); the answer is then false, without a message.
  ///
  /// Raises nothing. Failures are shown ("Pto en Poligono - Error nº ") and the
  /// answer is false: 6 for a coordinate beyond about 21474836.47 in absolute
  /// value; 9 for nVer below 1 and for arrays unallocated or without the elements
  /// 1 to nVer - 1.
  Bool Pto_in_Poligono(const DoubleArray& XX, const DoubleArray& YY, const std::int32_t& nVer,
                       const double& xp, const double& yp, std::int16_t& Loc) const;
};

}  // namespace orv2_geo
