// The members of cgeo_Geometria that are still to be built: each fails with 445.
#include "frame/not_built.h"
#include "survey/cgeo_Geometria.h"

namespace orv2_geo {

double cgeo_Geometria::GF_Angulo_de_1Recta(const double&, const double&, const double&,
                                           const double&) const {
  not_built(registered_name);
}
void cgeo_Geometria::GR_AngDist_de_1Recta(const double&, const double&, const double&,
                                          const double&, double&, double&) const {
  not_built(registered_name);
}
Variant cgeo_Geometria::GF_Distancia(const double&, const double&, const double&,
                                     const double&) const {
  not_built(registered_name);
}
Variant cgeo_Geometria::GF_Distancia_S(const float&, const float&, const float&,
                                       const float&) const {
  not_built(registered_name);
}
void cgeo_Geometria::GR_XY_de_AngDist(const double&, const double&, const double&, const double&,
                                      double&, double&) const {
  not_built(registered_name);
}
void cgeo_Geometria::GR_Intersec_2_Rectas_S(const float&, const float&, const float&, const float&,
                                            const float&, const float&, const float&, const float&,
                                            const float&, const float&, Bool&) const {
  not_built(registered_name);
}
void cgeo_Geometria::GR_Intersec_2_Rectas(const double&, const double&, const double&,
                                          const double&, const double&, const double&,
                                          const double&, const double&, double&, double&,
                                          Bool&) const {
  not_built(registered_name);
}
void cgeo_Geometria::GR_Se_cortan_2_rectas(const double&, const double&, const double&,
                                           const double&, const double&, const double&,
                                           const double&, const double&, double&, double&,
                                           Bool&) const {
  not_built(registered_name);
}
Bool cgeo_Geometria::GF_Se_cortan_2_rectas(const double&, const double&, const double&,
                                           const double&, const double&, const double&,
                                           const double&, const double&, double&, double&) const {
  not_built(registered_name);
}
double cgeo_Geometria::GF_angulo_3_puntos(const double&, const double&, const double&,
                                          const double&, const double&, const double&) const {
  not_built(registered_name);
}
void cgeo_Geometria::GR_Paralela(const double&, const double&, const double&, const double&,
                                 double&, double&, double&, double&, const double&) const {
  not_built(registered_name);
}

}  // namespace orv2_geo
