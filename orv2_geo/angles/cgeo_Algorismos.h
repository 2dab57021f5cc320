// cgeo_Algorismos.h: plane geometry on coordinates handed in by reference.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// Plane geometry: how segments meet, distances, polygon cuts, triangles, and
/// the angle helpers. A pure function table: no state, no unit but the
/// caller's. Every routine has constants and edges of its own; where two look
/// alike, both are meant as they stand.
///
/// Directions, unless a member says otherwise, are centesimal azimuths: 400
/// units a circle, 0 on +Y, clockwise, 100 on +X. Coordinates and elevations
/// share one unit. Arguments by reference are read where a routine uses them,
/// so one variable may stand for several, outputs included.
///
/// Failures of all members: 6 for an overflow, an invalid operation (0 divided
/// by 0) or a comparison with NaN; others are told at the member. What had been
/// written before a failure stays written.
///
/// A member that ends in _s is, unless it says otherwise, the member without it
/// in f32: inputs are widened; outputs start at 0.0 and are always written, so
/// with 0.0 where the other would leave them; one beyond f32 is failure 6,
/// while a result beyond f32 comes back as an infinity.
///
/// Expects the usual floating-point settings: see UsualFloatingPoint.
class ORV2_PUBLIC cgeo_Algorismos {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Algorismos";

  /// The members in interface order.
  static const ClassDescription& description();

  /// Se_cruzan_2lineas in f32 (the s is double in its name).
  Bool se_cruzan_2lineass_s(const float& X1, const float& Y1, const float& X2, const float& Y2,
                            const float& x3, const float& y3, const float& X4,
                            const float& Y4) const;

  /// Whether segment (X1, Y1)-(X2, Y2) and segment (x3, y3)-(X4, Y4) touch or
  /// cross: neither has both ends strictly on one side of the other's line.
  /// Touching counts, and there is no tolerance. The test is by lines, not by
  /// extents: segments of one line pass it even when they lie apart. A segment
  /// of zero length counts as vertical. Axis-parallel lines are compared
  /// directly, others by cross products. Nothing is written. Failure 6 when a
  /// product overflows, from differences of about 1e154.
  Bool Se_cruzan_2lineas(const double& X1, const double& Y1, const double& X2, const double& Y2,
                         const double& x3, const double& y3, const double& X4,
                         const double& Y4) const;

  /// Intersec_XY_2lineas in f32: xi and yi become 0.0 where there is no point.
  Bool Intersec_XY_2lineas_s(const float& X1, const float& Y1, const float& X2, const float& Y2,
                             const float& x3, const float& y3, const float& X4, const float& Y4,
                             float& xi, float& yi) const;

  /// The point (xi, yi) in which the endless lines through (X1, Y1), (X2, Y2) and
  /// through (x3, y3), (X4, Y4) meet. False, with xi and yi as they were, when
  /// both are vertical or their slopes are exactly equal; nearly parallel lines
  /// meet far away. A line with two equal points counts as vertical. Writes xi,
  /// then yi. Failure 6 when a slope or a coordinate overflows; xi may have been
  /// written by then. Slopes and intercepts: y = m x + b.
  Bool Intersec_XY_2lineas(const double& X1, const double& Y1, const double& X2, const double& Y2,
                           const double& x3, const double& y3, const double& X4, const double& Y4,
                           double& xi, double& yi) const;

  /// Cruce_XY_2lineas in f32: xi and yi become 0.0 where there is no point.
  Bool Cruce_XY_2lineas_s(const float& X1, const float& Y1, const float& X2, const float& Y2,
                          const float& x3, const float& y3, const float& X4, const float& Y4,
                          float& xi, float& yi) const;

  /// The point (xi, yi) in which two segments meet: Intersec_XY_2lineas for those
  /// that pass Se_cruzan_2lineas. False, with xi and yi as they were, for all
  /// others, and for segments of one line: a shared stretch has no single point,
  /// and none is made up. Failures as for both.
  Bool Cruce_XY_2lineas(const double& X1, const double& Y1, const double& X2, const double& Y2,
                        const double& x3, const double& y3, const double& X4, const double& Y4,
                        double& xi, double& yi) const;

