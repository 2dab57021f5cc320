#include "orv2_geo/terrain/cgeo_Terreno.h"

namespace orv2_geo {

namespace {

using C = cgeo_Terreno;

constexpr MemberDescription members[] = {
    method<&C::TR_Cotas_en_unTerreno_dando_DistOr, "Xterr", "Yterr", "DistOr", "Cotas">(
        "TR_Cotas_en_unTerreno_dando_DistOr"),
    method<&C::TF_Y_del_Terreno_dando_su_X, "X", "Y", "X1">("TF_Y_del_Terreno_dando_su_X"),
    method<&C::TF_ProyeccVertical_de_X_en_1R, "Xt1", "Yt1", "Xt2", "Yt2", "X1">(
        "TF_ProyeccVertical_de_X_en_1R"),
    method<&C::TF_Yminima_del_Terreno, "Y">("TF_Yminima_del_Terreno"),
    method<&C::TF_Ymaxima_del_Terreno, "Y">("TF_Ymaxima_del_Terreno"),
    method<&C::TF_DistaOrigen_estan_ordenadas, "DistO">("TF_DistaOrigen_estan_ordenadas"),
    method<&C::Ordena_terreno_y_quita_repetidos, "Ptos", "DistO", "Z">(
        "Ordena_terreno_y_quita_repetidos"),
};

constexpr ClassDescription the_class =
    describe_class<C>("cgeo_Terreno", C::registered_name, members);

}  // namespace

const ClassDescription& cgeo_Terreno::description() { return the_class; }

}  // namespace orv2_geo
