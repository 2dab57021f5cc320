// cgeo_Geometria_table.h: the members of cgeo_Geometria in interface order, a line each.
#pragma once

#include <array>

#include "orv2_geo/survey/cgeo_Geometria.h"

namespace orv2_geo {

struct cgeo_Geometria_table {
  using Class = cgeo_Geometria;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    return std::array{
        Line::template method<&C::GF_Angulo_de_1Recta, "R1x1", "R1y1", "R1x2", "R1y2">(
            "GF_Angulo_de_1Recta"),
        Line::template method<&C::GR_AngDist_de_1Recta, "R1x1", "R1y1", "R1x2", "R1y2", "Angulo",
                              "Distancia">("GR_AngDist_de_1Recta"),
        Line::template method<&C::GF_Distancia, "X1", "Y1", "X2", "Y2">("GF_Distancia"),
        Line::template method<&C::GF_Distancia_S, "X1", "Y1", "X2", "Y2">("GF_Distancia_S"),
        Line::template method<&C::GR_XY_de_AngDist, "Xinic", "Yinic", "Angulo", "Distancia", "X",
                              "Y">("GR_XY_de_AngDist"),
        Line::template method<&C::GR_Intersec_2_Rectas_S, "R1x1", "R1y1", "R1x2", "R1y2", "R2x1",
                              "R2y1", "R2x2", "R2y2", "X", "Y", "Paralelas">(
            "GR_Intersec_2_Rectas_S"),
        Line::template method<&C::GR_Intersec_2_Rectas, "R1x1", "R1y1", "R1x2", "R1y2", "R2x1",
                              "R2y1", "R2x2", "R2y2", "X", "Y", "Paralelas">(
            "GR_Intersec_2_Rectas"),
        Line::template method<&C::GR_Se_cortan_2_rectas, "R1x1", "R1y1", "R1x2", "R1y2", "R2x1",
                              "R2y1", "R2x2", "R2y2", "X", "Y", "SECORTAN">(
            "GR_Se_cortan_2_rectas"),
        Line::template method<&C::GF_Se_cortan_2_rectas, "R1x1", "R1y1", "R1x2", "R1y2", "R2x1",
                              "R2y1", "R2x2", "R2y2", "X", "Y">("GF_Se_cortan_2_rectas"),
        Line::template method<&C::GF_angulo_3_puntos, "P1x", "P1y", "P2x", "P2y", "P3x", "P3y">(
            "GF_angulo_3_puntos"),
        Line::template method<&C::GR_Paralela, "X1", "Y1", "X2", "Y2", "RX1", "RY1", "RX2", "RY2",
                              "distanc">("GR_Paralela"),
    };
  }
};

}  // namespace orv2_geo
