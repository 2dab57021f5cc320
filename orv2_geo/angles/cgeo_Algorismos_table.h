// cgeo_Algorismos_table.h: the members of cgeo_Algorismos in interface order, a line each.
#pragma once

#include <array>

#include "orv2_geo/angles/cgeo_Algorismos.h"

namespace orv2_geo {

struct cgeo_Algorismos_table {
  using Class = cgeo_Algorismos;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    return std::array{
        Line::template method<&C::se_cruzan_2lineass_s, "X1", "Y1", "X2", "Y2", "x3", "y3", "X4",
                              "Y4">("se_cruzan_2lineass_s"),
        Line::template method<&C::Se_cruzan_2lineas, "X1", "Y1", "X2", "Y2", "x3", "y3", "X4",
                              "Y4">("Se_cruzan_2lineas"),
        Line::template method<&C::Intersec_XY_2lineas_s, "X1", "Y1", "X2", "Y2", "x3", "y3", "X4",
                              "Y4", "xi", "yi">("Intersec_XY_2lineas_s"),
        Line::template method<&C::Intersec_XY_2lineas, "X1", "Y1", "X2", "Y2", "x3", "y3", "X4",
                              "Y4", "xi", "yi">("Intersec_XY_2lineas"),
        Line::template method<&C::Cruce_XY_2lineas_s, "X1", "Y1", "X2", "Y2", "x3", "y3", "X4",
                              "Y4", "xi", "yi">("Cruce_XY_2lineas_s"),
        Line::template method<&C::Cruce_XY_2lineas, "X1", "Y1", "X2", "Y2", "x3", "y3", "X4", "Y4",
                              "xi", "yi">("Cruce_XY_2lineas"),
        Line::template method<&C::Linea_a_puntos_s, "f", "X1", "Y1", "X2", "Y2">(
            "Linea_a_puntos_s"),
        Line::template method<&C::Linea_a_puntos, "f", "X1", "Y1", "X2", "Y2">("Linea_a_puntos"),
        Line::template method<&C::Azimut_s, "dx", "dy", "aZ">("Azimut_s"),
        Line::template method<&C::Azimut, "dx", "dy", "aZ">("Azimut"),
        Line::template method<&C::Distancia_Punto_Punto_l, "X1", "Y1", "X2", "Y2">(
            "Distancia_Punto_Punto_l"),
        Line::template method<&C::Distancia_Punto_Linea_s, "Px", "Py", "X1", "Y1", "X2", "Y2">(
            "Distancia_Punto_Linea_s"),
        Line::template method<&C::Distancia_Punto_Linea, "Px", "Py", "RX1", "RY1", "RX2", "RY2">(
            "Distancia_Punto_Linea"),
        Line::template method<&C::Toca_Punto_Recta_s, "Px", "Py", "X1", "Y1", "X2", "Y2",
                              "tolerancia">("Toca_Punto_Recta_s"),
        Line::template method<&C::Toca_Punto_Recta, "Px", "Py", "X1", "Y1", "X2", "Y2",
                              "tolerancia">("Toca_Punto_Recta"),
        Line::template method<&C::Toca_Punto_Recta_sSN, "Px", "Py", "X1", "Y1", "X2", "Y2",
                              "tolerancia">("Toca_Punto_Recta_sSN"),
        Line::template method<&C::Toca_Punto_Recta_SN, "Px", "Py", "X1", "Y1", "X2", "Y2",
                              "tolerancia">("Toca_Punto_Recta_SN"),
        Line::template method<&C::Longitud_Linea_s, "x0", "y0", "X1", "Y1", "X2", "Y2">(
            "Longitud_Linea_s"),
        Line::template method<&C::Longitud_Linea, "x0", "y0", "X1", "Y1", "X2", "Y2">(
            "Longitud_Linea"),
        Line::template method<&C::PntOnLine, "Px", "Py", "qx", "qy", "Tx", "Ty">("PntOnLine"),
        Line::template method<&C::PntOnLine_s, "Px", "Py", "qx", "qy", "Tx", "Ty">("PntOnLine_s"),
        Line::template method<&C::Pto_en_Poligono_d, "XAPEX", "yAPEX", "napex", "xpt", "ypt",
                              optional("Loc")>("Pto_en_Poligono_d"),
        Line::template method<&C::Pto_en_Poligono, "XAPEX", "yAPEX", "napex", "xpt", "ypt", "Loc">(
            "Pto_en_Poligono"),
        Line::template method<&C::Atan2, "Y", "X">("Atan2"),
        Line::template method<&C::Atn2, "X", "Y">("Atn2"),
        Line::template method<&C::Arccos, "sRadians">("Arccos"),
        Line::template method<&C::An360, "An">("An360"),
        Line::template method<&C::An400, "An">("An400"),
        Line::template method<&C::GetAngle3P, "X1", "Y1", "X2", "Y2", "x3", "y3">("GetAngle3P"),
        Line::template method<&C::Triangulo_Cota_1p_interior, "Vx1", "Vy1", "Vz1", "Vx2", "Vy2",
                              "Vz2", "Vx3", "Vy3", "Vz3", "Px", "Py">("Triangulo_Cota_1p_interior"),
        Line::template method<&C::Cota_en_alineacion, "X1", "Y1", "Z1", "X2", "Y2", "z2", "Px",
                              "Py">("Cota_en_alineacion"),
        Line::template method<&C::Triangulo_pendiente, "Vx1", "Vy1", "Vz1", "Vx2", "Vy2", "Vz2",
                              "Vx3", "Vy3", "Vz3">("Triangulo_pendiente"),
        Line::template method<&C::recta_Angulo_y_Dist, "R1x1", "R1y1", "R1x2", "R1y2", "Angulo",
                              "Distancia">("recta_Angulo_y_Dist"),
        Line::template method<&C::XY_de_Z_en_Recta, "RX1", "RY1", "rZ1", "RX2", "RY2", "rZ2", "Px",
                              "Py", "PZ">("XY_de_Z_en_Recta"),
        Line::template method<&C::XY_dando_ANG_DIST, "Xbase", "YBase", "Angulo", "Distancia", "XR",
                              "YR">("XY_dando_ANG_DIST"),
        Line::template method<&C::Cortes_R1_con_Pol, "XR1", "YR1", "XR2", "YR2", "Nv", "Vx", "Vy",
                              "Pc", resized("Xc"), resized("Yc")>("Cortes_R1_con_Pol"),
    };
  }
};

}  // namespace orv2_geo
