// Under which settings of the host a thread computes.
#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/platform/windows/slot.h"

namespace orv2_geo::floating_point {

namespace {

const Slot slot;

}  // namespace

FloatingPointSettings* host_settings() noexcept {
  return static_cast<FloatingPointSettings*>(slot.get());
}
void set_host(FloatingPointSettings* settings) noexcept { slot.set(settings); }

}  // namespace orv2_geo::floating_point
