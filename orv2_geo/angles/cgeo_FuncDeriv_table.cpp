#include "orv2_geo/angles/cgeo_FuncDeriv_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_FuncDeriv::description() {
  return description_of<cgeo_FuncDeriv_table>;
}

}  // namespace orv2_geo
