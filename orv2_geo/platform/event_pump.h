// event_pump.h: a pause for the host's events in the middle of a routine.
#pragma once

#include "orv2_geo/platform/asked_interface.h"

namespace orv2_geo {

/// Lets the host's waiting events be handled before the routine goes on.
inline void yield_to_events() {
  ask_user_interface([](UserInterface& shown) { shown.handle_events(); });
}

}  // namespace orv2_geo
