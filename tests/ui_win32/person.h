// person.h: somebody who answers boxes and forms by window messages, from a thread of
// their own.
#pragma once

#include <gtest/gtest.h>
#include <windows.h>

#include <functional>
#include <string>
#include <thread>

namespace orv2_geo::testing_support {

/// Asks again until something is so. False when it never is.
inline bool until(const std::function<bool()>& condition) {
  for (int pause = 0; pause < 500; ++pause) {
    if (condition()) return true;
    Sleep(20);
  }
  return false;
}

/// The visible window of that title that takes clicks; null when none comes.
inline HWND window_titled(const wchar_t* title) {
  HWND found = nullptr;
  until([&] {
    found = FindWindowW(nullptr, title);
    return found != nullptr && IsWindowVisible(found) && IsWindowEnabled(found);
  });
  return found;
}

inline std::wstring text_of(HWND window) {
  std::wstring text(512, L'\0');
  text.resize(static_cast<std::size_t>(GetWindowTextW(window, text.data(), 512)));
  return text;
}

/// The control of that kind, and with that text unless none is given; null without one.
inline HWND control(HWND form, const wchar_t* kind, const wchar_t* text = nullptr) {
  HWND found = nullptr;
  do {
    found = FindWindowExW(form, found, kind, text);
  } while (found != nullptr && !IsWindowVisible(found));
  return found;
}

inline void click(HWND form, const wchar_t* caption) {
  HWND button = nullptr;
  until([&] { return (button = control(form, L"Button", caption)) != nullptr; });
  SendMessageW(button, BM_CLICK, 0, 0);
}

inline void press(HWND window, WPARAM key) {
  PostMessageW(window, WM_KEYDOWN, key, 1);
  PostMessageW(window, WM_KEYUP, key, static_cast<LPARAM>(0xc0000001));
}

/// Waits for a window of that title and answers it, while the test goes on with the call
/// that shows it. A window that stays up in spite of the answer is closed.
class Person {
 public:
  Person(const wchar_t* title, std::function<void(HWND)> answer)
      : thread_([title, answer = std::move(answer)] {
          HWND const window = window_titled(title);
          ASSERT_NE(window, nullptr) << "never came";
          answer(window);
          const bool gone = until([&] { return !IsWindow(window) || !IsWindowVisible(window); });
          EXPECT_TRUE(gone) << "stayed up";
          if (!gone) PostMessageW(window, WM_CLOSE, 0, 0);
        }) {}
  ~Person() { thread_.join(); }
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;

 private:
  std::thread thread_;
};

/// A window of the host's, on this thread.
class HostWindow {
 public:
  explicit HostWindow(const wchar_t* title)
      : window_(CreateWindowExW(0, L"STATIC", title, WS_OVERLAPPEDWINDOW | WS_VISIBLE, 100, 80, 700,
                                500, nullptr, nullptr, nullptr, nullptr)) {
    SetActiveWindow(window_);
  }
  ~HostWindow() { DestroyWindow(window_); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  HWND handle() const noexcept { return window_; }

 private:
  HWND window_;
};

}  // namespace orv2_geo::testing_support
