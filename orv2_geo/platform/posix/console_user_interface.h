// console_user_interface.h: boxes and forms where there is no screen.
#pragma once

#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

/// Writes boxes to standard error and leaves forms as their cancel button would.
UserInterface& console_user_interface();

}  // namespace orv2_geo