  /// Linea_a_puntos in f32. The surface still gets its pen in f64.
  void Linea_a_puntos_s(const ObjectRef& f, const float& X1, const float& Y1, const float& X2,
                        const float& Y2) const;

  /// Draws the line from (X1, Y1) to (X2, Y2) dot by dot on the surface f: a
  /// digital differential analyser with n equal steps, where n is one more than
  /// the longer side, sides being rounded to whole units (ties to even). It sets
  /// n + 1 dots, the first on (X1 + 0.5, Y1 + 0.5), each by a late-bound call
  /// PSet(0 as i16, x as f64 by reference, y as f64 by reference, 0 as i16);
  /// positions keep their fractions. The surface may move the pen; the variable f
  /// is looked at anew at each dot. The coordinates are not written.
  /// Failures: 6, before any dot, for a longer side above 32766; 91 without an
  /// object; 438 from one without PSet; the surface's own. Dots set stay set.
  void Linea_a_puntos(const ObjectRef& f, const double& X1, const double& Y1, const double& X2,
                      const double& Y2) const;

  /// Calls Azimut on copies and writes nothing back: aZ keeps its value, and the
  /// call shows nothing but Azimut's failures.
  void Azimut_s(const float& dx, const float& dy, const float& aZ) const;

  /// Writes into aZ the azimuth of the direction (dx, dy): centesimal, 0 on +Y,
  /// clockwise, from 0 to 400, with pi taken as 3.141592654. Where dx and dy are
  /// both 0.0 there is no direction, and aZ becomes about 63598.315 (999 scaled
  /// like an angle): test dx and dy before, or that value after. Axes are exact to
  /// the last digits only: east may differ from 100 in its last one. Failure 6
  /// when dx / dy overflows, with aZ as it was.
  void Azimut(const double& dx, const double& dy, double& aZ) const;

  /// Distance of the whole points (X1, Y1) and (X2, Y2), rounded to f32. On one X
  /// or one Y it is the difference itself; else the square root of a sum worked
  /// out in 32 bits: failure 6 when a difference, a square (a side of 46341 or
  /// more) or the sum leaves them, though the distance would fit. Nothing is
  /// written.
  float Distancia_Punto_Punto_l(const std::int32_t& X1, const std::int32_t& Y1, std::int32_t X2,
                                std::int32_t Y2) const;

  /// Distancia_Punto_Linea in f32.
  float Distancia_Punto_Linea_s(const float& Px, const float& Py, const float& X1, const float& Y1,
                                const float& X2, const float& Y2) const;

  /// Distance of (Px, Py) from segment (RX1, RY1)-(RX2, RY2): to the foot of the
  /// perpendicular where it falls on the segment, else to the nearer end.
  /// Orthogonal projection: u = (P - E1) . (E2 - E1) / |E2 - E1|^2, held to 0..1.
  /// A segment of zero length is its point. Nothing is written. Failures: 6 when a
  /// square overflows, from sides of about 1e154; 11 for a length that is not zero
  /// but whose square is, or 6 when there is nothing to divide by it.
  double Distancia_Punto_Linea(const double& Px, const double& Py, const double& RX1,
                               const double& RY1, const double& RX2, const double& RY2) const;

  /// Toca_Punto_Recta in f32.
  float Toca_Punto_Recta_s(const float& Px, const float& Py, const float& X1, const float& Y1,
                           const float& X2, const float& Y2, const float& tolerancia) const;

  /// Whether (Px, Py) is nearer to segment (X1, Y1)-(X2, Y2) than `tolerancia`:
  /// -1.0 when the distance is strictly below it, else 0.0, so a point exactly at
  /// the tolerance does not touch (compare Toca_Punto_Recta_SN). A segment of zero
  /// length answers with the distance to it instead, 0.0 or above, and the
  /// tolerance is not looked at. Nothing is written. Failures as for
  /// Distancia_Punto_Linea.
  double Toca_Punto_Recta(const double& Px, const double& Py, const double& X1, const double& Y1,
                          const double& X2, const double& Y2, const double& tolerancia) const;

