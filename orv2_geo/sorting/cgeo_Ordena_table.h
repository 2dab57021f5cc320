// cgeo_Ordena_table.h: the members of cgeo_Ordena in interface order, a line each.
#pragma once

#include <array>
#include <cstdint>
#include <limits>

#include "orv2_geo/sorting/cgeo_Ordena.h"

namespace orv2_geo {

struct cgeo_Ordena_table {
  using Class = cgeo_Ordena;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    // Left out, a bound is that of the array.
    constexpr std::int32_t bound_from_array = std::numeric_limits<std::int32_t>::min();
    return std::array{
        Line::template method<&C::Ordena_Double_Index_Array, "DoubleA", resized("TheIndex"),
                              optional("LowerBound", bound_from_array),
                              optional("UpperBound", bound_from_array)>(
            "Ordena_Double_Index_Array"),
        Line::template method<&C::Ordena_Double_Array, "DoubleA",
                              optional("LowerBound", bound_from_array),
                              optional("UpperBound", bound_from_array)>("Ordena_Double_Array"),
        Line::template method<&C::Ordena_StringArray, "TheArray",
                              optional("LowerBound", bound_from_array),
                              optional("UpperBound", bound_from_array)>("Ordena_StringArray"),
        Line::template method<&C::Ordena_LongArray, "TheArray",
                              optional("LowerBound", bound_from_array),
                              optional("UpperBound", bound_from_array)>("Ordena_LongArray"),
        Line::template method<&C::Ordena_StringIndexArray, "TheArray", "TheIndex",
                              optional("LowerBound", bound_from_array),
                              optional("UpperBound", bound_from_array)>("Ordena_StringIndexArray"),
        Line::template method<&C::Ordena_LongIndexArray, "TheArray", "TheIndex",
                              optional("LowerBound", bound_from_array),
                              optional("UpperBound", bound_from_array)>("Ordena_LongIndexArray"),
        Line::template method<&C::Quita_Puntos_Repetidos_XY_con_indice1, "nPtos", resized("X"),
                              resized("Y"), resized("Z"), resized("Indice"), "Progreso1",
                              optional("Precision"), optional("Aviso")>(
            "Quita_Puntos_Repetidos_XY_con_indice1"),
        Line::template method<&C::SwapStrings, "String1", "String2", "SwpVal">("SwapStrings"),
    };
  }
};

}  // namespace orv2_geo
