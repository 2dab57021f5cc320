#include "orv2_geo/angles/cgeo_FuncDeriv.h"

namespace orv2_geo {

namespace {

using C = cgeo_FuncDeriv;

constexpr MemberDescription members[] = {
    property_read<&C::Pi>("Pi"),
    property_write<&C::Pi>("Pi"),
    property_read<&C::RPi>("RPi"),
    property_write<&C::RPi>("RPi"),
    method<&C::F_Log10, "X">("F_Log10"),
    method<&C::F_LogN, "X">("F_LogN"),
    method<&C::F_SenH, "X">("F_SenH"),
    method<&C::F_CosH, "X">("F_CosH"),
    method<&C::F_TanH, "X">("F_TanH"),
    method<&C::F_ArcSen, "Angulo_Centec">("F_ArcSen"),
    method<&C::F_ArcCos, "Angulo_Centec">("F_ArcCos"),
    method<&C::F_Sen, "Angulo_Centec">("F_Sen"),
    method<&C::F_Cos, "Angulo_Centec">("F_Cos"),
    method<&C::F_Tan, "Angulo_Centec">("F_Tan"),
};

constexpr ClassDescription the_class =
    describe_class<C>("cgeo_FuncDeriv", C::registered_name, members);

}  // namespace

const ClassDescription& cgeo_FuncDeriv::description() { return the_class; }

}  // namespace orv2_geo
