// class_tables.h: the tables of the seven public classes, in the order of the interface.
#pragma once

#include <tuple>

#include "orv2_geo/angles/cgeo_Algorismos_table.h"
#include "orv2_geo/angles/cgeo_FuncDeriv_table.h"
#include "orv2_geo/arrays/cgeo_Matrices_table.h"
#include "orv2_geo/sorting/cgeo_Ordena_table.h"
#include "orv2_geo/survey/cgeo_Geometria_table.h"
#include "orv2_geo/survey/cgeo_api_table.h"
#include "orv2_geo/terrain/cgeo_Terreno_table.h"

namespace orv2_geo {

using ClassTables =
    std::tuple<cgeo_Algorismos_table, cgeo_FuncDeriv_table, cgeo_Terreno_table, cgeo_api_table,
               cgeo_Ordena_table, cgeo_Geometria_table, cgeo_Matrices_table>;

}  // namespace orv2_geo
