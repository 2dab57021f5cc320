// orv2_geo.hpp: everything that a C++ host needs.
#pragma once

#include "angles/cgeo_Algorismos.h"
#include "angles/cgeo_FuncDeriv.h"
#include "arrays/cgeo_Matrices.h"
#include "frame/geo_arrays.h"
#include "frame/run_failure.h"
#include "frame/text.h"
#include "library/catalogue.h"
#include "library/object.h"
#include "platform/form.h"
#include "platform/user_interface.h"
#include "sorting/cgeo_Ordena.h"
#include "survey/cgeo_Geometria.h"
#include "survey/cgeo_api.h"
#include "terrain/cgeo_Terreno.h"
