// cgeo_Algorismos.h: plane geometry on coordinates handed in by reference.
#pragma once

#include <cstdint>

#include "frame/argument.h"
#include "frame/class_description.h"
#include "frame/export.h"

namespace orv2_geo {

/// Plane geometry: how segments meet, distances, polygon cuts, triangles, and
/// the angle helpers. A pure function table: no state, no unit but the
/// caller's. Every routine has constants and edges of its own; where two look
/// alike, both are meant as they stand.
class ORV2_PUBLIC cgeo_Algorismos {
 public:
  static constexpr char registered_name[] = "Orv2_Geo.cgeo_Algorismos";

  /// The members in interface order.
  static const ClassDescription& description();

  Bool se_cruzan_2lineass_s(const float& X1, const float& Y1, const float& X2, const float& Y2,
                            const float& x3, const float& y3, const float& X4,
                            const float& Y4) const;
  Bool Se_cruzan_2lineas(const double& X1, const double& Y1, const double& X2, const double& Y2,
                         const double& x3, const double& y3, const double& X4,
                         const double& Y4) const;
  Bool Intersec_XY_2lineas_s(const float& X1, const float& Y1, const float& X2, const float& Y2,
                             const float& x3, const float& y3, const float& X4, const float& Y4,
                             float& xi, float& yi) const;
  Bool Intersec_XY_2lineas(const double& X1, const double& Y1, const double& X2, const double& Y2,
                           const double& x3, const double& y3, const double& X4, const double& Y4,
                           double& xi, double& yi) const;
  Bool Cruce_XY_2lineas_s(const float& X1, const float& Y1, const float& X2, const float& Y2,
                          const float& x3, const float& y3, const float& X4, const float& Y4,
                          float& xi, float& yi) const;
  Bool Cruce_XY_2lineas(const double& X1, const double& Y1, const double& X2, const double& Y2,
                        const double& x3, const double& y3, const double& X4, const double& Y4,
                        double& xi, double& yi) const;
  void Linea_a_puntos_s(const ObjectRef& f, const float& X1, const float& Y1, const float& X2,
                        const float& Y2) const;
  void Linea_a_puntos(const ObjectRef& f, const double& X1, const double& Y1, const double& X2,
                      const double& Y2) const;
  void Azimut_s(const float& dx, const float& dy, const float& aZ) const;
  void Azimut(const double& dx, const double& dy, double& aZ) const;
  float Distancia_Punto_Punto_l(const std::int32_t& X1, const std::int32_t& Y1, std::int32_t X2,
                                std::int32_t Y2) const;
  float Distancia_Punto_Linea_s(const float& Px, const float& Py, const float& X1, const float& Y1,
                                const float& X2, const float& Y2) const;
  double Distancia_Punto_Linea(const double& Px, const double& Py, const double& RX1,
                               const double& RY1, const double& RX2, const double& RY2) const;
  float Toca_Punto_Recta_s(const float& Px, const float& Py, const float& X1, const float& Y1,
                           const float& X2, const float& Y2, const float& tolerancia) const;
  double Toca_Punto_Recta(const double& Px, const double& Py, const double& X1, const double& Y1,
                          const double& X2, const double& Y2, const double& tolerancia) const;
  double Toca_Punto_Recta_sSN(const float& Px, const float& Py, const float& X1, const float& Y1,
                              const float& X2, const float& Y2, const float& tolerancia) const;
  Bool Toca_Punto_Recta_SN(const double& Px, const double& Py, const double& X1, const double& Y1,
                           const double& X2, const double& Y2, const double& tolerancia) const;
  float Longitud_Linea_s(const float& x0, const float& y0, const float& X1, const float& Y1,
                         const float& X2, const float& Y2) const;
  double Longitud_Linea(const double& x0, const double& y0, const double& X1, const double& Y1,
                        const double& X2, const double& Y2) const;
  std::int16_t PntOnLine(const double& Px, const double& Py, const double& qx, const double& qy,
                         const double& Tx, const double& Ty) const;
  std::int16_t PntOnLine_s(const float& Px, const float& Py, const float& qx, const float& qy,
                           const float& Tx, const float& Ty) const;
  Bool Pto_en_Poligono_d(const DoubleArray& XAPEX, const DoubleArray& yAPEX,
                         const std::int32_t& napex, const double& xpt, const double& ypt,
                         std::int16_t& Loc) const;
  Bool Pto_en_Poligono(const SingleArray& XAPEX, const SingleArray& yAPEX,
                       const std::int32_t& napex, const float& xpt, const float& ypt,
                       std::int16_t& Loc) const;
  float Atan2(const double& Y, const double& X) const;
  float Atn2(const double& X, double& Y) const;
  float Arccos(float sRadians) const;
  float An360(const float& An) const;
  float An400(const float& An) const;
  float GetAngle3P(const float& X1, const float& Y1, const float& X2, const float& Y2,
                   const float& x3, const float& y3) const;
  double Triangulo_Cota_1p_interior(const double& Vx1, const double& Vy1, const double& Vz1,
                                    const double& Vx2, const double& Vy2, const double& Vz2,
                                    const double& Vx3, const double& Vy3, const double& Vz3,
                                    const double& Px, const double& Py) const;
  double Cota_en_alineacion(const double& X1, const double& Y1, const double& Z1, const double& X2,
                            const double& Y2, const double& z2, const double& Px,
                            const double& Py) const;
  double Triangulo_pendiente(const double& Vx1, const double& Vy1, const double& Vz1,
                             const double& Vx2, const double& Vy2, const double& Vz2,
                             const double& Vx3, const double& Vy3, const double& Vz3) const;
  void recta_Angulo_y_Dist(const double& R1x1, const double& R1y1, const double& R1x2,
                           const double& R1y2, double& Angulo, double& Distancia) const;
  void XY_de_Z_en_Recta(const double& RX1, const double& RY1, const double& rZ1, const double& RX2,
                        const double& RY2, const double& rZ2, double& Px, double& Py,
                        const double& PZ) const;
  void XY_dando_ANG_DIST(const double& Xbase, const double& YBase, const double& Angulo,
                         const double& Distancia, double& XR, double& YR) const;
  void Cortes_R1_con_Pol(const double& XR1, const double& YR1, const double& XR2, const double& YR2,
                         const std::int32_t& Nv, const DoubleArray& Vx, const DoubleArray& Vy,
                         std::int32_t& Pc, DoubleArray& Xc, DoubleArray& Yc) const;
};

}  // namespace orv2_geo
