// The members of cgeo_api that are still to be built: each fails with 445.
#include "frame/not_built.h"
#include "survey/cgeo_api.h"

namespace orv2_geo {

Bool cgeo_api::Pto_in_Poligono(const DoubleArray&, const DoubleArray&, const std::int32_t&,
                               const double&, const double&, std::int16_t&) {
  not_built(registered_name);
}

}  // namespace orv2_geo
