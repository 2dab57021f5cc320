#include "orv2_geo/sorting/cgeo_Ordena_table.h"

namespace orv2_geo {

const ClassDescription& cgeo_Ordena::description() { return description_of<cgeo_Ordena_table>; }

}  // namespace orv2_geo
