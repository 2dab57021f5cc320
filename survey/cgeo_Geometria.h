// cgeo_Geometria.h: bearings, distances and line intersection.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// The surveyor's view of straight lines: bearings in centesimal units (0 on
/// +Y, clockwise), distances, parallels, intersections. A GF_ method returns
/// its answer; a GR_ method writes it to its parameters. A pure function table.
class ORV2_PUBLIC cgeo_Geometria {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Geometria";

  /// The members in interface order.
  static const ClassDescription& description();

  double GF_Angulo_de_1Recta(const double& R1x1, const double& R1y1, const double& R1x2,
                             const double& R1y2) const;
  void GR_AngDist_de_1Recta(const double& R1x1, const double& R1y1, const double& R1x2,
                            const double& R1y2, double& Angulo, double& Distancia) const;
  Variant GF_Distancia(const double& X1, const double& Y1, const double& X2,
                       const double& Y2) const;
  Variant GF_Distancia_S(const float& X1, const float& Y1, const float& X2, const float& Y2) const;
  void GR_XY_de_AngDist(const double& Xinic, const double& Yinic, const double& Angulo,
                        const double& Distancia, double& X, double& Y) const;
  void GR_Intersec_2_Rectas_S(const float& R1x1, const float& R1y1, const float& R1x2,
                              const float& R1y2, const float& R2x1, const float& R2y1,
                              const float& R2x2, const float& R2y2, const float& X, const float& Y,
                              Bool& Paralelas) const;
  void GR_Intersec_2_Rectas(const double& R1x1, const double& R1y1, const double& R1x2,
                            const double& R1y2, const double& R2x1, const double& R2y1,
                            const double& R2x2, const double& R2y2, double& X, double& Y,
                            Bool& Paralelas) const;
  void GR_Se_cortan_2_rectas(const double& R1x1, const double& R1y1, const double& R1x2,
                             const double& R1y2, const double& R2x1, const double& R2y1,
                             const double& R2x2, const double& R2y2, double& X, double& Y,
                             Bool& SECORTAN) const;
  Bool GF_Se_cortan_2_rectas(const double& R1x1, const double& R1y1, const double& R1x2,
                             const double& R1y2, const double& R2x1, const double& R2y1,
                             const double& R2x2, const double& R2y2, double& X, double& Y) const;
  double GF_angulo_3_puntos(const double& P1x, const double& P1y, const double& P2x,
                            const double& P2y, const double& P3x, const double& P3y) const;
  void GR_Paralela(const double& X1, const double& Y1, const double& X2, const double& Y2,
                   double& RX1, double& RY1, double& RX2, double& RY2, const double& distanc) const;
};

}  // namespace orv2_geo
