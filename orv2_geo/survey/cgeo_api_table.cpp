#include "orv2_geo/survey/cgeo_api.h"

namespace orv2_geo {

namespace {

using C = cgeo_api;

constexpr MemberDescription members[] = {
    method<&C::Pto_in_Poligono, "XX", "YY", "nVer", "xp", "yp", optional("Loc")>("Pto_in_Poligono"),
};

constexpr ClassDescription the_class = describe_class<C>("cgeo_api", C::registered_name, members);

}  // namespace

const ClassDescription& cgeo_api::description() { return the_class; }

}  // namespace orv2_geo
