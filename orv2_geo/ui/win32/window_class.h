// window_class.h: what the system knows of the windows of forms.
#pragma once

#include <windows.h>

#include <memory>

namespace orv2_geo::win32 {

/// The class of the windows of forms, known to the system as long as someone holds it:
/// a library that is unloaded leaves none behind that would lead into it.
class WindowClass {
 public:
  /// The one that is in use, or a new one. Null where the system takes none.
  static std::shared_ptr<const WindowClass> in_use();

  ~WindowClass();
  WindowClass(const WindowClass&) = delete;
  WindowClass& operator=(const WindowClass&) = delete;

  LPCWSTR name() const noexcept { return MAKEINTATOM(atom_); }
  HINSTANCE library() const noexcept { return library_; }

 private:
  WindowClass();

  HINSTANCE library_;
  ATOM atom_;
};

/// What lies behind a window of the class: it hears of everything that comes to it.
class WindowBehind {
 public:
  /// The answer; none leaves it to the system. Nothing may leave it.
  virtual bool hears(UINT message, WPARAM w, LPARAM l, LRESULT& answer) noexcept = 0;

 protected:
  ~WindowBehind() = default;
};

}  // namespace orv2_geo::win32