  /// Toca_Punto_Recta, not Toca_Punto_Recta_SN, with inputs in f32: -1.0, 0.0 or
  /// a distance, which stays f64.
  double Toca_Punto_Recta_sSN(const float& Px, const float& Py, const float& X1, const float& Y1,
                              const float& X2, const float& Y2, const float& tolerancia) const;

  /// Whether (Px, Py) is within `tolerancia` of segment (X1, Y1)-(X2, Y2):
  /// inclusive, so a point exactly at the tolerance touches (compare
  /// Toca_Punto_Recta). Always true for a segment of zero length, wherever the
  /// point is. Nothing is written. Failures as for Distancia_Punto_Linea.
  Bool Toca_Punto_Recta_SN(const double& Px, const double& Py, const double& X1, const double& Y1,
                           const double& X2, const double& Y2, const double& tolerancia) const;

  /// Longitud_Linea in f32.
  float Longitud_Linea_s(const float& x0, const float& y0, const float& X1, const float& Y1,
                         const float& X2, const float& Y2) const;

  /// Despite its name, the distance of (x0, y0) from the endless line through
  /// (X1, Y1) and (X2, Y2); the ends do not count. From the line's equation:
  /// |dy x0 - dx y0 + Y1 X2 - X1 Y2| / sqrt(dy^2 + dx^2); a vertical or level line
  /// gives the difference in X or Y. Two equal points count as a vertical line.
  /// Nothing is written. Failures: 6 when a product overflows; 11 (or 6) when
  /// dy^2 + dx^2 underflows to zero.
  double Longitud_Linea(const double& x0, const double& y0, const double& X1, const double& Y1,
                        const double& X2, const double& Y2) const;

  /// Where T lies against P and q on their line, the classic quick classification:
  /// 1 beyond P, 3 beyond q, 2 between or on them. It compares coordinates
  /// strictly, X or Y, and tries 1 before 3. It does not ask whether T is on the
  /// line: a T off it gets a code too. Nothing is written. Failure 6 for NaN only.
  std::int16_t PntOnLine(const double& Px, const double& Py, const double& qx, const double& qy,
                         const double& Tx, const double& Ty) const;

  /// Where T lies against P and q, in f32: PntOnLine's codes and, before them, 0
  /// for a T off the line, which PntOnLine does not know. T is on the line when
  /// |(T - P) x (q - P)| is below the longer side of P-q, both rounded to f32; so
  /// with P = q the answer is always 0. A routine of its own, not a narrowing of
  /// the other. Nothing is written. Failure 6 also when a side or the product
  /// leaves f32.
  std::int16_t PntOnLine_s(const float& Px, const float& Py, const float& qx, const float& qy,
                           const float& Tx, const float& Ty) const;

  /// Retired: shows a box that says "obsoleto" and gives false. No argument is
  /// read or written, so arrays may be unallocated and Loc stays; a caller by
  /// name may leave Loc out. cgeo_api has the test: Pto_in_Poligono.
  Bool Pto_en_Poligono_d(const DoubleArray& XAPEX, const DoubleArray& yAPEX,
                         const std::int32_t& napex, const double& xpt, const double& ypt,
                         std::int16_t& Loc) const;

  /// Retired like Pto_en_Poligono_d; Loc cannot be left out here.
  Bool Pto_en_Poligono(const SingleArray& XAPEX, const SingleArray& yAPEX,
                       const std::int32_t& napex, const float& xpt, const float& ypt,
                       std::int16_t& Loc) const;

  /// Direction of (X, Y) in radians, -pi to pi, 0 on +X, anticlockwise, with pi as
  /// 4 atan(1); rounded to f32. Note the order: Y first. (0, 0) gives 0; -X gives
  /// pi. Nothing is written. Failure 6 when Y / X overflows.
  float Atan2(const double& Y, const double& X) const;

