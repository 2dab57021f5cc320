// cgeo_FuncDeriv_table.h: the members of cgeo_FuncDeriv in interface order, a line each.
#pragma once

#include <array>

#include "orv2_geo/angles/cgeo_FuncDeriv.h"

namespace orv2_geo {

struct cgeo_FuncDeriv_table {
  using Class = cgeo_FuncDeriv;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    return std::array{
        Line::template property_read<&C::Pi>("Pi"),
        Line::template property_write<&C::Pi>("Pi"),
        Line::template property_read<&C::RPi>("RPi"),
        Line::template property_write<&C::RPi>("RPi"),
        Line::template method<&C::F_Log10, "X">("F_Log10"),
        Line::template method<&C::F_LogN, "X">("F_LogN"),
        Line::template method<&C::F_SenH, "X">("F_SenH"),
        Line::template method<&C::F_CosH, "X">("F_CosH"),
        Line::template method<&C::F_TanH, "X">("F_TanH"),
        Line::template method<&C::F_ArcSen, "Angulo_Centec">("F_ArcSen"),
        Line::template method<&C::F_ArcCos, "Angulo_Centec">("F_ArcCos"),
        Line::template method<&C::F_Sen, "Angulo_Centec">("F_Sen"),
        Line::template method<&C::F_Cos, "Angulo_Centec">("F_Cos"),
        Line::template method<&C::F_Tan, "Angulo_Centec">("F_Tan"),
    };
  }
};

}  // namespace orv2_geo
