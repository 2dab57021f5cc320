#include "orv2_geo/platform/user_interface.h"

#include <utility>

namespace orv2_geo {

namespace {
thread_local UserInterface* installed = nullptr;
}

UserInterface& user_interface() {
  return installed != nullptr ? *installed : system_user_interface();
}

UserInterface* install_user_interface(UserInterface* driver) noexcept {
  return std::exchange(installed, driver);
}

}  // namespace orv2_geo
