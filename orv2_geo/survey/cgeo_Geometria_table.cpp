#include "orv2_geo/survey/cgeo_Geometria_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_Geometria::description() {
  return description_of<cgeo_Geometria_table>;
}

}  // namespace orv2_geo
