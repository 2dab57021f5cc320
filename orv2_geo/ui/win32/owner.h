// owner.h: the host's windows around a box or a form.
#pragma once

#include <windows.h>

#include <vector>

namespace orv2_geo::win32 {

/// The window that a box or a form stands over, or null:
///   1. the form of this thread that is up, whose routine shows a box or another form;
///   2. the window that the host named (platform/owner_window.h);
///   3. this thread's active window;
///   4. the topmost visible window of this thread.
HWND owner_of_what_comes();

/// While this lives, `form` counts as the form of this thread that is up.
class FormInFront {
 public:
  explicit FormInFront(HWND form) noexcept;
  ~FormInFront();
  FormInFront(const FormInFront&) = delete;
  FormInFront& operator=(const FormInFront&) = delete;

 private:
  HWND before_;
};

/// While this lives, the owner and all windows of this thread but `form` take neither
/// clicks nor keys: the host waits inside its call. Afterwards the window that was
/// active is so again.
class HostAtRest {
 public:
  HostAtRest(HWND owner, HWND form);
  ~HostAtRest();
  HostAtRest(const HostAtRest&) = delete;
  HostAtRest& operator=(const HostAtRest&) = delete;

 private:
  static BOOL CALLBACK note(HWND window, LPARAM self) noexcept;
  void disable(HWND window) noexcept;

  HWND form_;
  HWND active_before_;
  std::vector<HWND> disabled_;
};

}  // namespace orv2_geo::win32
