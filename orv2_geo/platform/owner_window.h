// owner_window.h: the window of the host that boxes and forms stand over.
#pragma once

#include <cstdint>

#include "orv2_geo/frame/export.h"

namespace orv2_geo {

/// The native window that the host named on this thread, such as an X11 window's
/// number or a Windows window's handle; 0 when it named none, and the one in front of the person is
/// meant.
ORV2_PUBLIC std::uint64_t owner_window() noexcept;

/// Names the window over which this thread's boxes and forms appear; 0 takes it
/// back. One that is gone, or is none, counts as not named. The host's own drivers
/// may read it as they like.
ORV2_PUBLIC void set_owner_window(std::uint64_t window) noexcept;

}  // namespace orv2_geo
