// The system's own boxes and forms.
#include <windows.h>

#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/form.h"
#include "orv2_geo/platform/user_interface.h"

namespace orv2_geo {

namespace {

class SystemUserInterface final : public UserInterface {
 public:
  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    const auto wide = [](const char16_t* units) { return reinterpret_cast<const wchar_t*>(units); };
    const UINT icon = flags == critical_icon ? MB_ICONERROR : 0;
    MessageBoxW(GetActiveWindow(), wide(text.data()),
                caption != nullptr ? wide(caption->data()) : L"Orv2_Geo", MB_OK | icon);
  }
  void show_modal(Form& form) override { form.cancel(); }
};

}  // namespace

UserInterface& system_user_interface() {
  static SystemUserInterface system;
  return system;
}

}  // namespace orv2_geo