  /// (a s - 3.141592 / 2) t in radians, rounded to f32, where a is
  /// atan(|X| / |Y|) and s, t are the signs of X and Y: -1.570796 for X = 0, Y = 1
  /// and about -0.785398 for X = Y = 1. Note the order, X first, and the short pi,
  /// which are the routine's own. A Y of 0.0 is replaced by 1e-09, and the
  /// caller's variable changes with it. Failure 6 when |X| / |Y| overflows; the
  /// replacement stays.
  float Atn2(const double& X, double& Y) const;

  /// Arc cosine in radians of sRadians, a cosine despite its name; rounded to f32.
  /// Source: atan(-s / sqrt(1 - s s)) + 2 atan(1). From 1 upwards it is 0 and from
  /// -1 downwards 3.1415, with no failure: the left end is short of the value just
  /// inside. Failure 6 when the square leaves f32.
  float Arccos(float sRadians) const;

  /// An in centesimal units to degrees, An / 1.11111111111111, rounded to f32; 0
  /// stays 0. An is not written.
  float An360(const float& An) const;

  /// An in degrees to centesimal units, An x 1.11111111111111, rounded to f32; 0
  /// stays 0. An is not written. Failure 6 when the result leaves f32.
  float An400(const float& An) const;

  /// Angle at P1 (X1, Y1) between P2 (X2, Y2) and P3 (x3, y3), placed by the
  /// quadrant of P2 as seen from P1: degrees, up to 360. The angle g comes from
  /// the sides by the half-angle formula, tan^2(g / 2) = (s - a)(s - b) / (s (s - c)).
  /// P2 due north gives 90, west 180, south 270, east 0, wherever P3 is; else g
  /// itself (north-east), 180 - g (north-west), 180 + g (south-west) or 360 - g
  /// (south-east). g is 0 where two points coincide, and where P1 lies between P2
  /// and P3; P1 = P2 gives 0. A side that rounding leaves longer than half the sum
  /// ends with 0, unplaced. Nothing is written. Failure 6 for NaN; failures inside
  /// the half-angle formula are passed over.
  float GetAngle3P(const float& X1, const float& Y1, const float& X2, const float& Y2,
                   const float& x3, const float& y3) const;

  /// Elevation at (Px, Py) in the triangle (Vx1, Vy1, Vz1), (Vx2, Vy2, Vz2),
  /// (Vx3, Vy3, Vz3), by two linear interpolations: the line from vertex 1 through
  /// the point meets side 2-3, and Cota_en_alineacion goes along that side and
  /// then along that line. Whether the point is inside is the caller's to know.
  /// On vertex 1 it is Vz1 to within rounding, unless that lies on the line 2-3.
  /// 0.0 where the two lines do not meet: they are
  /// parallel, or the point is on vertex 1 and vertices 2 and 3 share their X.
  /// Nothing is written. Failures as for Intersec_XY_2lineas and
  /// Cota_en_alineacion.
  double Triangulo_Cota_1p_interior(const double& Vx1, const double& Vy1, const double& Vz1,
                                    const double& Vx2, const double& Vy2, const double& Vz2,
                                    const double& Vx3, const double& Vy3, const double& Vz3,
                                    const double& Px, const double& Py) const;

  /// Elevation at (Px, Py) along the line from (X1, Y1, Z1) to (X2, Y2, z2):
  /// linear, z2 - l (z2 - Z1) / L, where L is the plan length and l the distance
  /// of the point from the second end. The point is not projected: off the line or
  /// past the second end it gets the elevation of a point that far back towards
  /// the first. z2 for a line without length. Nothing is written. Failure 6 when a
  /// square overflows, from sides of about 1e154.
  double Cota_en_alineacion(const double& X1, const double& Y1, const double& Z1, const double& X2,
                            const double& Y2, const double& z2, const double& Px,
                            const double& Py) const;

  /// Slope of a triangle in percent, 0.0 or above: 100 x rise / plan distance from
  /// the lowest vertex. With the bottom side level, the rise of the top vertex over
  /// its distance from that side; with the top side level, that side's rise over
  /// its distance from the low vertex. With three levels, the rise of the middle of
  /// the long side over the low vertex's distance from the segment between that
  /// middle and the point of elevation zero (XY_de_Z_en_Recta, PZ = 0) on the side
  /// from low to mid: so the answer depends on the height of the triangle above
  /// zero. 0.0 for a level triangle and where that distance is 0. Nothing is
  /// written. Failure 3 in place of any failure inside.
  double Triangulo_pendiente(const double& Vx1, const double& Vy1, const double& Vz1,
                             const double& Vx2, const double& Vy2, const double& Vz2,
                             const double& Vx3, const double& Vy3, const double& Vz3) const;

