#include "orv2_geo/platform/user_interface.h"

#include <utility>

#include "orv2_geo/platform/asked_interface.h"

namespace orv2_geo {

namespace {
thread_local UserInterface* installed = nullptr;
}

UserInterface& user_interface() {
  return installed != nullptr ? *installed : system_user_interface();
}

bool host_shows() noexcept { return installed != nullptr; }

UserInterface* install_user_interface(UserInterface* driver) noexcept {
  return std::exchange(installed, driver);
}

}  // namespace orv2_geo
