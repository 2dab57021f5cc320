#include "orv2_geo/survey/cgeo_api_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_api::description() { return description_of<cgeo_api_table>; }

}  // namespace orv2_geo
