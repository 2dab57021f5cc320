#include <cstdint>
#include <limits>

#include "orv2_geo/sorting/cgeo_Ordena.h"

namespace orv2_geo {

namespace {

using C = cgeo_Ordena;

// A sort bound left out is taken from the array.
constexpr std::int32_t bound_from_array = std::numeric_limits<std::int32_t>::min();

constexpr MemberDescription members[] = {
    method<&C::Ordena_Double_Index_Array, "DoubleA", "TheIndex",
           optional("LowerBound", bound_from_array), optional("UpperBound", bound_from_array)>(
        "Ordena_Double_Index_Array"),
    method<&C::Ordena_Double_Array, "DoubleA", optional("LowerBound", bound_from_array),
           optional("UpperBound", bound_from_array)>("Ordena_Double_Array"),
    method<&C::Ordena_StringArray, "TheArray", optional("LowerBound", bound_from_array),
           optional("UpperBound", bound_from_array)>("Ordena_StringArray"),
    method<&C::Ordena_LongArray, "TheArray", optional("LowerBound", bound_from_array),
           optional("UpperBound", bound_from_array)>("Ordena_LongArray"),
    method<&C::Ordena_StringIndexArray, "TheArray", "TheIndex",
           optional("LowerBound", bound_from_array), optional("UpperBound", bound_from_array)>(
        "Ordena_StringIndexArray"),
    method<&C::Ordena_LongIndexArray, "TheArray", "TheIndex",
           optional("LowerBound", bound_from_array), optional("UpperBound", bound_from_array)>(
        "Ordena_LongIndexArray"),
    method<&C::Quita_Puntos_Repetidos_XY_con_indice1, "nPtos", "X", "Y", "Z", "Indice", "Progreso1",
           optional("Precision"), optional("Aviso")>("Quita_Puntos_Repetidos_XY_con_indice1"),
    method<&C::SwapStrings, "String1", "String2", "SwpVal">("SwapStrings"),
};

constexpr ClassDescription the_class =
    describe_class<C>("cgeo_Ordena", C::registered_name, members);

}  // namespace

const ClassDescription& cgeo_Ordena::description() { return the_class; }

}  // namespace orv2_geo
