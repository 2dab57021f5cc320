#include "orv2_geo/ui/win32/owner.h"

#include <cstdint>
#include <utility>

#include "orv2_geo/platform/owner_window.h"

namespace orv2_geo::win32 {

namespace {

thread_local HWND form_in_front = nullptr;

// The window that can own others, if the person sees it.
HWND visible_root(HWND window) {
  HWND const root = window != nullptr ? GetAncestor(window, GA_ROOT) : nullptr;
  return root != nullptr && IsWindowVisible(root) ? root : nullptr;
}

HWND named_window() {
  HWND const named = reinterpret_cast<HWND>(static_cast<std::uintptr_t>(owner_window()));
  return named != nullptr && IsWindow(named) ? visible_root(named) : nullptr;
}

// From the topmost on; ends with the first that has room to stand over.
BOOL CALLBACK take_first_visible(HWND window, LPARAM found) noexcept {
  if (!IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

HWND topmost_window() {
  HWND found = nullptr;
  EnumThreadWindows(GetCurrentThreadId(), &take_first_visible, reinterpret_cast<LPARAM>(&found));
  return found;
}

}  // namespace

HWND owner_of_what_comes() {
  if (HWND const form = visible_root(form_in_front)) return form;
  if (HWND const named = named_window()) return named;
  if (HWND const active = visible_root(GetActiveWindow())) return active;
  return topmost_window();
}

FormInFront::FormInFront(HWND form) noexcept : before_(std::exchange(form_in_front, form)) {}

FormInFront::~FormInFront() { form_in_front = before_; }

HostAtRest::HostAtRest(HWND owner, HWND form) : form_(form), active_before_(GetActiveWindow()) {
  constexpr std::size_t windows_of_a_host = 64;
  disabled_.reserve(windows_of_a_host);
  if (owner != nullptr) disable(owner);
  EnumThreadWindows(GetCurrentThreadId(), &note, reinterpret_cast<LPARAM>(this));
}

BOOL CALLBACK HostAtRest::note(HWND window, LPARAM self) noexcept {
  auto* const host = reinterpret_cast<HostAtRest*>(self);
  if (window != host->form_ && IsWindowVisible(window)) host->disable(window);
  return TRUE;
}

void HostAtRest::disable(HWND window) noexcept {
  if (!IsWindowEnabled(window)) return;
  try {
    disabled_.push_back(window);
  } catch (...) {
    return;  // one that could not be enabled again stays as it is
  }
  EnableWindow(window, FALSE);
}

HostAtRest::~HostAtRest() {
  const bool was_active = GetActiveWindow() == form_;
  for (HWND const window : disabled_) {
    if (IsWindow(window)) EnableWindow(window, TRUE);
  }
  if (was_active && IsWindow(active_before_)) SetActiveWindow(active_before_);
}

}  // namespace orv2_geo::win32
