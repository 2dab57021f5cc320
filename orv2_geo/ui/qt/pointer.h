// pointer.h: the mouse pointer while a routine computes.
#pragma once

namespace orv2_geo::qt {

/// The pointer of somebody who is at work, while this lives.
class BusyPointer {
 public:
  BusyPointer();
  ~BusyPointer();
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
};

/// The usual pointer while this lives: a box or a form in the middle of a routine,
/// or of a host that is at work itself, waits for the person.
class PointerAtRest {
 public:
  PointerAtRest();
  ~PointerAtRest();
  PointerAtRest(const PointerAtRest&) = delete;
  PointerAtRest& operator=(const PointerAtRest&) = delete;

 private:
  bool was_busy_;
};

}  // namespace orv2_geo::qt