  /// Writes Distancia, the length of the line from (R1x1, R1y1) to (R1x2, R1y2),
  /// and then Angulo, its centesimal azimuth (0 on +Y, clockwise, below 400), with
  /// 2 pi taken as 6.283185308. The axes are exactly 0, 100, 200 and 300; no length
  /// gives 0.0 for both. A slope dy / dx that underflows to zero gives 100 between
  /// +X and -Y and 300 in the other quadrants. Failure 6 when a square overflows,
  /// with nothing written, or when dy / dx does, with Distancia written.
  void recta_Angulo_y_Dist(const double& R1x1, const double& R1y1, const double& R1x2,
                           const double& R1y2, double& Angulo, double& Distancia) const;

  /// Writes the plan point (Px, Py) on the line from (RX1, RY1, rZ1) to
  /// (RX2, RY2, rZ2) for elevation PZ. The step d (rZ2 - PZ) / (rZ2 - rZ1), d being
  /// the plan length, is measured from the second end's elevation and laid off
  /// from the first end: PZ = rZ2 gives the first end and PZ = rZ1 the second, the
  /// reverse of a plain interpolation. Writes Px, then Py, within the rounding of
  /// the centesimal factor 0.01570796327; a line without length gives its point.
  /// Failures: 11 for level ends, and 6 for such ends when PZ is at their level
  /// or there is no length; those of recta_Angulo_y_Dist.
  void XY_de_Z_en_Recta(const double& RX1, const double& RY1, const double& rZ1, const double& RX2,
                        const double& RY2, const double& rZ2, double& Px, double& Py,
                        const double& PZ) const;

  /// Writes the point at Distancia from (Xbase, YBase) in the direction Angulo, a
  /// centesimal azimuth (0 on +Y, clockwise): XR = Xbase + Distancia sin w, then
  /// YR = YBase + Distancia cos w, with w = Angulo x 0.01570796327 radians. The
  /// factor is rounded, so an axis is not met to the last digit. Any angle and any
  /// sign of the distance will do. Failure 6 for an overflow; XR may have been
  /// written by then.
  void XY_dando_ANG_DIST(const double& Xbase, const double& YBase, const double& Angulo,
                         const double& Distancia, double& XR, double& YR) const;

  /// Cuts segment (XR1, YR1)-(XR2, YR2) with the chain of vertices 1 to Nv in Vx
  /// and Vy (any lower bound up to 1). The chain is not closed: repeat the first
  /// vertex for a polygon. Writes Pc, the number of cuts, and sizes Xc and Yc to
  /// 0..Pc with the cuts from 1 on, ordered by distance from (XR1, YR1); element 0
  /// is 0.0. Without cuts, or with Nv below 2, Pc is 0 and Xc, Yc stay as they
  /// were. Each side is cut by Cruce_XY_2lineas, so a side along the segment gives
  /// no cut. A cut less than 0.001 from the last kept one in X and in Y (a box, not
  /// a distance) is left out: so a shared vertex comes once. Cuts at exactly one
  /// distance change places at each pass of the sort: either may come first.
  /// Failures: 9 for arrays shorter than Nv, from above 1, or unallocated; 10 when
  /// Xc or Yc is locked; 7; those of Cruce_XY_2lineas. Pc then holds the cuts
  /// found so far. The sort is quadratic: meant for the few cuts of one line.
  void Cortes_R1_con_Pol(const double& XR1, const double& YR1, const double& XR2, const double& YR2,
                         const std::int32_t& Nv, const DoubleArray& Vx, const DoubleArray& Vy,
                         std::int32_t& Pc, DoubleArray& Xc, DoubleArray& Yc) const;
};

}  // namespace orv2_geo
