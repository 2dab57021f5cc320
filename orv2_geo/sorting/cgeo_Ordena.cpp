// Sorting of arrays: the public face of the sorts.
#include "orv2_geo/sorting/cgeo_Ordena.h"

#include "orv2_geo/sorting/mOrdena.h"

namespace orv2_geo {

void cgeo_Ordena::Ordena_Double_Index_Array(const DoubleArray& DoubleA, LongArray& TheIndex,
                                            const std::int32_t& LowerBound,
                                            const std::int32_t& UpperBound) const try {
  mOrdena::Ordena_Double_Index_Array(DoubleA, TheIndex, LowerBound, UpperBound);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Ordena::Ordena_Double_Array(DoubleArray& DoubleA, const std::int32_t& LowerBound,
                                      const std::int32_t& UpperBound) const try {
  mOrdena::Ordena_Double_Array(DoubleA, LowerBound, UpperBound);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Ordena::Ordena_StringArray(StringArray& TheArray, const std::int32_t& LowerBound,
                                     const std::int32_t& UpperBound) const try {
  mOrdena::Ordena_StringArray(TheArray, LowerBound, UpperBound);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Ordena::Ordena_LongArray(LongArray& TheArray, const std::int32_t& LowerBound,
                                   const std::int32_t& UpperBound) const try {
  mOrdena::Ordena_LongArray(TheArray, LowerBound, UpperBound);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Ordena::Ordena_StringIndexArray(const StringArray& TheArray, LongArray& TheIndex,
                                          const std::int32_t& LowerBound,
                                          const std::int32_t& UpperBound) const try {
  mOrdena::Ordena_StringIndexArray(TheArray, TheIndex, LowerBound, UpperBound);
} catch (...) {
  leave_signed(registered_name);
}

void cgeo_Ordena::Ordena_LongIndexArray(const LongArray& TheArray, LongArray& TheIndex,
                                        const std::int32_t& LowerBound,
                                        const std::int32_t& UpperBound) const try {
  mOrdena::Ordena_LongIndexArray(TheArray, TheIndex, LowerBound, UpperBound);
} catch (...) {
  leave_signed(registered_name);
}

// On purpose without effect: the sorts exchange texts by themselves.
void cgeo_Ordena::SwapStrings(const Text&, const Text&, const std::int32_t&) const {}

}  // namespace orv2_geo
