// orv2_geo.hpp: everything that a C++ host needs.
#pragma once

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/angles/cgeo_FuncDeriv.h"
#include "orv2_geo/arrays/cgeo_Matrices.h"
#include "orv2_geo/frame/floating_point.h"
#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/frame/run_failure.h"
#include "orv2_geo/frame/text.h"
#include "orv2_geo/library/catalogue.h"
#include "orv2_geo/library/object.h"
#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/user_interface.h"
#include "orv2_geo/sorting/cgeo_Ordena.h"
#include "orv2_geo/survey/cgeo_Geometria.h"
#include "orv2_geo/survey/cgeo_api.h"
#include "orv2_geo/terrain/cgeo_Terreno.h"
#include "orv2_geo/version.h"
