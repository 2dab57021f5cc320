#include "orv2_geo/terrain/cgeo_Terreno_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_Terreno::description() { return description_of<cgeo_Terreno_table>; }

}  // namespace orv2_geo
