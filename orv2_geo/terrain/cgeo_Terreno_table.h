// cgeo_Terreno_table.h: the members of cgeo_Terreno in interface order, a line each.
#pragma once

#include <array>

#include "orv2_geo/terrain/cgeo_Terreno.h"

namespace orv2_geo {

struct cgeo_Terreno_table {
  using Class = cgeo_Terreno;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    return std::array{
        Line::template method<&C::TR_Cotas_en_unTerreno_dando_DistOr, "Xterr", "Yterr", "DistOr",
                              resized("Cotas")>("TR_Cotas_en_unTerreno_dando_DistOr"),
        Line::template method<&C::TF_Y_del_Terreno_dando_su_X, "X", "Y", "X1">(
            "TF_Y_del_Terreno_dando_su_X"),
        Line::template method<&C::TF_ProyeccVertical_de_X_en_1R, "Xt1", "Yt1", "Xt2", "Yt2", "X1">(
            "TF_ProyeccVertical_de_X_en_1R"),
        Line::template method<&C::TF_Yminima_del_Terreno, "Y">("TF_Yminima_del_Terreno"),
        Line::template method<&C::TF_Ymaxima_del_Terreno, "Y">("TF_Ymaxima_del_Terreno"),
        Line::template method<&C::TF_DistaOrigen_estan_ordenadas, "DistO">(
            "TF_DistaOrigen_estan_ordenadas"),
        Line::template method<&C::Ordena_terreno_y_quita_repetidos, "Ptos", resized("DistO"),
                              resized("Z")>("Ordena_terreno_y_quita_repetidos"),
    };
  }
};

}  // namespace orv2_geo
