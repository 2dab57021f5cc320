// The member of cgeo_Ordena that removes repeated points.
#include "orv2_geo/repeated/mOrdena_repetidos.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"

namespace orv2_geo {

void cgeo_Ordena::Quita_Puntos_Repetidos_XY_con_indice1(
    std::int32_t& nPtos, DoubleArray& X, DoubleArray& Y, DoubleArray& Z, LongArray& Indice,
    const ObjectRef& Progreso1, const double& Precision, const Bool& Aviso) const try {
  mOrdena::Quita_Puntos_Repetidos_XY_con_indice1(nPtos, X, Y, Z, Indice, Progreso1, Precision,
                                                 Aviso);
} catch (...) {
  leave_signed(registered_name);
}

}  // namespace orv2_geo
