// The members of cgeo_Ordena that are still to be built: each fails with 445.
#include "frame/not_built.h"
#include "sorting/cgeo_Ordena.h"

namespace orv2_geo {

void cgeo_Ordena::Ordena_Double_Index_Array(const DoubleArray&, LongArray&, const std::int32_t&,
                                            const std::int32_t&) const {
  not_built(registered_name);
}
void cgeo_Ordena::Ordena_Double_Array(DoubleArray&, const std::int32_t&,
                                      const std::int32_t&) const {
  not_built(registered_name);
}
void cgeo_Ordena::Ordena_StringArray(StringArray&, const std::int32_t&, const std::int32_t&) const {
  not_built(registered_name);
}
void cgeo_Ordena::Ordena_LongArray(LongArray&, const std::int32_t&, const std::int32_t&) const {
  not_built(registered_name);
}
void cgeo_Ordena::Ordena_StringIndexArray(const StringArray&, LongArray&, const std::int32_t&,
                                          const std::int32_t&) const {
  not_built(registered_name);
}
void cgeo_Ordena::Ordena_LongIndexArray(const LongArray&, LongArray&, const std::int32_t&,
                                        const std::int32_t&) const {
  not_built(registered_name);
}

}  // namespace orv2_geo
