// screen_interface.h: boxes and forms on the screen, lent by the room that draws them.
#pragma once

#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

/// Boxes and forms of the system's own controls. What turns out to have no screen it
/// passes on to the console (console_user_interface.h).
UserInterface& screen_interface();

}  // namespace orv2_geo
