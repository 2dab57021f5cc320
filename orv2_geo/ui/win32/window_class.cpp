#include "orv2_geo/ui/win32/window_class.h"

#include <mutex>

namespace orv2_geo::win32 {

namespace {

// The library or the program that this code is in.
HINSTANCE this_code() {
  constexpr DWORD by_address =
      GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
  HMODULE found = nullptr;
  GetModuleHandleExW(by_address, reinterpret_cast<LPCWSTR>(&this_code), &found);
  return found;
}

LRESULT CALLBACK procedure(HWND window, UINT message, WPARAM w, LPARAM l) noexcept {
  if (message == WM_NCCREATE) {
    const auto* const made = reinterpret_cast<const CREATESTRUCTW*>(l);
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(made->lpCreateParams));
  }
  auto* const behind = reinterpret_cast<WindowBehind*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  LRESULT answer = 0;
  if (behind != nullptr && behind->hears(message, w, l, answer)) return answer;
  return DefWindowProcW(window, message, w, l);
}

}  // namespace

WindowClass::WindowClass() : library_(this_code()) {
  WNDCLASSEXW description{};
  description.cbSize = sizeof(description);
  description.lpfnWndProc = &procedure;
  description.hInstance = library_;
  description.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  description.hbrBackground = GetSysColorBrush(COLOR_3DFACE);
  description.lpszClassName = L"Orv2_Geo.Form";
  atom_ = RegisterClassExW(&description);
}

WindowClass::~WindowClass() {
  if (atom_ != 0) UnregisterClassW(name(), library_);
}

std::shared_ptr<const WindowClass> WindowClass::in_use() {
  static std::mutex one_at_a_time;
  static std::weak_ptr<const WindowClass> last;
  const std::lock_guard lock(one_at_a_time);
  std::shared_ptr<const WindowClass> held = last.lock();
  if (held == nullptr) {
    held.reset(new WindowClass);
    if (held->atom_ == 0) return nullptr;
    last = held;
  }
  return held;
}

}  // namespace orv2_geo::win32
