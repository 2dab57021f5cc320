// owner.h: the window that a box or a form stands over.
#pragma once

#include <QPointer>
#include <QRect>
#include <QWidget>
#include <QWindow>
#include <cstdint>

namespace orv2_geo::qt {

/// The host's window in front of the person, found when this is made:
///   1. the modal window of this application that is up, such as a form whose
///      routine shows a box;
///   2. the window that the host named (platform/owner_window.h);
///   3. this application's active window;
///   4. the process's active or topmost window, whichever toolkit made it.
class Owner {
 public:
  Owner();

  /// Shows `window`, which stays above the owner as long as both are there.
  void show_over(QWidget& window) const;

  /// Where it is, frame included as far as it is known; null without one.
  QRect place() const { return place_; }

 private:
  bool take(QWindow* window);
  bool take_native(std::uint64_t window);

  QPointer<QWindow> window_;  // this application's own
  std::uint64_t native_ = 0;  // else another one
  QRect place_;
};

}  // namespace orv2_geo::qt
