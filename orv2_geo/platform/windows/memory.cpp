#include "orv2_geo/frame/memory.h"

namespace orv2_geo {

// Large pages take a right here that few accounts have.
void ask_for_huge_pages(void*, std::size_t) noexcept {}

}  // namespace orv2_geo
