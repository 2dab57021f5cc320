// asked_interface.h: the user interface is asked in the settings of whoever made it.
#pragma once

#include <utility>

#include "orv2_geo/frame/floating_point_guard.h"
#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

/// Whether the interface in force on this thread is one that the host installed.
ORV2_PUBLIC bool host_shows() noexcept;

/// Runs `ask` with the interface in force: the host's own finds the host's floating-point
/// settings, the system's the usual ones.
template <class Ask>
void ask_user_interface(Ask&& ask) {
  UserInterface& shown = user_interface();
  if (!host_shows()) return std::forward<Ask>(ask)(shown);
  in_settings_of_host([&] { std::forward<Ask>(ask)(shown); });
}

}  // namespace orv2_geo
