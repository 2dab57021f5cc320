#include "orv2_geo/ui/win32/early_clicks.h"

#include <algorithm>
#include <cstdlib>

namespace orv2_geo::win32 {

namespace {

// Times are counted round a word.
bool is_before(DWORD a, DWORD b) { return static_cast<LONG>(a - b) < 0; }

}  // namespace

void EarlyClicks::newcomer(HWND button) {
  std::erase_if(newcomers_, [&](const Newcomer& one) { return one.button == button; });
  newcomers_.push_back({button, GetTickCount(), true});
}

void EarlyClicks::routine_is_over() {
  for (Newcomer& one : newcomers_) {
    if (one.routine_at_work) one.since = GetTickCount();
    one.routine_at_work = false;
  }
}

bool EarlyClicks::goes_on(const MSG& press) const {
  return pressed_ && press.time - last_press_ <= GetDoubleClickTime() &&
         std::abs(press.pt.x - last_place_.x) <= GetSystemMetrics(SM_CXDOUBLECLK) &&
         std::abs(press.pt.y - last_place_.y) <= GetSystemMetrics(SM_CYDOUBLECLK);
}

bool EarlyClicks::are_in(const MSG& message) {
  if (message.message != WM_LBUTTONDOWN && message.message != WM_LBUTTONDBLCLK) return false;
  if (!goes_on(message)) first_of_run_ = message.time;
  pressed_ = true;
  last_press_ = message.time;
  last_place_ = message.pt;
  return std::any_of(newcomers_.begin(), newcomers_.end(), [&](const Newcomer& one) {
    return one.button == message.hwnd &&
           (one.routine_at_work || is_before(first_of_run_, one.since));
  });
}

}  // namespace orv2_geo::win32
