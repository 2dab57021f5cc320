#include "orv2_geo/arrays/cgeo_Matrices_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_Matrices::description() { return description_of<cgeo_Matrices_table>; }

}  // namespace orv2_geo
