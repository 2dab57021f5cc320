// The member of cgeo_Ordena that swaps nothing.
#include "sorting/cgeo_Ordena.h"

namespace orv2_geo {

// On purpose without effect: the sorts exchange texts by themselves.
void cgeo_Ordena::SwapStrings(const Text&, const Text&, const std::int32_t&) const {}

}  // namespace orv2_geo
