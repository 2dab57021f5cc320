// event_pump.h: a pause for the host's events in the middle of a routine.
#pragma once

#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

/// Lets the host's waiting events be handled before the routine goes on.
inline void yield_to_events() { user_interface().handle_events(); }

}  // namespace orv2_geo
