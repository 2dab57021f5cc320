// The members of cgeo_Terreno that are still to be built: each fails with 445.
#include "frame/not_built.h"
#include "terrain/cgeo_Terreno.h"

namespace orv2_geo {

void cgeo_Terreno::TR_Cotas_en_unTerreno_dando_DistOr(const DoubleArray&, const DoubleArray&,
                                                      const DoubleArray&, DoubleArray&) const {
  not_built(registered_name);
}
double cgeo_Terreno::TF_Y_del_Terreno_dando_su_X(const DoubleArray&, const DoubleArray&,
                                                 const double&) const {
  not_built(registered_name);
}
double cgeo_Terreno::TF_ProyeccVertical_de_X_en_1R(const double&, const double&, const double&,
                                                   const double&, const double&) const {
  not_built(registered_name);
}
double cgeo_Terreno::TF_Yminima_del_Terreno(const DoubleArray&) const {
  not_built(registered_name);
}
double cgeo_Terreno::TF_Ymaxima_del_Terreno(const DoubleArray&) const {
  not_built(registered_name);
}
Bool cgeo_Terreno::TF_DistaOrigen_estan_ordenadas(const DoubleArray&) const {
  not_built(registered_name);
}
void cgeo_Terreno::Ordena_terreno_y_quita_repetidos(std::int32_t&, DoubleArray&,
                                                    DoubleArray&) const {
  not_built(registered_name);
}

}  // namespace orv2_geo
