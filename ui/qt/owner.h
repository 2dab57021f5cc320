// owner.h: the window that a box or a form stands over.
#pragma once

#include <QRect>
#include <QWidget>
#include <QWindow>
#include <memory>

namespace orv2_geo::qt {

/// The host's window in front of the person, found when this is made:
///   1. the modal window of this application that is up, such as a form whose
///      routine shows a box;
///   2. the window that the host named (platform/owner_window.h);
///   3. this application's active window;
///   4. the process's active or topmost window, whichever toolkit made it.
/// It must live as long as what it carries.
class Owner {
 public:
  Owner();

  /// Keeps `window` over the owner; nothing without one. To be called before it
  /// is first shown.
  void carry(QWidget& window) const;

  /// Where it is, frame included as far as it is known; null without one.
  QRect place() const { return place_; }

 private:
  bool take(QWindow* window);
  bool take_native(std::uint64_t window);

  QWindow* window_ = nullptr;
  std::unique_ptr<QWindow> foreign_;
  QRect place_;
};

}  // namespace orv2_geo::qt
