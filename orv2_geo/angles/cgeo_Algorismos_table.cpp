#include "orv2_geo/angles/cgeo_Algorismos_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_Algorismos::description() {
  return description_of<cgeo_Algorismos_table>;
}

}  // namespace orv2_geo
