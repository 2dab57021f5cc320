// The system's own boxes and forms: on the screen where a person sees one.
#include <windows.h>

#include "orv2_geo/platform/console_user_interface.h"
#include "orv2_geo/platform/windows/screen_interface.h"

namespace orv2_geo {

namespace {

// A service has windows as well, but nobody in front of them who could answer.
bool a_person_sees_windows() {
  USEROBJECTFLAGS station{};
  const BOOL told = GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &station,
                                              sizeof(station), nullptr);
  return told == FALSE || (station.dwFlags & WSF_VISIBLE) != 0;
}

UserInterface& in_force() {
  static const bool seen = a_person_sees_windows();
  return seen ? screen_interface() : console_user_interface();
}

class SystemUserInterface final : public UserInterface {
 public:
  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    in_force().error_box(text, flags, caption);
  }
  void show_modal(Form& form) override { in_force().show_modal(form); }
  void handle_events() override { in_force().handle_events(); }
};

}  // namespace

UserInterface& system_user_interface() {
  static SystemUserInterface system;
  return system;
}

}  // namespace orv2_geo
