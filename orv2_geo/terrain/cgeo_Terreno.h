// cgeo_Terreno.h: elevations along a terrain profile.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// A terrain profile: pairs of distance along an axis and elevation, numbered
/// from 1. A pure function table.
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
class ORV2_PUBLIC cgeo_Terreno {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Terreno";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Writes Cotas anew, with bounds 0 to the upper bound of DistOr: Cotas(i) is the
  /// elevation of the profile (Xterr, Yterr) at DistOr(i), Cotas(0) is 0. What Cotas
  /// held is dropped first. Failures as for TF_Y_del_Terreno_dando_su_X, with the
  /// elevations so far in Cotas; 10 when it is locked; 7.
  void TR_Cotas_en_unTerreno_dando_DistOr(const DoubleArray& Xterr, const DoubleArray& Yterr,
                                          const DoubleArray& DistOr, DoubleArray& Cotas) const;

  /// Elevation at distance X1 of the profile whose points 1 to n have distances X,
  /// ascending, and elevations Y; n is the upper bound of X. Linear between points,
  /// extended along the end stretches beyond them. Where points share X1 the first
  /// answers, at the last point of the profile the last. 0 for fewer than two
  /// points. Nothing is written. Failures: 9 for an unallocated X, or an element
  /// that X or Y does not hold; 6. A linear walk from the start.
  double TF_Y_del_Terreno_dando_su_X(const DoubleArray& X, const DoubleArray& Y,
                                     const double& X1) const;

  /// Elevation at X1 of the line through (Xt1, Yt1) and (Xt2, Yt2), beyond its ends
  /// too; Yt1 where Xt1 and Xt2 are equal. Nothing is written. Failure 6.
  /// Source: linear interpolation.
  double TF_ProyeccVertical_de_X_en_1R(const double& Xt1, const double& Yt1, const double& Xt2,
                                       const double& Yt2, const double& X1) const;

  /// Lowest of the elevations Y(1) to its upper bound; 0 when there is only one.
  /// Failures: 9 when unallocated or without an element 1; 6 for NaN.
  double TF_Yminima_del_Terreno(const DoubleArray& Y) const;

  /// Highest of the elevations, as TF_Yminima_del_Terreno.
  double TF_Ymaxima_del_Terreno(const DoubleArray& Y) const;

  /// Whether the distances DistO(1) to its upper bound never fall. At the first that
  /// does, a critical box tells the user, and the answer is false. Failure 9 when
  /// unallocated.
  Bool TF_DistaOrigen_estan_ordenadas(const DoubleArray& DistO) const;

  /// Sorts points 1 to Ptos by DistO and drops each point that equals its neighbour
  /// in distance and elevation, exactly. Writes Ptos and, anew, DistO and Z with
  /// bounds 0 to Ptos, element 0 being 0. Fewer than two points: nothing changes.
  /// Points of equal distance change places at each comparison of the exchange
  /// sort, which is always done at full length.
  /// Failures: 9 for a negative Ptos, or one beyond the arrays, which are then
  /// partly sorted; 10 when one is locked; 7.
  void Ordena_terreno_y_quita_repetidos(std::int32_t& Ptos, DoubleArray& DistO,
                                        DoubleArray& Z) const;
};

}  // namespace orv2_geo
