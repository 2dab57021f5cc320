// cgeo_Geometria.h: bearings, distances and line intersection.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// The surveyor's view of straight lines: bearings in centesimal units (0 on
/// +Y, clockwise), distances, parallels, intersections. A GF_ method returns
/// its answer; a GR_ method writes it to its parameters. A pure function table.
///
/// Coordinates are plane, X to the east and Y to the north, in the caller's unit.
/// Circle constants are rounded to ten digits and show in the results: the
/// bearing of a perfect diagonal is not exactly 50. Parameters are read where
/// they are used, so one variable may stand for several. Failures of all members:
/// 6 for an overflow or a comparison with NaN; what had been written stays.
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
class ORV2_PUBLIC cgeo_Geometria {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Geometria";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Bearing from point 1 to point 2: centesimal, 0 on +Y, clockwise, from 0 to
  /// below 400. A line along an axis gives 0, whichever way it runs, and so do two
  /// equal points: GR_AngDist_de_1Recta tells the axes apart. Nothing is written.
  double GF_Angulo_de_1Recta(const double& R1x1, const double& R1y1, const double& R1x2,
                             const double& R1y2) const;

  /// Writes Distancia, the length from point 1 to point 2, and then Angulo, its
  /// bearing (centesimal, 0 on +Y, clockwise, below 400). The axes are exactly 0,
  /// 100, 200 and 300; two equal points give 0 for both. Failure 6 when a square
  /// overflows, with nothing written, or dy / dx, with Distancia written.
  void GR_AngDist_de_1Recta(const double& R1x1, const double& R1y1, const double& R1x2,
                            const double& R1y2, double& Angulo, double& Distancia) const;

  /// Distance between two points, in a variant that holds an f64. Nothing is
  /// written. Failure 6 when a square overflows.
  Variant GF_Distancia(const double& X1, const double& Y1, const double& X2,
                       const double& Y2) const;

  /// The same for f32 coordinates, worked out in f64 and not rounded back: the
  /// variant holds an f64.
  Variant GF_Distancia_S(const float& X1, const float& Y1, const float& X2, const float& Y2) const;

  /// Writes X and then Y, the point at Distancia from (Xinic, Yinic) along the
  /// bearing Angulo (centesimal, any value), with a factor of 0.01570796327. Angulo
  /// is read again for Y.
  void GR_XY_de_AngDist(const double& Xinic, const double& Yinic, const double& Angulo,
                        const double& Distancia, double& X, double& Y) const;

  /// GR_Intersec_2_Rectas for f32 coordinates, for the sake of its flag alone: X and
  /// Y are read but never written. Writes Paralelas.
  void GR_Intersec_2_Rectas_S(const float& R1x1, const float& R1y1, const float& R1x2,
                              const float& R1y2, const float& R2x1, const float& R2y1,
                              const float& R2x2, const float& R2y2, const float& X, const float& Y,
                              Bool& Paralelas) const;

  /// Writes X and Y, the crossing of the endless lines R1 and R2, each through two
  /// points, and Paralelas. Shared end points and lines along the axes answer with
  /// stored coordinates, bit for bit; two upright lines are never called parallel
  /// but answer (R1x1, R2y2), and two equal lines the first point of R1. Other
  /// lines cross by inverse slopes; equal ones set Paralelas, with X as it was and Y
  /// too unless a line is level. A crossing beyond 9999999 in X or Y becomes the
  /// second end of R1. Paralelas is written first, as false.
  void GR_Intersec_2_Rectas(const double& R1x1, const double& R1y1, const double& R1x2,
                            const double& R1y2, const double& R2x1, const double& R2y1,
                            const double& R2x2, const double& R2y2, double& X, double& Y,
                            Bool& Paralelas) const;

  /// Writes SECORTAN: whether segments R1 and R2 cross, within 0.01 on the sum of
  /// the distances from the crossing to a segment's ends (inclusive for R2, strict
  /// for R1), and X and Y as GR_Intersec_2_Rectas does: a crossing off the segments
  /// stays there. One beyond 9999999 off R1 becomes the second end of R1. SECORTAN
  /// is written once the crossing is known.
  void GR_Se_cortan_2_rectas(const double& R1x1, const double& R1y1, const double& R1x2,
                             const double& R1y2, const double& R2x1, const double& R2y1,
                             const double& R2x2, const double& R2y2, double& X, double& Y,
                             Bool& SECORTAN) const;

  /// The parallel flag of GR_Intersec_2_Rectas, despite the name: true when the
  /// lines are parallel, false when a point was written to X and Y. No segment is
  /// tested.
  Bool GF_Se_cortan_2_rectas(const double& R1x1, const double& R1y1, const double& R1x2,
                             const double& R1y2, const double& R2x1, const double& R2y1,
                             const double& R2x2, const double& R2y2, double& X, double& Y) const;

  /// Angle at P2 between P1 and P3, centesimal, from 0 to 200, without a sense. An
  /// arm of no length has bearing 0. Nothing is written.
  double GF_angulo_3_puntos(const double& P1x, const double& P1y, const double& P2x,
                            const double& P2y, const double& P3x, const double& P3y) const;

  /// Writes (RX1, RY1) and (RX2, RY2), one after the other: the line from point 1 to
  /// point 2 moved by distanc, to the right of the direction of travel when it is
  /// positive. A line of no length has bearing 0 and moves towards +X.
  void GR_Paralela(const double& X1, const double& Y1, const double& X2, const double& Y2,
                   double& RX1, double& RY1, double& RX2, double& RY2, const double& distanc) const;
};

}  // namespace orv2_geo
