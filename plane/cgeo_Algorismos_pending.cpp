// The members of cgeo_Algorismos that are still to be built: each fails with 445.
#include "angles/cgeo_Algorismos.h"
#include "frame/not_built.h"

namespace orv2_geo {

Bool cgeo_Algorismos::se_cruzan_2lineass_s(const float&, const float&, const float&, const float&,
                                           const float&, const float&, const float&,
                                           const float&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Se_cruzan_2lineas(const double&, const double&, const double&, const double&,
                                        const double&, const double&, const double&,
                                        const double&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Intersec_XY_2lineas_s(const float&, const float&, const float&, const float&,
                                            const float&, const float&, const float&, const float&,
                                            float&, float&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Intersec_XY_2lineas(const double&, const double&, const double&,
                                          const double&, const double&, const double&,
                                          const double&, const double&, double&, double&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Cruce_XY_2lineas_s(const float&, const float&, const float&, const float&,
                                         const float&, const float&, const float&, const float&,
                                         float&, float&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Cruce_XY_2lineas(const double&, const double&, const double&, const double&,
                                       const double&, const double&, const double&, const double&,
                                       double&, double&) const {
  not_built(registered_name);
}
void cgeo_Algorismos::Linea_a_puntos_s(const ObjectRef&, const float&, const float&, const float&,
                                       const float&) const {
  not_built(registered_name);
}
void cgeo_Algorismos::Linea_a_puntos(const ObjectRef&, const double&, const double&, const double&,
                                     const double&) const {
  not_built(registered_name);
}
float cgeo_Algorismos::Distancia_Punto_Punto_l(const std::int32_t&, const std::int32_t&,
                                               std::int32_t, std::int32_t) const {
  not_built(registered_name);
}
float cgeo_Algorismos::Distancia_Punto_Linea_s(const float&, const float&, const float&,
                                               const float&, const float&, const float&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Distancia_Punto_Linea(const double&, const double&, const double&,
                                              const double&, const double&, const double&) const {
  not_built(registered_name);
}
float cgeo_Algorismos::Toca_Punto_Recta_s(const float&, const float&, const float&, const float&,
                                          const float&, const float&, const float&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Toca_Punto_Recta(const double&, const double&, const double&, const double&,
                                         const double&, const double&, const double&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Toca_Punto_Recta_sSN(const float&, const float&, const float&, const float&,
                                             const float&, const float&, const float&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Toca_Punto_Recta_SN(const double&, const double&, const double&,
                                          const double&, const double&, const double&,
                                          const double&) const {
  not_built(registered_name);
}
float cgeo_Algorismos::Longitud_Linea_s(const float&, const float&, const float&, const float&,
                                        const float&, const float&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Longitud_Linea(const double&, const double&, const double&, const double&,
                                       const double&, const double&) const {
  not_built(registered_name);
}
std::int16_t cgeo_Algorismos::PntOnLine(const double&, const double&, const double&, const double&,
                                        const double&, const double&) const {
  not_built(registered_name);
}
std::int16_t cgeo_Algorismos::PntOnLine_s(const float&, const float&, const float&, const float&,
                                          const float&, const float&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Pto_en_Poligono_d(const DoubleArray&, const DoubleArray&, const std::int32_t&,
                                        const double&, const double&, std::int16_t&) const {
  not_built(registered_name);
}
Bool cgeo_Algorismos::Pto_en_Poligono(const SingleArray&, const SingleArray&, const std::int32_t&,
                                      const float&, const float&, std::int16_t&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Triangulo_Cota_1p_interior(const double&, const double&, const double&,
                                                   const double&, const double&, const double&,
                                                   const double&, const double&, const double&,
                                                   const double&, const double&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Cota_en_alineacion(const double&, const double&, const double&,
                                           const double&, const double&, const double&,
                                           const double&, const double&) const {
  not_built(registered_name);
}
double cgeo_Algorismos::Triangulo_pendiente(const double&, const double&, const double&,
                                            const double&, const double&, const double&,
                                            const double&, const double&, const double&) const {
  not_built(registered_name);
}
void cgeo_Algorismos::recta_Angulo_y_Dist(const double&, const double&, const double&,
                                          const double&, double&, double&) const {
  not_built(registered_name);
}
void cgeo_Algorismos::XY_de_Z_en_Recta(const double&, const double&, const double&, const double&,
                                       const double&, const double&, double&, double&,
                                       const double&) const {
  not_built(registered_name);
}
void cgeo_Algorismos::XY_dando_ANG_DIST(const double&, const double&, const double&, const double&,
                                        double&, double&) const {
  not_built(registered_name);
}
void cgeo_Algorismos::Cortes_R1_con_Pol(const double&, const double&, const double&, const double&,
                                        const std::int32_t&, const DoubleArray&, const DoubleArray&,
                                        std::int32_t&, DoubleArray&, DoubleArray&) const {
  not_built(registered_name);
}

}  // namespace orv2_geo
