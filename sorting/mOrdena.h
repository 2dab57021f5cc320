// mOrdena.h: the sort kernels.
#pragma once

#include <cstdint>

#include "frame/geo_arrays.h"

namespace orv2_geo::mOrdena {

void Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                               const std::int32_t& LowerBound, const std::int32_t& UpperBound);

}  // namespace orv2_geo::mOrdena
