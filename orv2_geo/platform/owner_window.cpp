#include "orv2_geo/platform/owner_window.h"

namespace orv2_geo {

namespace {
thread_local std::uint64_t named = 0;
}

std::uint64_t owner_window() noexcept { return named; }

void set_owner_window(std::uint64_t window) noexcept { named = window; }

}  // namespace orv2_geo
