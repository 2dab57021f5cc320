// pointer.h: the mouse pointer while a routine computes.
#pragma once

#include <windows.h>

namespace orv2_geo::win32 {

/// A pointer of the system's while this lives.
class PointerFor {
 public:
  explicit PointerFor(LPCWSTR shape) : before_(SetCursor(LoadCursorW(nullptr, shape))) {}
  ~PointerFor() { SetCursor(before_); }
  PointerFor(const PointerFor&) = delete;
  PointerFor& operator=(const PointerFor&) = delete;

 private:
  HCURSOR before_;
};

/// The pointer of somebody who is at work.
struct BusyPointer : PointerFor {
  BusyPointer() : PointerFor(IDC_WAIT) {}
};

/// The usual pointer: a box or a form in the middle of a routine, or of a host that is
/// at work itself, waits for the person.
struct PointerAtRest : PointerFor {
  PointerAtRest() : PointerFor(IDC_ARROW) {}
};

}  // namespace orv2_geo::win32
