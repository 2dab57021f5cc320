// cgeo_api_table.h: the members of cgeo_api in interface order, a line each.
#pragma once

#include <array>

#include "orv2_geo/survey/cgeo_api.h"

namespace orv2_geo {

struct cgeo_api_table {
  using Class = cgeo_api;

  /// Each member as the reader `Line` of the table makes it.
  template <class Line>
  static constexpr auto lines() {
    using C = Class;
    return std::array{
        Line::template method<&C::Pto_in_Poligono, "XX", "YY", "nVer", "xp", "yp", optional("Loc")>(
            "Pto_in_Poligono"),
    };
  }
};

}  // namespace orv2_geo
