// Boxes and forms of the system's own controls.
#include <windows.h>

#include <commctrl.h>

#include "orv2_geo/platform/console_user_interface.h"
#include "orv2_geo/platform/error_box.h"
#include "orv2_geo/platform/windows/screen_interface.h"
#include "orv2_geo/ui/win32/form_window.h"
#include "orv2_geo/ui/win32/owner.h"
#include "orv2_geo/ui/win32/pointer.h"

namespace orv2_geo::win32 {

namespace {

void know_common_controls() {
  INITCOMMONCONTROLSEX kinds{};
  kinds.dwSize = sizeof(kinds);
  kinds.dwICC = ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | ICC_LISTVIEW_CLASSES | ICC_TAB_CLASSES;
  InitCommonControlsEx(&kinds);
}

class Win32UserInterface final : public UserInterface {
 public:
  void error_box(const Text& text, std::int32_t flags, const Text* caption) override {
    const PointerAtRest pointer;
    HWND const owner = owner_of_what_comes();
    // Without an owner it stops the host's windows all the same, and comes to the front.
    UINT look = owner != nullptr ? MB_OK : MB_OK | MB_TASKMODAL | MB_SETFOREGROUND;
    if (flags == critical_icon) look |= MB_ICONERROR;
    const std::wstring title = caption != nullptr ? shown(*caption) : L"Orv2_Geo";
    const int answer = MessageBoxW(owner, shown(text).c_str(), title.c_str(), look);
    if (answer == 0) console_user_interface().error_box(text, flags, caption);
  }

  void show_modal(Form& form) override {
    know_common_controls();
    const PointerAtRest pointer;
    FormWindow window(form);
    if (!window.exists()) return console_user_interface().show_modal(form);
    window.run();
  }

  void handle_events() override {
    MSG message{};
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      if (message.message == WM_QUIT) {
        PostQuitMessage(static_cast<int>(message.wParam));  // for the host's own loop
        return;
      }
      TranslateMessage(&message);
      DispatchMessageW(&message);
    }
  }
};

}  // namespace

}  // namespace orv2_geo::win32

namespace orv2_geo {

UserInterface& screen_interface() {
  static win32::Win32UserInterface screen;
  return screen;
}

}  // namespace orv2_geo
