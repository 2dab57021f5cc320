#include "orv2_geo/ui/qt/owner.h"

#include <QApplication>
#include <algorithm>
#include <memory>

#include "orv2_geo/platform/owner_window.h"
#include "orv2_geo/ui/qt/x11.h"

namespace orv2_geo::qt {

namespace {

QWindow* handle_of(const QWidget* widget) {
  return widget != nullptr ? widget->window()->windowHandle() : nullptr;
}

// The application's own window of that number.
QWindow* own_window(std::uint64_t number) {
  const QWindowList all = QGuiApplication::topLevelWindows();
  const auto has_it = [&](const QWindow* one) {
    return one->handle() != nullptr && one->winId() == number;
  };
  const auto found = std::find_if(all.begin(), all.end(), has_it);
  return found != all.end() ? *found : nullptr;
}

// Between two boxes no window has the keyboard yet.
QWindow* visible_window() {
  for (const QWidget* window : QApplication::topLevelWidgets()) {
    if (window->isVisible() && window->windowType() == Qt::Window) return window->windowHandle();
  }
  return nullptr;
}

}  // namespace

Owner::Owner() {
  const bool found = take(handle_of(QApplication::activeModalWidget())) ||
                     take_native(host_window_named(owner_window())) ||
                     take(handle_of(QApplication::activeWindow())) ||
                     take_native(host_window_in_front());
  if (!found) take(visible_window());
}

bool Owner::take(QWindow* window) {
  if (window == nullptr) return false;
  correct_place(*window);
  window_ = window;
  place_ = window->frameGeometry();
  return true;
}

bool Owner::take_native(std::uint64_t window) {
  if (window == 0) return false;
  if (take(own_window(window))) return true;
  const QRect place = host_window_place(window);
  if (place.isEmpty()) return false;
  native_ = window;
  place_ = place;
  return true;
}

void Owner::show_over(QWidget& window) const {
  window.winId();  // gives it its handle
  // Known to Qt no longer than it takes: Qt would give a window that it knows the
  // pointer that it gives its own.
  const std::unique_ptr<QWindow> foreign(
      native_ != 0 ? QWindow::fromWinId(static_cast<WId>(native_)) : nullptr);
  QWindow* const owner = foreign != nullptr ? foreign.get() : window_.data();
  if (owner != nullptr) window.windowHandle()->setTransientParent(owner);
  window.show();
  if (foreign != nullptr) window.windowHandle()->setTransientParent(nullptr);
}

}  // namespace orv2_geo::qt
