// console_user_interface.h: boxes and forms where there is no screen.
#pragma once

#include <string>

#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

/// Writes boxes to the console and leaves forms as their cancel button would.
UserInterface& console_user_interface();

/// Writes a line of UTF-8 where the system keeps what a program without a screen says.
/// Each system defines it: on standard error; on Windows for a debugger too.
void write_console_line(const std::string& line);

}  // namespace orv2_geo
