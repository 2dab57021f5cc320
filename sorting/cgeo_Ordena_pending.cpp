// The members of cgeo_Ordena that are still to be built: each fails with 445.
#include "frame/not_built.h"
#include "sorting/cgeo_Ordena.h"

namespace orv2_geo {

void cgeo_Ordena::Quita_Puntos_Repetidos_XY_con_indice1(std::int32_t&, DoubleArray&, DoubleArray&,
                                                        DoubleArray&, LongArray&, const ObjectRef&,
                                                        const double&, const Bool&) const {
  not_built(registered_name);
}
void cgeo_Ordena::SwapStrings(const Text&, const Text&, const std::int32_t&) const {
  not_built(registered_name);
}

}  // namespace orv2_geo
