// The members of cgeo_Matrices that are still to be built: each fails with 445.
#include "arrays/cgeo_Matrices.h"
#include "frame/not_built.h"

namespace orv2_geo {

void cgeo_Matrices::MaxMin_1Matriz(const DoubleArray&, double&, double&) const {
  not_built(registered_name);
}
void cgeo_Matrices::MaxMin_2Matriz(const DoubleArray&, const DoubleArray&, double&, double&,
                                   double&, double&) const {
  not_built(registered_name);
}
void cgeo_Matrices::MaxMin_4_matrices_XY_XY(const DoubleArray&, const DoubleArray&,
                                            const DoubleArray&, const DoubleArray&, double&,
                                            double&, double&, double&) const {
  not_built(registered_name);
}
void cgeo_Matrices::MaxMin_3Matriz1(const DoubleArray&, const DoubleArray&, const DoubleArray&,
                                    double&, double&, double&, double&, double&, double&,
                                    const Bool&) const {
  not_built(registered_name);
}
void cgeo_Matrices::MaxMin_3Matriz(const DoubleArray&, const DoubleArray&, const DoubleArray&,
                                   double&, double&, double&, double&, double&, double&,
                                   const Bool&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Sumar_a_1Matriz_otra(DoubleArray&, const DoubleArray&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Restar_a_1Matriz_otra(DoubleArray&, const DoubleArray&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Ordena_en_X_3_Matrices(const std::int32_t&, DoubleArray&, DoubleArray&,
                                           DoubleArray&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Ordena_en_X_el_Indice_1Matriz(const std::int32_t&, const DoubleArray&,
                                                  LongArray&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Ordena_en_X_el_Indice_1Matriz1(const std::int32_t&, const DoubleArray&,
                                                   LongArray&, const ObjectRef&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Ordena_en_X_el_Indice_1Matriz2(const std::int32_t&, const DoubleArray&,
                                                   LongArray&, const ObjectRef&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Quita_Puntos_Repetidos(const std::int32_t&, const DoubleArray&,
                                           const DoubleArray&, const DoubleArray&, const double&,
                                           const Bool&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Quita_Puntos_Repetidos_XYZ_con_indice1(std::int32_t&, DoubleArray&,
                                                           DoubleArray&, DoubleArray&, LongArray&,
                                                           const ObjectRef&, const double&,
                                                           const Bool&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Quita_Puntos_Repetidos_XYZ_con_indice(const std::int32_t&, const DoubleArray&,
                                                          const DoubleArray&, const DoubleArray&,
                                                          const LongArray&, const double&,
                                                          const Bool&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Quita_Pts_Repetidos_3D(std::int32_t&, DoubleArray&, DoubleArray&, DoubleArray&,
                                           StringArray&, StringArray&, ShortArray&, LongArray&,
                                           const ObjectRef&, const Bool&, const double&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Quita_Pts_Repetidos(std::int32_t&, DoubleArray&, DoubleArray&, DoubleArray&,
                                        StringArray&, StringArray&, ShortArray&, LongArray&,
                                        const Bool&, const double&) const {
  not_built(registered_name);
}
void cgeo_Matrices::Quita_Puntos_fuera_interv_de_Cotas_con_indice(std::int32_t&, const DoubleArray&,
                                                                  const DoubleArray&,
                                                                  const DoubleArray&, LongArray&,
                                                                  const double&,
                                                                  const double&) const {
  not_built(registered_name);
}

}  // namespace orv2_geo
