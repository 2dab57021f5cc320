// early_clicks.h: clicks that were made before a button could act.
#pragma once

#include <windows.h>

#include <vector>

namespace orv2_geo::win32 {

/// A button takes no click made before it could act, nor one that goes on with a double
/// click begun before: the second click on a button is none on another that has come in
/// its place. One that could act all the time takes what was clicked while a routine
/// computed.
class EarlyClicks {
 public:
  /// `button` can act from now on, or from the end of the routine that is at work.
  void newcomer(HWND button);
  void routine_is_over();

  /// Whether the message is a press that comes too early for the button it is meant for.
  bool are_in(const MSG& message);

 private:
  struct Newcomer {
    HWND button;
    DWORD since;
    bool routine_at_work;
  };

  bool goes_on(const MSG& press) const;

  std::vector<Newcomer> newcomers_;
  DWORD last_press_ = 0;  // when and where
  POINT last_place_{};
  bool pressed_ = false;
  DWORD first_of_run_ = 0;  // when the presses began that went on to the last
};

}  // namespace orv2_geo::win32
